#include "syntax/command_syntax.h"

#include <string>
#include <vector>

#include "driver/messages.h"
#include "syntax/command_grammar.h"
#include "syntax/output_subcommand.h"
#include "syntax/save_subcommand.h"

namespace compdatas {

namespace {

constexpr std::int64_t variablesMissingError = 7414;
constexpr std::int64_t variablesMissingCode = 2;

bool isListKeyword(const std::string& text) {
  return VRIXMBstricmp_A(text, "TO") == 0 || VRIXMBstricmp_A(text, "ALL") == 0;
}

}  // namespace

CommandSyntax::CommandSyntax(const VRIX_TokenSequence& tokens, CompareOptions& options,
                             const ProcedureDataSource& activeSource)
    : tokens_(tokens),
      options_(options),
      activeSource_(activeSource),
      grammar_(commandName, procedureTitle),
      variables_("", "VARIABLES", grammar_, activeSource, false),
      caseIds_("", "CASEID", grammar_, activeSource, false) {}

bool CommandSyntax::parse() {
  CommandSpec command;
  addSubcommands(grammar_);
  UniversalParser parser(tokens_, command, grammar_);
  ParserMessage message;
  message.SetCommandName(commandName);
  message.SetProcedureTitle(commandName);  // the name again, not the title
  if (parser.getCommandSpecifications() != 0) return false;
  return readSubcommands(command);
}

bool CommandSyntax::readSubcommands(const CommandSpec& command) {
  const SubComObj* compDataset = command.getSubComObj("COMPDATASET");
  if (compDataset == nullptr) {
    report("Incomplete command. No dataset was specified.", BpErrorShow::diagnostics, BpErrorLevel::warning);
    return false;
  }
  if (!readCompDataset(*compDataset)) return false;

  const SubComObj* variables = command.getSubComObj("VARIABLES");
  if (variables == nullptr) {
    BACKENDERROR(variablesMissingError, variablesMissingCode, variablesMissingCode);
    return false;
  }
  if (!readVariables(*variables)) return false;

  const SubComObj* caseId = command.getSubComObj("CASEID");
  if (caseId != nullptr && !readCaseId(*caseId)) return false;

  const SubComObj* save = command.getSubComObj("SAVE");
  if (save != nullptr && !readSave(*save, options_)) return false;

  const SubComObj* output = command.getSubComObj("OUTPUT");
  return output == nullptr || readOutput(*output, options_);
}

bool CommandSyntax::readCompDataset(const SubComObj& subcommand) {
  const ParamObj* dataset = subcommand.getExportParamObj();
  const ParamObj* password = subcommand.getParamObj("PASSWORD");

  bool isQuoted = true;
  std::string name;
  if (dataset == nullptr || !dataset->getStringOrLiteral(name, isQuoted)) {
    reportRefusal("The dataset does not exist.");
    return false;
  }

  bool accepted = true;
  UserCaseFileSpec& spec = options_.compDataset();
  if (!spec.Init(name, isQuoted, false)) {
    reportRefusal(spec.ErrorText());
    accepted = false;
  } else if (spec.IsWorkingFile()) {
    reportRefusal("The active dataset and the comparison dataset are the same dataset. No comparison was performed.");
    accepted = false;
  }

  // The password is read even after a refusal. One beside an unquoted name is passed over: open datasets need none.
  std::string value;
  if (password != nullptr && isQuoted && password->getLiteral(value)) options_.setCompDatasetPassword(value);
  return accepted;
}

bool CommandSyntax::readVariables(const SubComObj& subcommand) {
  const ParamObj* list = subcommand.getExportParamObj();
  if (list == nullptr) return true;

  std::vector<TokenInfoObj> kept;
  std::vector<VrixVarName> missing;
  for (const TokenInfoObj& token : list->getTokenList()) {
    const std::string& text = token.getString();
    if (isListKeyword(text) || activeSource_.FindVarIndex(text, FindOptions::standard) != -1) {
      kept.push_back(token);
    } else {
      missing.emplace_back(text);
    }
  }
  options_.setVariablesNotInActive(missing);

  if (!variables_.ValidateVariables(kept, RepeatVarOptions::refuse)) return false;
  options_.setCompareVariables(variables_.GetValidVarList());
  return true;
}

bool CommandSyntax::readCaseId(const SubComObj& subcommand) {
  const ParamObj* list = subcommand.getExportParamObj();
  if (list == nullptr) return true;
  if (!caseIds_.ValidateVariables(list->getTokenList(), RepeatVarOptions::refuse)) return false;
  options_.setCaseIdVariables(caseIds_.GetValidVarList());
  return true;
}

}  // namespace compdatas
