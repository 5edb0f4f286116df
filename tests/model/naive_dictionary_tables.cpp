#include "tests/model/naive_dictionary_tables.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "tests/model/cell_text.h"
#include "tests/model/naive_case_tables.h"
#include "tests/model/property_text.h"
#include "tests/model/table.h"

namespace workbench::tests::model {

namespace {

struct PropertyColumn {
  const char* property;
  const char* key;
  std::string (*text)(const Variable& variable);  // null: the table of value labels tells
};

constexpr std::array<PropertyColumn, 8> columns = {{
    {"width", "CD_AttributeWidth", [](const Variable& variable) { return bareNumber(variable.format.width); }},
    {"label", "CD_AttributeLabel", [](const Variable& variable) { return plain(variable.label.value_or("")); }},
    {"valuelabels", "CD_AttributeValueLabels", nullptr},
    {"missing", "CD_AttributeMissing", missingValuesText},
    {"columns", "CD_AttributeColumns", [](const Variable& variable) { return bareNumber(variable.columns); }},
    {"align", "CD_AttributeAlign", [](const Variable& variable) { return alignmentText(variable.alignment); }},
    {"measure", "CD_AttributeMeasure", [](const Variable& variable) { return levelText(variable.level); }},
    {"role", "CD_AttributeRole", [](const Variable& variable) { return roleText(variable.role); }},
}};

const std::string* labelOf(const Variable& variable, const Value& value) {
  for (const auto& [labelled, label] : variable.valueLabels) {
    if (labelled == value) return &label;
  }
  return nullptr;
}

// Those of either side, ascending; the active dataset's where both have one.
std::vector<Value> labelledValues(const Variable& active, const Variable& compared) {
  std::vector<Value> values;
  for (const Variable* variable : {&active, &compared}) {
    for (const auto& [value, label] : variable->valueLabels) {
      if (std::find(values.begin(), values.end(), value) == values.end()) values.push_back(value);
    }
  }
  std::sort(values.begin(), values.end());
  return values;
}

}  // namespace

std::string dictionaryTable(const World& world, const ComparedDictionaries& compared) {
  Table table("CD_DictCompTableName", "Dictionary Comparison");
  table.setCaption(sidesCaption);
  table.addDimension("CD_Variable", "(0,1,false,false)");
  table.addDimension("CD_Attributes", "(1,1,false,false)");
  for (const PropertyColumn& column : columns) {
    if (compared.properties.contains(column.property)) table.nameCategory(1, {column.key});
  }
  const bool showsAttributes = compared.properties.contains("attributes");
  if (showsAttributes) {
    table.nameGroup(1, {"ID", "CD_AttributeCustom"});
    for (const std::string& name : compared.attributeNames) {
      table.nameCategory(1, {"ID", "CD_AttributeCustom", plain(name)});
    }
  }
  for (const ComparedVariable& variable : compared.variables) {
    const Variable& active = world.active.variables[variable.active];
    const Variable& other = world.compared.variables[variable.compared];
    const Path row = {variableText(active)};
    table.nameCategory(0, row);
    for (const PropertyColumn& column : columns) {
      if (!compared.properties.contains(column.property)) continue;
      const std::vector<Path> address = {row, {column.key}};
      if (!variable.differing.contains(column.property)) {
        table.write(address, plain(""));
      } else if (column.text == nullptr) {
        table.writeWithNote(address, "CD_Mismatch", "See the Value Labels Com...");
      } else {
        table.write(address, bothSides(column.text(active), column.text(other)));
      }
    }
    for (const auto& [name, texts] : variable.attributes) {
      if (!showsAttributes) break;
      table.write({row, {"ID", "CD_AttributeCustom", plain(name)}},
                  texts.first == texts.second ? plain("") : bothSides(plain(texts.first), plain(texts.second)));
    }
  }
  return table.text();
}

bool valueLabelsDiffer(const ComparedDictionaries& compared) {
  return std::any_of(compared.variables.begin(), compared.variables.end(),
                     [](const ComparedVariable& variable) { return variable.differing.contains("valuelabels"); });
}

std::string valueLabelsTable(const World& world, const ComparedDictionaries& compared) {
  Table table("CD_ValueLabelsCompTableName", "Value Labels Comparison");
  // The second placing is of the variables once more, so the values stay where the host puts them.
  table.addDimension("CD_Variable", "(0,2,false,false)");
  table.addDimension("CD_Value", "");
  table.addDimension("CD_Comparison", "(1,1,true,false)");
  for (const char* column : {"CD_Active", "CD_Comparison", "CD_Mismatched"}) {
    table.nameCategory(2, {"CD_Comparison", column});
  }
  for (const ComparedVariable& variable : compared.variables) {
    if (!variable.differing.contains("valuelabels")) continue;
    const Variable& active = world.active.variables[variable.active];
    const Variable& other = world.compared.variables[variable.compared];
    for (const Value& value : labelledValues(active, other)) {
      const std::string* here = labelOf(active, value);
      const std::string* there = labelOf(other, value);
      const bool agree = here != nullptr && there != nullptr && *here == *there;
      const auto write = [&](const char* column, const std::string& content) {
        table.write({{variableText(active)}, {valueText(active, value)}, {"CD_Comparison", column}}, content);
      };
      write("CD_Active", plain(here == nullptr ? "." : *here));
      write("CD_Comparison", plain(there == nullptr ? "." : *there));
      write("CD_Mismatched", agree ? plain("") : "CD_Mismatch");
    }
  }
  return table.text();
}

}  // namespace workbench::tests::model
