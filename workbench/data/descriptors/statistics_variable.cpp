#include "workbench/data/descriptors/statistics_variable.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>

#include "workbench/data/descriptors/attributes_reading.h"
#include "workbench/data/descriptors/declared_missing.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/statistics_words.h"

namespace workbench::data {
namespace {

// What the parts are read into.
struct Draft {
  DescribedField& described;
  const FieldValueReader& values;
  ValueLabels& labels;
  StatisticsReading reading;
};

void readStorageWidth(const DescriptorValue& value, Draft& draft) {
  if (!draft.values.isText()) {
    value.reject("^1 is for strings only, and this field is a number.", "Leave it out.");
    return;
  }
  const auto width = value.wholeNumber(1, widestStorage);
  if (!width) return;
  draft.described.width = static_cast<std::int32_t>(*width);
  draft.described.variable.width = *draft.described.width;
}

std::optional<FormatType> formatTypeOf(const DescriptorValue& value, bool isText) {
  std::array<WordRow<FormatType>, std::size(formatTypeRows)> words;
  std::transform(std::begin(formatTypeRows), std::end(formatTypeRows), words.begin(),
                 [](const FormatTypeRow& row) { return WordRow<FormatType>{row.name, row.type}; });
  const auto type = value.word(words);
  if (!type || (*type == FormatType::text) == isText) return type;
  value.reject(isText ? "^1 is a format of numbers, and this field is a string."
                      : "^1 is for strings, and this field is a number.",
               isText ? "Write \"A\"." : "Write a format of numbers, such as \"F\".");
  return std::nullopt;
}

void readFormat(const DescriptorValue& value, Draft& draft) {
  const auto object = value.object();
  if (!object) return;
  object->rejectOthers({property::type, property::width, property::decimals});
  const auto typeValue = object->required(property::type);
  const auto widthValue = object->required(property::width);
  if (!typeValue || !widthValue) return;
  const auto type = formatTypeOf(*typeValue, draft.values.isText());
  if (!type) return;
  const auto width = widthValue->wholeNumber(1, widestFormat(*type));
  if (!width) return;
  const auto decimalsValue = object->at(property::decimals);
  const auto decimals = decimalsValue
                            ? decimalsValue->wholeNumber(0, mostDecimalsOf(*type, static_cast<std::int32_t>(*width)))
                            : std::int64_t{0};
  if (!decimals) return;
  draft.described.format = {*type, static_cast<std::int32_t>(*width), static_cast<std::int32_t>(*decimals)};
  draft.described.variable.format = *draft.described.format;
}

void readColumns(const DescriptorValue& value, Draft& draft) {
  const auto columns = value.wholeNumber(1, widestDisplay);
  if (!columns) return;
  draft.described.displayWidth = static_cast<std::int32_t>(*columns);
  draft.described.variable.displayWidth = *draft.described.displayWidth;
}

void readAlign(const DescriptorValue& value, Draft& draft) {
  const auto alignment = value.word(alignmentWords);
  if (!alignment) return;
  draft.described.alignment = alignment;
  draft.described.variable.alignment = *alignment;
}

void readLevel(const DescriptorValue& value, Draft& draft) { draft.reading.level = value.word(levelWords); }

void readRole(const DescriptorValue& value, Draft& draft) {
  Variable& variable = draft.described.variable;
  variable.role = value.word(roleWords).value_or(variable.role);
}

void readValueLabel(const DescriptorValue& entry, Draft& draft, std::vector<FieldValue>& labelled) {
  const auto object = entry.object();
  if (!object) return;
  object->rejectOthers({property::value, property::label});
  const auto valueMember = object->required(property::value);
  const auto labelMember = object->required(property::label);
  if (!valueMember || !labelMember) return;
  const auto value = draft.values.ofJson(*valueMember);
  const auto label = labelMember->text();
  if (!value || !label) return;
  labelled.push_back(*value);
  draft.labels.add(*value, *label, entry);
}

void readValueLabels(const DescriptorValue& value, Draft& draft) {
  std::vector<FieldValue> labelled;
  for (const DescriptorValue& entry : value.list().value_or(std::vector<DescriptorValue>{})) {
    readValueLabel(entry, draft, labelled);
  }
  std::sort(labelled.begin(), labelled.end());
  if (const auto twin = std::adjacent_find(labelled.begin(), labelled.end()); twin != labelled.end()) {
    value.rejectWith("The value ^1 is labelled twice.", {shownValue(*twin)}, "List it once.");
  }
}

void readDeclaredMissing(const DescriptorValue& value, Draft& draft) {
  if (std::optional<DeclaredMissing> missing = declaredMissing(value, draft.values)) {
    draft.reading.missing = missing->missing;
    draft.reading.missingValues = std::move(missing->discrete);
  }
}

void readOwnAttributes(const DescriptorValue& value, Draft& draft) {
  draft.described.variable.attributes = readAttributes(value);
}

struct PartRow {
  std::string_view name;
  void (*read)(const DescriptorValue& value, Draft& draft);
};
constexpr auto partRows = std::to_array<PartRow>({
    {property::storageWidth, readStorageWidth},
    {property::format, readFormat},
    {property::columns, readColumns},
    {property::align, readAlign},
    {property::level, readLevel},
    {property::role, readRole},
    {property::valueLabels, readValueLabels},
    {property::missing, readDeclaredMissing},
    {property::attributes, readOwnAttributes},
});

}  // namespace

StatisticsReading readStatisticsVariable(const DescriptorObject& field, DescribedField& described,
                                         const FieldValueReader& values, ValueLabels& labels) {
  Draft draft{described, values, labels, {}};
  const auto value = field.at(property::statisticsVariable);
  const auto object = value ? value->object() : std::nullopt;
  if (!object) return std::move(draft.reading);
  std::vector<std::string_view> known;
  for (const PartRow& row : partRows) {
    known.push_back(row.name);
    if (const auto part = object->at(row.name)) row.read(*part, draft);
  }
  object->rejectOthers(known);
  return std::move(draft.reading);
}

}  // namespace workbench::data
