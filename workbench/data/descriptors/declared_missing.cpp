#include "workbench/data/descriptors/declared_missing.h"

#include <fmt/format.h>

#include <string>

#include "workbench/data/cells/system_missing.h"
#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/statistics_words.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {
namespace {

std::optional<double> numberThatDataHold(const DescriptorValue& value) {
  const std::optional<double> number = value.number();
  if (!number || *number != systemMissing) return number;
  value.reject("^1 is the number that stands for no value at all.", "Write another number.");
  return std::nullopt;
}

// A number, or the word for a range that has no such end.
std::optional<double> endOfRange(const DescriptorValue& value, std::string_view openWord, double openEnd) {
  if (value.isText() && *value.text() == openWord) return openEnd;
  if (value.isNumber()) return numberThatDataHold(value);
  value.reject("^1 has to be a number or \"^2\".", {openWord}, "Write one of them.");
  return std::nullopt;
}

std::optional<FieldValue> discreteValue(const DescriptorValue& value, bool isText) {
  if (!isText) {
    const std::optional<double> number = numberThatDataHold(value);
    return number ? std::optional<FieldValue>(*number) : std::nullopt;
  }
  const std::optional<std::string> written = value.text();
  if (!written) return std::nullopt;
  std::string kept(text::withoutTrailingBlanks(*written));
  if (kept.size() <= longestMissingText) return kept;
  value.reject("^1 is \"^2\", and no missing value of a string may be longer than ^3 bytes.",
               {*written, fmt::to_string(longestMissingText)}, "Take it out; its label, if it has one, may stay.");
  return std::nullopt;
}

std::optional<DeclaredMissing> rangeOf(const DescriptorObject& object, bool isText) {
  if (isText) {
    object.value().reject("^1 is a range, and a string has no range of missing values.",
                          "Write \"values\" with one to three texts.");
    return std::nullopt;
  }
  const auto lowValue = object.required(property::low);
  const auto highValue = object.required(property::high);
  if (!lowValue || !highValue) return std::nullopt;
  const auto low = endOfRange(*lowValue, lowWord, lowestNumber);
  const auto high = endOfRange(*highValue, highWord, highestNumber);
  if (!low || !high) return std::nullopt;
  if (*low > *high) {
    object.value().rejectWith("The lower end of the range lies above the upper one.", "Exchange \"low\" and \"high\".");
    return std::nullopt;
  }
  DeclaredMissing declared;
  declared.missing = {rangeCode, {missingValueOf(*low), missingValueOf(*high)}};
  if (const auto value = object.at(property::value)) {
    const auto discrete = discreteValue(*value, isText);
    if (!discrete) return std::nullopt;
    declared.missing.code = rangeAndValueCode;
    declared.missing.values[2] = missingValueOf(*discrete);
    declared.discrete.push_back(*discrete);
  }
  return declared;
}

std::optional<DeclaredMissing> valuesOf(const DescriptorValue& list, bool isText) {
  const auto entries = list.list();
  if (!entries) return std::nullopt;
  if (entries->empty() || entries->size() > std::size_t{mostDiscreteValues}) {
    list.reject("^1 has ^2 entries, and a variable has one to three missing values.", {fmt::to_string(entries->size())},
                "Use a range for more, or leave \"missing\" out where there is none.");
    return std::nullopt;
  }
  DeclaredMissing declared;
  for (const DescriptorValue& entry : *entries) {
    const auto value = discreteValue(entry, isText);
    if (!value) return std::nullopt;
    declared.missing.values[static_cast<std::size_t>(declared.missing.code++)] = missingValueOf(*value);
    declared.discrete.push_back(*value);
  }
  return declared;
}

}  // namespace

std::optional<DeclaredMissing> declaredMissing(const DescriptorValue& value, const FieldValueReader& values) {
  const auto object = value.object();
  if (!object) return std::nullopt;
  object->rejectOthers({property::low, property::high, property::value, property::values});
  const auto list = object->at(property::values);
  if (!list) return rangeOf(*object, values.isText());
  if (object->has(property::low) || object->has(property::high) || object->has(property::value)) {
    value.reject("^1 gives \"values\" beside a range.", "Write either \"values\", or \"low\" and \"high\".");
    return std::nullopt;
  }
  return valuesOf(*list, values.isText());
}

}  // namespace workbench::data
