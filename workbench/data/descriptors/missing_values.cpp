#include "workbench/data/descriptors/missing_values.h"

#include <fmt/format.h>

#include <set>
#include <unordered_set>
#include <utility>

#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// Every field goes through the entries of its schema: without a limit few bytes could make much work.
constexpr std::size_t mostEntries = 1000;

std::optional<MissingEntry> entryOf(const DescriptorValue& value, bool asObject) {
  if (!asObject) {
    std::optional<std::string> written = value.text();
    if (!written) return std::nullopt;
    return MissingEntry{*std::move(written), std::nullopt};
  }
  const auto object = value.object();
  if (!object) return std::nullopt;
  const auto member = object->required(property::value);
  std::optional<std::string> written = member ? member->text() : std::nullopt;
  if (!written) return std::nullopt;
  MissingEntry entry{*std::move(written), std::nullopt};
  if (const auto label = object->at(property::label)) entry.label = label->text();
  return entry;
}

// Texts and labels have to be unique, each among its kind.
void checkUnique(const MissingEntry& entry, const DescriptorValue& value, std::unordered_set<std::string>& texts,
                 std::unordered_set<std::string>& labels) {
  if (!texts.insert(entry.text).second) {
    value.rejectWith("The missing value \"^1\" is listed twice.", {entry.text}, "List it once.");
  }
  if (entry.label && !labels.insert(*entry.label).second) {
    value.rejectWith("Two missing values have the label \"^1\".", {*entry.label}, "Give each a label of its own.");
  }
}

std::string quotedList(const std::vector<std::string>& texts) {
  std::string list;
  for (std::size_t index = 0; index < texts.size(); ++index) {
    if (index != 0) list += index + 1 == texts.size() ? " and " : ", ";
    list += texts[index];
  }
  return list;
}

}  // namespace

std::vector<MissingEntry> defaultMissingEntries() { return {{"", std::nullopt}}; }

std::optional<std::vector<MissingEntry>> missingEntries(const DescriptorObject& schemaOrField) {
  const auto value = schemaOrField.at(property::missingValues);
  if (!value) return std::nullopt;
  std::vector<MissingEntry> entries;
  std::unordered_set<std::string> texts;
  std::unordered_set<std::string> labels;
  const auto list = value->list().value_or(std::vector<DescriptorValue>{});
  if (list.size() > mostEntries) {
    value->reject("^1 has ^2 entries; ^3 are the most.", {fmt::to_string(list.size()), fmt::to_string(mostEntries)},
                  "Leave some out.");
    return entries;
  }
  for (const DescriptorValue& each : list) {
    const bool asObject = list.front().isObject();
    if (each.isObject() != asObject && (each.isText() || each.isObject())) {
      each.rejectWith("Texts and objects stand in the same list of missing values.",
                      "Write all as texts, or all as objects with \"value\" and \"label\".");
    }
    const std::optional<MissingEntry> entry = entryOf(each, asObject);
    if (!entry) break;
    checkUnique(*entry, each, texts, labels);
    entries.push_back(*entry);
  }
  return entries;
}

MissingReading readMissing(const std::vector<MissingEntry>& entries, const DescriptorObject& field,
                           const FieldValueReader& values, ValueLabels& labels) {
  MissingReading reading;
  std::set<FieldValue> known;
  for (const MissingEntry& entry : entries) {
    const std::optional<FieldValue> value = values.ofCell(entry.text);
    if (!value) {
      reading.noValueTexts.push_back(entry.text);
      if (entry.label) reading.labelsLeftOut.push_back(entry.text);
      continue;
    }
    if (entry.label) labels.add(*value, *entry.label, field.value());
    if (known.insert(*value).second) reading.values.push_back(*value);
  }
  return reading;
}

MissingValues userMissing(const std::vector<FieldValue>& values, const std::string& fieldName,
                          DescriptorFindings& findings) {
  MissingValues missing;
  std::vector<std::string> tooLong;
  std::vector<std::string> tooMany;
  for (const FieldValue& value : values) {
    const auto* const written = std::get_if<std::string>(&value);
    if (written != nullptr && written->size() > longestMissingText) {
      tooLong.push_back(shownValue(value));
    } else if (missing.code == mostDiscreteValues) {
      tooMany.push_back(shownValue(value));
    } else {
      missing.values[static_cast<std::size_t>(missing.code++)] = missingValueOf(value);
    }
  }
  if (!tooLong.empty()) {
    findings.warn(
        text::sentence(
            tooLong.size() == 1
                ? "no missing value of a string may be longer than ^1 bytes, so ^2 stays in the data as ordinary text."
                : "no missing value of a string may be longer than ^1 bytes, so ^2 stay in the data as ordinary text.",
            {fmt::to_string(longestMissingText), quotedList(tooLong)}),
        fieldName);
  }
  if (!tooMany.empty()) {
    findings.warn(
        text::sentence(tooMany.size() == 1
                           ? "a variable has at most ^1 missing values, so ^2 stays in the data as ordinary values."
                           : "a variable has at most ^1 missing values, so ^2 stay in the data as ordinary values.",
                       {fmt::to_string(mostDiscreteValues), quotedList(tooMany)}),
        fieldName);
  }
  return missing;
}

}  // namespace workbench::data
