#include "workbench/data/descriptors/constraints_reading.h"

#include <array>
#include <limits>
#include <set>
#include <string>
#include <unordered_set>

#include "workbench/data/descriptors/property_names.h"

namespace workbench::data {
namespace {

void checkTruth(const DescriptorValue& value) { (void)value.truth(); }
void checkText(const DescriptorValue& value) { (void)value.text(); }
void checkObject(const DescriptorValue& value) { (void)value.object(); }
void checkLength(const DescriptorValue& value) { (void)value.wholeNumber(0, std::numeric_limits<std::int64_t>::max()); }

// A value of the field, or the text of a cell.
void checkBound(const DescriptorValue& value) {
  if (value.isNumber() || value.isText()) return;
  value.reject("^1 has to be a number or a text.", "Write a value of the field.");
}

void checkEnumeration(const DescriptorValue& value) {
  const auto entries = value.list();
  if (entries && entries->empty()) value.reject("^1 lists no value.", "List at least one, or leave it out.");
}

struct ConstraintRow {
  std::string_view name;
  void (*check)(const DescriptorValue& value);
};
constexpr auto constraintRows = std::to_array<ConstraintRow>({
    {"required", checkTruth},
    {"unique", checkTruth},
    {"minLength", checkLength},
    {"maxLength", checkLength},
    {"minimum", checkBound},
    {"maximum", checkBound},
    {"exclusiveMinimum", checkBound},
    {"exclusiveMaximum", checkBound},
    {"pattern", checkText},
    {property::enumeration, checkEnumeration},
    {"jsonSchema", checkObject},
});

// Written as the value or as the text of its cell.
std::optional<FieldValue> enumeratedValue(const DescriptorValue& entry, const FieldValueReader& values) {
  if (entry.isText() && !values.isText()) return values.ofCell(*entry.text());
  return values.ofJson(entry);
}

void checkPartOfCategories(const DescriptorValue& enumeration, const std::vector<FieldValue>& categories,
                           const FieldValueReader& values) {
  const std::set<FieldValue> known(categories.begin(), categories.end());
  for (const DescriptorValue& entry : enumeration.list().value_or(std::vector<DescriptorValue>{})) {
    const std::optional<FieldValue> value = enumeratedValue(entry, values);
    if (value && known.contains(*value)) continue;
    entry.reject("^1 is none of the field's categories.", "Take it out of \"enum\", or add it to \"categories\".");
    return;
  }
}

void checkDistinct(const DescriptorValue& enumeration) {
  std::unordered_set<std::string> known;
  for (const DescriptorValue& entry : enumeration.list().value_or(std::vector<DescriptorValue>{})) {
    if (known.insert(entry.shown()).second) continue;
    entry.reject("^1 is listed twice.", "List it once.");
    return;
  }
}

}  // namespace

void checkConstraints(const DescriptorObject& field, const std::optional<std::vector<FieldValue>>& restriction,
                      const FieldValueReader& values) {
  const auto value = field.at(property::constraints);
  const auto object = value ? value->object() : std::nullopt;
  if (!object) return;
  for (const ConstraintRow& row : constraintRows) {
    if (const auto constraint = object->at(row.name)) row.check(*constraint);
  }
  const auto enumeration = object->at(property::enumeration);
  if (!enumeration || field.value().findings().problem()) return;
  checkDistinct(*enumeration);
  if (restriction) checkPartOfCategories(*enumeration, *restriction, values);
}

}  // namespace workbench::data
