#include "workbench/app/dictionary_display.h"

#include <fmt/format.h>

#include "host/output.h"
#include "workbench/data/working/dictionary_variable.h"

namespace workbench::app {

namespace {

using data::Dataset;
using data::Dictionary;
using data::Variable;

BpString key(const char* text) { return BpString(text, true); }
BpString plain(const std::string& text) { return BpString(text, false); }
BpNumber count(double number) { return BpNumber(number, BpProcedure::Count()); }

std::int64_t countCases(const Dataset& dataset) {
  if (const auto known = dataset.caseCount()) return *known;
  data::DatasetPass pass(dataset, data::CaseUse::onlyRead);
  std::int64_t cases = 0;
  while (true) {
    const auto block = pass.next();
    if (block.count == 0) return cases;
    cases += static_cast<std::int64_t>(block.count);
  }
}

std::string formatText(const data::PrintFormat& format) {
  std::string name;
  for (const FormatTypeRow& row : formatTypeRows) {
    if (row.type == format.type) name = row.name;
  }
  return format.decimals > 0 ? fmt::format("{}{}.{}", name, format.width, format.decimals)
                             : fmt::format("{}{}", name, format.width);
}

const char* levelKey(VRIX_Variable_Enumerations::MeasurementLevel level) {
  using Level = VRIX_Variable_Enumerations::MeasurementLevel;
  switch (level) {
    case Level::nominal:
      return "Nominal";
    case Level::ordinal:
      return "Ordinal";
    case Level::scale:
      return "Scale";
    case Level::flag:
      return "Flag";
    case Level::typeless:
      return "Typeless";
    case Level::unknown:
      break;
  }
  return "Unknown";
}

std::string nameOrNothing(const Dictionary& dictionary, std::int32_t index) {
  return index < 0 ? std::string() : dictionary.at(index).name;
}

std::string splitNames(const Dictionary& dictionary) {
  std::string names;
  for (const std::int32_t index : dictionary.split) {
    if (!names.empty()) names += ", ";
    names += dictionary.at(index).name;
  }
  return names;
}

void showDataset(BpProcedure& procedure, const Dataset& dataset, const std::string& handle, std::int64_t cases) {
  BpPivotTable table = procedure.PivotTable(key("Dataset"), key("Dataset"), true);
  BpDimension rows = table.Dimension(key("Information"), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, true, false);
  BpDimension columns = table.Dimension(key("Dataset"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, true, false);
  const Dictionary& dictionary = dataset.dictionary();
  columns.Category(plain(handle));
  rows.Category(key("Data File")).Cell(plain(dataset.path()));
  rows.Category(key("Cases")).Cell(count(static_cast<double>(cases)));
  rows.Category(key("Variables")).Cell(count(dictionary.size()));
  rows.Category(key("Filter")).Cell(plain(nameOrNothing(dictionary, dictionary.filter)));
  rows.Category(key("Weight")).Cell(plain(nameOrNothing(dictionary, dictionary.weight)));
  rows.Category(key("Split Variables")).Cell(plain(splitNames(dictionary)));
}

void showVariables(BpProcedure& procedure, const Dictionary& dictionary) {
  BpPivotTable table = procedure.PivotTable(key("Dictionary"), key("Dictionary"), true);
  BpDimension rows = table.Dimension(key("Variable"), BpSort::asMade);
  rows.Position(BpPlace::rows, 1, false, false);
  BpDimension columns = table.Dimension(key("Property"), BpSort::asMade);
  columns.Position(BpPlace::columns, 1, true, false);
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const Variable& variable = dictionary.at(index);
    rows.Category(plain(variable.name));
    columns.Category(key("Position")).Cell(count(index + 1));
    columns.Category(key("Type")).Cell(key(variable.isNumeric() ? "Number" : "Text"));
    columns.Category(key("Width in Bytes")).Cell(variable.isNumeric() ? count(8) : count(variable.width));
    columns.Category(key("Print Format")).Cell(plain(formatText(variable.format)));
    columns.Category(key("Level")).Cell(key(levelKey(variable.level)));
    columns.Category(key("Label")).Cell(plain(variable.label.value_or("")));
  }
}

}  // namespace

Outcome<Done> describeDataset(const Dataset& dataset, const std::string& handle) {
  const std::int64_t cases = countCases(dataset);
  BpProcedure procedure("Describe Data", 0);
  showDataset(procedure, dataset, handle, cases);
  showVariables(procedure, dataset.dictionary());
  return Done{};
}

}  // namespace workbench::app
