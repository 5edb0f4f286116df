#include "workbench/app/dictionary_display.h"

#include <array>

#include "host/output.h"
#include "workbench/app/dictionary_texts.h"
#include "workbench/data/working/dictionary_variable.h"

namespace workbench::app {

namespace {

using data::Dataset;
using data::Dictionary;
using data::DictionaryVariable;
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

std::string nameOrNothing(const Dictionary& dictionary, std::int32_t index) {
  return index < 0 ? std::string() : dictionary.at(index).name;
}

std::vector<std::string> splitNames(const Dictionary& dictionary) {
  std::vector<std::string> names;
  for (const std::int32_t index : dictionary.split) names.push_back(dictionary.at(index).name);
  return names;
}

// A table opened with its two dimensions in place.
struct PropertyTable {
  PropertyTable(BpProcedure& procedure, const char* title, const char* rowTitle, const char* columnTitle)
      : table(procedure.PivotTable(key(title), key(title), true)),
        rows(table.Dimension(key(rowTitle), BpSort::asMade)),
        columns(table.Dimension(key(columnTitle), BpSort::asMade)) {
    rows.Position(BpPlace::rows, 1, false, false);
    columns.Position(BpPlace::columns, 1, true, false);
  }

  BpPivotTable table;
  BpDimension rows;
  BpDimension columns;
};

void showDataset(BpProcedure& procedure, const Dataset& dataset, const std::string& handle, std::int64_t cases) {
  PropertyTable shown(procedure, "Dataset", "Information", "Dataset");
  const Dictionary& dictionary = dataset.dictionary();
  shown.columns.Category(plain(handle));
  const auto row = [&](const char* title, const BpCellText& text) { shown.rows.Category(key(title)).Cell(text); };
  row("Data File", plain(dataset.path()));
  row("Dictionary File", dataset.dictionaryFile().empty() ? BpString("none; inferred from the cases", true)
                                                          : plain(dataset.dictionaryFile()));
  row("Cases", count(static_cast<double>(cases)));
  row("Variables", count(dictionary.size()));
  row("Filter", plain(nameOrNothing(dictionary, dictionary.filter)));
  row("Weight", plain(nameOrNothing(dictionary, dictionary.weight)));
  row("Split Variables", listText(splitNames(dictionary)));
}

// The columns of the dictionary: what each is called, and how a variable's part is shown.
struct PropertyColumn {
  const char* title;
  void (*write)(BpCategory category, const DictionaryVariable& variable);
};
constexpr auto propertyColumns = std::to_array<PropertyColumn>({
    {"Label", [](BpCategory to, const DictionaryVariable& of) { to.Cell(plain(of.variable().label.value_or(""))); }},
    {"Type", [](BpCategory to, const DictionaryVariable& of) { to.Cell(key(of.GetType() == 0 ? "Number" : "Text")); }},
    {"Width in Bytes",
     [](BpCategory to, const DictionaryVariable& of) { to.Cell(count(of.GetType() == 0 ? 8 : of.GetType())); }},
    {"Print Format",
     [](BpCategory to, const DictionaryVariable& of) { to.Cell(plain(formatText(of.variable().format))); }},
    {"Missing Values",
     [](BpCategory to, const DictionaryVariable& of) {
       if (of.variable().missing.code != 0) to.Cell(missingValuesText(of));
     }},
    {"Columns", [](BpCategory to, const DictionaryVariable& of) { to.Cell(count(of.GetDisplayWidth())); }},
    {"Alignment", [](BpCategory to, const DictionaryVariable& of) { to.Cell(key(alignmentKey(of.GetAlignment()))); }},
    {"Level", [](BpCategory to, const DictionaryVariable& of) { to.Cell(key(levelKey(of.GetMeasurementLevel()))); }},
    {"Role", [](BpCategory to, const DictionaryVariable& of) { to.Cell(key(roleKey(of.GetRole()))); }},
});

void showVariables(BpProcedure& procedure, const Dictionary& dictionary) {
  PropertyTable shown(procedure, "Dictionary", "Variable", "Property");
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const DictionaryVariable variable(dictionary.at(index), index, nullptr);
    shown.rows.Category(plain(variable.GetName()));
    shown.columns.Category(key("Position")).Cell(count(index + 1));
    for (const PropertyColumn& column : propertyColumns) {
      column.write(shown.columns.Category(key(column.title)), variable);
    }
  }
}

void showValueLabels(BpProcedure& procedure, const Dictionary& dictionary) {
  PropertyTable shown(procedure, "Value Labels", "Value", "Property");
  const BpCategory labels = shown.columns.Category(key("Label"));
  for (std::int32_t index = 0; index < dictionary.size(); ++index) {
    const DictionaryVariable variable(dictionary.at(index), index, nullptr);
    const auto group = [&] { return shown.rows.Group(plain(variable.GetName()), true, BpSort::asMade); };
    const auto write = [&](const auto& value, const std::string& label) {
      group().Category(BpDataValue(variable, value, BpValueShow::inPrintFormat));
      BpCategory(labels).Cell(plain(label));
    };
    for (const auto& [value, label] : variable.variable().numberLabels) write(value, label);
    for (const auto& [value, label] : variable.variable().textLabels) write(std::string_view(value), label);
  }
}

void showAttributes(BpProcedure& procedure, const Dictionary& dictionary) {
  PropertyTable shown(procedure, "Attributes", "Attribute", "Property");
  const BpCategory values = shown.columns.Category(key("Value"));
  const auto write = [&](const BpString& owner, const DatasourceAttributes& attributes) {
    for (std::int32_t index = 0; index < attributes.Size(); ++index) {
      shown.rows.Group(owner, true, BpSort::asMade).Category(plain(attributes.Name(index)));
      BpCategory(values).Cell(listText(attributes.Values(index)));
    }
  };
  write(key("Dataset"), dictionary.attributes);
  for (const Variable& variable : dictionary.variables()) write(plain(variable.name), variable.attributes);
}

bool hasValueLabels(const Dictionary& dictionary) {
  for (const Variable& variable : dictionary.variables()) {
    if (!variable.numberLabels.empty() || !variable.textLabels.empty()) return true;
  }
  return false;
}

bool hasAttributes(const Dictionary& dictionary) {
  if (dictionary.attributes.Size() != 0) return true;
  for (const Variable& variable : dictionary.variables()) {
    if (variable.attributes.Size() != 0) return true;
  }
  return false;
}

}  // namespace

Outcome<Done> describeDataset(const Dataset& dataset, const std::string& handle) {
  const std::int64_t cases = countCases(dataset);
  const Dictionary& dictionary = dataset.dictionary();
  BpProcedure procedure("Describe Data", 0);
  showDataset(procedure, dataset, handle, cases);
  showVariables(procedure, dictionary);
  if (hasValueLabels(dictionary)) showValueLabels(procedure, dictionary);
  if (hasAttributes(dictionary)) showAttributes(procedure, dictionary);
  return Done{};
}

}  // namespace workbench::app
