// COUNT MISSING: a small procedure, written as an example. It counts, per variable, the cases whose value is missing.
//
//   COUNT MISSING /VARIABLES=ALL /OUTPUT PERCENT=YES.
//
// It shows the life of a procedure in the order of the calls: open the output, take the tokens and the active dataset,
// have the command parsed, read the cases, write a table. Everything is released in the reverse order by scope.
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "host/data.h"
#include "host/messages.h"
#include "host/output.h"
#include "host/parser.h"

namespace {

constexpr const char* commandName = "COUNT MISSING";

struct Options {
  std::vector<std::int32_t> variables;
  bool percent = false;
};

// A subcommand with a list of variables, and one with a keyword that takes YES or NO.
void describeCommand(CommandDescriptor& grammar) {
  SubComDescriptor variables("VARIABLES", UPSpecTypes::SubComSpec::valuesThenKeywords, true, false);
  variables.setExportParamDesc(UPSpecTypes::ParamSpec::nameList, true);
  grammar.addSubComDescriptor(variables);

  SubComDescriptor output("OUTPUT", UPSpecTypes::SubComSpec::keywordsOnly, false, false);
  ParamDescriptor percent("PERCENT", UPSpecTypes::ParamSpec::wordOrString, false, true, BracketOptions::none);
  percent.addStringValue("YES");
  percent.addStringValue("NO");
  output.addParamDescriptor(percent);
  grammar.addSubComDescriptor(output);
}

// False when the host has reported what is wrong with the command.
bool readCommand(const VRIX_TokenSequence& tokens, const VRIX_DataSource& data, Options& options) {
  CommandDescriptor grammar(commandName, "Count Missing");
  describeCommand(grammar);
  CommandSpec command;
  UniversalParser parser(tokens, command, grammar);
  ParserMessage names;
  names.SetCommandName(commandName);
  names.SetProcedureTitle("Count Missing");
  if (parser.getCommandSpecifications() != 0) return false;

  VarSpecObj list("", "VARIABLES", grammar, data, false);
  const ParamObj* variables = command.getSubComObj("VARIABLES")->getExportParamObj();
  if (!list.ValidateVariables(variables->getTokenList(), RepeatVarOptions::refuse)) return false;
  options.variables = list.GetValidVarList();

  const SubComObj* output = command.getSubComObj("OUTPUT");
  const ParamObj* percent = output == nullptr ? nullptr : output->getParamObj("PERCENT");
  options.percent = percent != nullptr && percent->isStringValueCase("YES");
  return true;
}

bool isIn(double value, const OBS* low, const OBS* high) { return low->number <= value && value <= high->number; }

// Of a number: system-missing, or one of the variable's user-missing values. Of a text: nothing but blanks.
bool isMissing(const VRIX_Variable& variable, const OBS* value) {
  const std::int32_t width = variable.GetType();
  if (width != 0) {
    return std::string_view(value->text, static_cast<std::size_t>(width)).find_first_not_of(' ') ==
           std::string_view::npos;
  }
  const double number = value->number;
  if (number == pvGetCmnMch()->constants[CmnMch::systemMissing]) return true;
  const OBS* first = nullptr;
  const OBS* second = nullptr;
  const OBS* third = nullptr;
  const std::int32_t kind = variable.GetMissingValues(first, second, third);
  if (kind == -2 || kind == -3) return isIn(number, first, second) || (kind == -3 && number == third->number);
  const OBS* discrete[] = {first, second, third};
  for (std::int32_t index = 0; index < kind; ++index) {
    if (number == discrete[index]->number) return true;
  }
  return false;
}

struct Counts {
  std::vector<std::int64_t> missing;  // per variable of the list
  std::int64_t cases = 0;
};

Counts countMissing(VRIX_DataSource& data, const std::vector<std::int32_t>& variables) {
  Counts counts{std::vector<std::int64_t>(variables.size()), 0};
  const std::unique_ptr<VRIX_InputCaseIterator> cases = data.CreateCaseIterator(IteratorOptions::standard);
  while (cases != nullptr && cases->NextCase()) {
    ++counts.cases;
    for (std::size_t index = 0; index < variables.size(); ++index) {
      const VRIX_Variable& variable = data.GetVariable(variables[index]);
      if (isMissing(variable, cases->GetObsPointer(variables[index]))) ++counts.missing[index];
    }
  }
  return counts;
}

void writeTable(BpProcedure& procedure, const VRIX_DataSource& data, const Options& options, const Counts& counts) {
  BpPivotTable table = procedure.PivotTable(BpString("Missing Values", true), BpString("Missing Values", true), true);
  BpDimension rows = table.Dimension(BpString("Variable", true), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, false, false);
  BpDimension columns = table.Dimension(BpString("Missing", true), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, false, false);
  for (std::size_t index = 0; index < options.variables.size(); ++index) {
    rows.Category(BpVariable(data.GetVariable(options.variables[index]), BpVariableShow::nameAndLabel));
    const auto missing = static_cast<double>(counts.missing[index]);
    columns.Category(BpString("Count", true)).Cell(BpNumber(missing, BpProcedure::Count()));
    if (!options.percent) continue;
    const double percent = counts.cases > 0 ? missing * 100.0 / static_cast<double>(counts.cases) : 0.0;
    columns.Category(BpString("Percent", true)).Cell(BpNumber(percent, BpProcedure::Percent()));
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void MISSCOUNT() {
  BpProcedure procedure("Count Missing", 1);
  const VRIX_TokenSequence tokens(true);
  ProcedureDataSource data;
  Options options;
  if (!readCommand(tokens, data, options)) return;
  const Counts counts = countMissing(data, options.variables);
  writeTable(procedure, data, options, counts);
}
