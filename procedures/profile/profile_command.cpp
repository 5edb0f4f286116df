#include "procedures/profile/profile_command.h"

#include <algorithm>

#include "host/datasets.h"
#include "procedures/profile/messages.h"

namespace profile {

namespace {

using ParamSpec = UPSpecTypes::ParamSpec;
using SubComSpec = UPSpecTypes::SubComSpec;

constexpr double mostChangesShown = 1000;

SubComDescriptor subcommandWithNames(const char* name, bool isRequired) {
  SubComDescriptor subcommand(name, SubComSpec::valuesThenKeywords, isRequired, false);
  subcommand.setExportParamDesc(ParamSpec::nameList, isRequired);
  return subcommand;
}

void describeCommand(CommandDescriptor& grammar) {
  SubComDescriptor dataset("COMPDATASET", SubComSpec::valuesThenKeywords, true, false);
  dataset.setExportParamDesc(ParamSpec::wordOrString, true);
  grammar.addSubComDescriptor(dataset);

  SubComDescriptor variables = subcommandWithNames("VARIABLES", true);
  variables.addParamDescriptor(ParamDescriptor("EXCEPT", ParamSpec::nameList, false, true, BracketOptions::none));
  grammar.addSubComDescriptor(variables);
  grammar.addSubComDescriptor(subcommandWithNames("CASEID", false));

  SubComDescriptor output("OUTPUT", SubComSpec::keywordsOnly, false, false);
  ParamDescriptor changes("CHANGES", ParamSpec::integerOrWord, false, true, BracketOptions::none);
  changes.setLowerBoundary(0, UPSpecTypes::LowerBdryOptions::inclusive);
  changes.setUpperBoundary(mostChangesShown, UPSpecTypes::UpperBdryOptions::inclusive);
  output.addParamDescriptor(changes);
  grammar.addSubComDescriptor(output);
}

bool isWord(const TokenInfoObj& token, std::string_view word) { return VRIXMBstricmp_A(token.getString(), word) == 0; }

// The active dataset cannot be compared with itself.
bool readDataset(const SubComObj& subcommand, ProfileOptions& options) {
  bool isQuoted = false;
  std::string name;
  subcommand.getExportParamObj()->getStringOrLiteral(name, isQuoted);
  if (!options.comparison.Init(name, isQuoted, false)) {
    refuse(BpString(options.comparison.ErrorText(), false));
    return false;
  }
  const SvrDMDataset* active = options.comparison.IsDataset() ? GetAdapter().GetActiveDataset() : nullptr;
  const bool isActive =
      options.comparison.IsWorkingFile() || (active != nullptr && VRIXMBstricmp_A(name, active->GetHandle()) == 0);
  if (isActive) refuse("The active dataset cannot be profiled against itself. Name another dataset in COMPDATASET.");
  return !isActive;
}

// Names that the active dataset does not have are kept apart, as in a comparison.
std::vector<TokenInfoObj> knownNames(const std::vector<TokenInfoObj>& tokens, const VRIX_DataSource& active,
                                     std::vector<std::string>& unknown) {
  std::vector<TokenInfoObj> known;
  for (const TokenInfoObj& token : tokens) {
    const bool isListWord = isWord(token, "TO") || isWord(token, "ALL");
    if (isListWord || active.FindVarIndex(token.getString(), FindOptions::standard) != -1) {
      known.push_back(token);
    } else {
      unknown.push_back(token.getString());
    }
  }
  return known;
}

// A name that the active dataset does not have leaves nothing out.
void leaveOut(const ParamObj& names, const VRIX_DataSource& active, std::vector<std::int32_t>& variables) {
  for (const TokenInfoObj& token : names.getTokenList()) {
    std::erase(variables, active.FindVarIndex(token.getString(), FindOptions::standard));
  }
}

bool readVariables(const SubComObj& subcommand, const CommandDescriptor& grammar, const VRIX_DataSource& active,
                   ProfileOptions& options) {
  const std::vector<TokenInfoObj> tokens = subcommand.getExportParamObj()->getTokenList();
  options.allVariables = tokens.size() == 1 && isWord(tokens.front(), "ALL");
  VarSpecObj list("", "VARIABLES", grammar, active, false);
  if (!list.ValidateVariables(knownNames(tokens, active, options.unknownNames), RepeatVarOptions::refuse)) return false;
  options.variables = list.GetValidVarList();
  if (const ParamObj* except = subcommand.getParamObj("EXCEPT")) leaveOut(*except, active, options.variables);
  return true;
}

bool readCaseIds(const SubComObj& subcommand, const CommandDescriptor& grammar, const VRIX_DataSource& active,
                 ProfileOptions& options) {
  const ParamObj* names = subcommand.getExportParamObj();
  if (names == nullptr) return true;
  VarSpecObj list("", "CASEID", grammar, active, false);
  if (!list.ValidateVariables(names->getTokenList(), RepeatVarOptions::refuse)) return false;
  options.caseIds = list.GetValidVarList();
  return true;
}

}  // namespace

bool readCommand(const VRIX_TokenSequence& tokens, const VRIX_DataSource& active, ProfileOptions& options) {
  CommandDescriptor grammar(commandName, procedureTitle);
  describeCommand(grammar);
  CommandSpec command;
  UniversalParser parser(tokens, command, grammar);
  ParserMessage names;
  names.SetCommandName(commandName);
  names.SetProcedureTitle(procedureTitle);
  if (parser.getCommandSpecifications() != 0) return false;

  if (!readDataset(*command.getSubComObj("COMPDATASET"), options)) return false;
  if (!readVariables(*command.getSubComObj("VARIABLES"), grammar, active, options)) return false;
  const SubComObj* caseIds = command.getSubComObj("CASEID");
  if (caseIds != nullptr && !readCaseIds(*caseIds, grammar, active, options)) return false;
  const SubComObj* output = command.getSubComObj("OUTPUT");
  const ParamObj* changes = output == nullptr ? nullptr : output->getParamObj("CHANGES");
  if (changes != nullptr) changes->getIntegerValue(options.changesShown);
  return true;
}

}  // namespace profile
