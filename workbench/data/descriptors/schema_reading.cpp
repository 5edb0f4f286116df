#include "workbench/data/descriptors/schema_reading.h"

#include <array>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "workbench/data/descriptors/field_reading.h"
#include "workbench/data/descriptors/missing_values.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/schema_keys.h"

namespace workbench::data {
namespace {

constexpr auto fieldsMatchWords = std::to_array<WordRow<FieldsMatch>>({
    {"exact", FieldsMatch::exact},
    {"equal", FieldsMatch::equal},
    {"subset", FieldsMatch::subset},
    {"superset", FieldsMatch::superset},
    {"partial", FieldsMatch::partial},
});

// A list of one word is tolerated: there are descriptors that were written for validators that ask for it.
FieldsMatch fieldsMatchOf(const DescriptorValue& value) {
  if (!value.isList()) return value.word(fieldsMatchWords).value_or(FieldsMatch::exact);
  const std::vector<DescriptorValue> entries = *value.list();
  if (entries.size() == 1) return entries.front().word(fieldsMatchWords).value_or(FieldsMatch::exact);
  value.reject("^1 is a list, and has to be one word.", "Write the word as a text.");
  return FieldsMatch::exact;
}

void readFields(const DescriptorObject& schema, DescribedTable& table) {
  const auto value = schema.required(property::fields);
  const auto list = value ? value->list() : std::nullopt;
  if (!list) return;
  if (list->empty()) value->reject("^1 lists no field.", "List one per column.");
  const std::vector<MissingEntry> entries = missingEntries(schema).value_or(defaultMissingEntries());
  for (const DescriptorValue& each : *list) {
    const auto field = each.object();
    if (!field) return;
    table.fields.push_back(describedField(*field, entries));
    if (value->findings().problem()) return;
  }
}

}  // namespace

void readSchema(const DescriptorObject& schema, DescribedTable& table) {
  if (const auto value = schema.at(property::fieldsMatch)) table.fieldsMatch = fieldsMatchOf(*value);
  readFields(schema, table);
  std::unordered_set<std::string> names;
  for (const DescribedField& field : table.fields) names.insert(field.variable.name);
  if (!schema.value().findings().problem()) checkKeys(schema, names);
}

}  // namespace workbench::data
