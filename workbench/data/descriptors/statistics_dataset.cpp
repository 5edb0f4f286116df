#include "workbench/data/descriptors/statistics_dataset.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/attributes_reading.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/text/folding.h"

namespace workbench::data {
namespace {

// The field of the name, else of the name in another case.
const DescribedField* fieldNamed(const DescribedTable& table, const std::string& name) {
  const auto isSame = [&name](const DescribedField& field) { return field.variable.name == name; };
  auto found = std::find_if(table.fields.begin(), table.fields.end(), isSame);
  if (found == table.fields.end()) {
    found = std::find_if(table.fields.begin(), table.fields.end(),
                         [&name](const DescribedField& field) { return text::sameName(field.variable.name, name); });
  }
  return found == table.fields.end() ? nullptr : &*found;
}

enum class MustBe { any, numeric };

// The name as the field has it; empty when it was rejected.
std::string fieldName(const DescriptorValue& value, const DescribedTable& table, MustBe mustBe) {
  const std::string name = value.text().value_or("");
  if (table.fields.empty() || value.findings().problem()) return name;
  const DescribedField* const field = fieldNamed(table, name);
  if (field == nullptr) {
    std::vector<std::string> names;
    for (const DescribedField& each : table.fields) names.push_back(each.variable.name);
    value.reject("^1 is \"^2\", and no field has this name.", {name},
                 remedyWithHint("Write the name of a field.", name, names));
    return {};
  }
  if (mustBe == MustBe::numeric && !field->variable.isNumeric()) {
    value.reject("^1 is \"^2\", which is a string.", {name}, "Name a field that holds numbers.");
  }
  return field->variable.name;
}

void readAttributesPart(const DescriptorValue& value, DescribedTable& table) {
  table.attributes = readAttributes(value);
}

void readFilter(const DescriptorValue& value, DescribedTable& table) {
  table.filter = fieldName(value, table, MustBe::numeric);
}

void readWeight(const DescriptorValue& value, DescribedTable& table) {
  table.weight = fieldName(value, table, MustBe::numeric);
}

void readSplit(const DescriptorValue& value, DescribedTable& table) {
  for (const DescriptorValue& entry : value.list().value_or(std::vector<DescriptorValue>{})) {
    const std::string name = fieldName(entry, table, MustBe::any);
    if (value.findings().problem()) return;
    if (std::find(table.split.begin(), table.split.end(), name) != table.split.end()) {
      entry.reject("^1 is \"^2\", which stands there already.", {name}, "Name it once.");
    }
    table.split.push_back(name);
  }
}

struct PartRow {
  std::string_view name;
  void (*read)(const DescriptorValue& value, DescribedTable& table);
};
constexpr auto partRows = std::to_array<PartRow>({
    {property::attributes, readAttributesPart},
    {property::filter, readFilter},
    {property::weight, readWeight},
    {property::split, readSplit},
});

}  // namespace

void readStatisticsDataset(const DescriptorValue& value, DescribedTable& table) {
  const auto object = value.object();
  if (!object) return;
  std::vector<std::string_view> known;
  for (const PartRow& row : partRows) {
    known.push_back(row.name);
    if (const auto part = object->at(row.name)) row.read(*part, table);
  }
  object->rejectOthers(known);
}

}  // namespace workbench::data
