#include "tests/language/sample_grammar.h"

#include <fmt/format.h>

#include "workbench/language/grammar_state.h"
#include "workbench/language/host_commands.h"
#include "workbench/language/job.h"
#include "workbench/language/spec_state.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"

namespace workbench::language {

namespace {

using Param = UPSpecTypes::ParamSpec;
using SubCom = UPSpecTypes::SubComSpec;
using Kind = TokenInfoObj::Kind;

ParamDescriptor keyword(std::string_view name, Param spec, const std::vector<std::string>& allowed = {}) {
  ParamDescriptor descriptor(name, spec, false, true, BracketOptions::none);
  for (const std::string& word : allowed) descriptor.addStringValue(word);
  return descriptor;
}

SubComDescriptor listOfNames(std::string_view name) {
  SubComDescriptor descriptor(name, SubCom::valuesThenKeywords, false, false);
  descriptor.setExportParamDesc(Param::nameList, false);
  return descriptor;
}

const CommandDescriptor* grammarOf(const std::string& name) {
  static const CommandDescriptor compare = compareGrammar();
  static const CommandDescriptor draw = drawGrammar();
  if (name == "COMPARE DATASETS") return &compare;
  if (name == "DRAW") return &draw;
  return hostCommand(name);
}

std::vector<std::string> allNames() {
  std::vector<std::string> names = hostCommandNames();
  names.insert(names.end(), {"COMPARE DATASETS", "DRAW"});
  return names;
}

std::string shown(const ParamObj& values) {
  std::string all;
  for (const TokenInfoObj& value : values.getTokenList()) {
    const bool isQuoted = value.getKind() == Kind::quotedString;
    all += (all.empty() ? "" : " ") + (isQuoted ? "'" + value.getString() + "'" : value.getString());
  }
  return all;
}

std::string shown(CommandSpec& spec) {
  std::string all;
  for (const CommandSpec::State::Subcommand& subcommand : spec.state().subcommands) {
    const SubComObj::State& content = subcommand.content->state();
    if (!subcommand.name.empty()) all += " /" + subcommand.name;
    if (content.exportParam != nullptr) all += "=" + shown(*content.exportParam);
    for (const SubComObj::State::Keyword& keyword : content.keywords) {
      const std::string values = shown(*keyword.values);
      all += " " + keyword.name + (values.empty() ? "" : "=" + values);
    }
  }
  return all;
}

std::string shown(const output::Message& message) {
  return fmt::format("{}:{} {}", message.line.value_or(0), message.column.value_or(0),
                     std::get<output::StringText>(message.text.held).key);
}

// What one command says; an error when it does not fit its grammar.
std::string answerTo(const JobCommand& command) {
  if (command.error)
    return fmt::format("{}:{} {}", command.error->line, command.error->column, command.error->sentence);
  output::Command document;
  currentRun().command = &document;
  currentRun().tokens = &command.tokens;
  currentRun().commandLine = command.line;
  currentRun().commandColumn = command.column;
  CommandSpec spec;
  const VRIX_TokenSequence tokens(true);
  UniversalParser parser(tokens, spec, *grammarOf(command.name));
  const bool isAccepted = parser.getCommandSpecifications() == 0;
  currentRun().command = nullptr;
  currentRun().tokens = nullptr;
  std::string answer = isAccepted ? command.name + shown(spec) : "";
  for (const output::Item& item : document.items) answer += shown(std::get<output::Message>(item));
  return answer;
}

}  // namespace

CommandDescriptor compareGrammar() {
  CommandDescriptor command("COMPARE DATASETS", "Compare Datasets");
  SubComDescriptor dataset = listOfNames("COMPDATASET");
  dataset.addParamDescriptor(keyword("PASSWORD", Param::stringOrWord));
  command.addSubComDescriptor(dataset);
  command.addSubComDescriptor(listOfNames("VARIABLES"));
  command.addSubComDescriptor(listOfNames("CASEID"));

  SubComDescriptor save("SAVE", SubCom::keywordsOnly, false, false);
  save.addParamDescriptor(keyword("FLAGMISMATCHES", Param::wordOrString, {"YES", "NO"}));
  save.addParamDescriptor(keyword("VARNAME", Param::wordOrString));
  save.addParamDescriptor(keyword("MATCHDATASET", Param::wordOrString, {"YES", "NO"}));
  save.addParamDescriptor(keyword("MATCHNAME", Param::nameList));
  save.addParamDescriptor(keyword("MATCHPASS", Param::stringOrWord, {"NONE"}));
  command.addSubComDescriptor(save);
  save.addParamDescriptor(keyword("ENCRYPTEDPW", Param::wordOrString, {"YES", "NO"}));
  command.addSubComDescriptor(save);

  SubComDescriptor output("OUTPUT", SubCom::keywordsOnly, false, false);
  output.addParamDescriptor(keyword("VARPROPERTIES", Param::wordList, {"NONE", "ALL", "MEASURE", "LABEL", "WIDTH"}));
  output.addParamDescriptor(keyword("CASETABLE", Param::wordOrString, {"YES", "NO"}));
  ParamDescriptor limit = keyword("TABLELIMIT", Param::integerOrWord, {"NONE"});
  limit.setLowerBoundary(0.0, UPSpecTypes::LowerBdryOptions::exclusive);
  limit.setUpperBoundary(10001.0, UPSpecTypes::UpperBdryOptions::exclusive);
  output.addParamDescriptor(limit);
  command.addSubComDescriptor(output);
  return command;
}

CommandDescriptor drawGrammar() {
  CommandDescriptor command("DRAW", "Draw");
  SubComDescriptor general("", SubCom::valuesThenKeywords, false, false);
  general.setExportParamDesc(Param::nameList, false);
  general.addParamDescriptor(ParamDescriptor("QUIET", Param::wordOrString, false, false, BracketOptions::none));
  command.addSubComDescriptor(general);

  SubComDescriptor shape("SHAPE", SubCom::valuesThenKeywords, true, true);
  shape.setExportParamDesc(Param::wordOrString, true);
  ParamDescriptor size("SIZE", Param::number, true, true, BracketOptions::none);
  size.setLowerBoundary(0.5, UPSpecTypes::LowerBdryOptions::inclusive);
  size.setUpperBoundary(2.5, UPSpecTypes::UpperBdryOptions::exclusive);
  shape.addParamDescriptor(size);
  shape.addParamDescriptor(ParamDescriptor("FILLED", Param::wordOrString, false, false, BracketOptions::none));
  shape.addParamDescriptor(keyword("COUNT", Param::integerOrWord));
  command.addSubComDescriptor(shape);
  return command;
}

std::string answerTo(std::string_view job) {
  std::string answers;
  for (const JobCommand& command : readJob(job, allNames())) answers += answerTo(command) + "\n";
  return answers;
}

std::string errorOf(std::string_view job) {
  std::string answer = answerTo(job);
  if (answer.empty() || answer.front() < '0' || answer.front() > '9') return "";
  answer.pop_back();
  return answer;
}

}  // namespace workbench::language
