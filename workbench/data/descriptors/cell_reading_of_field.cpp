#include "workbench/data/descriptors/cell_reading_of_field.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <vector>

#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/descriptors/property_names.h"

namespace workbench::data {
namespace {

constexpr std::string_view oldPrefix = "fmt:";  // before patterns, in the earliest descriptors

void readPattern(const DescriptorValue& value, const std::string& format, CellReading& reading) {
  constexpr const char* writeAPattern = "Write the pattern of the cells, or leave it out for ISO 8601.";
  if (format.empty()) {
    value.reject("^1 is empty.", writeAPattern);
  } else if (const auto problem = patternProblem(reading.type, format)) {
    value.reject("^1 is \"^2\"; ^3.", {format, *problem}, writeAPattern);
  } else {
    reading.pattern = format;
  }
}

void readFormat(const DescriptorObject& field, const FieldType& type, CellReading& reading) {
  const auto value = field.at(property::format);
  if (!value) return;
  std::optional<std::string> format = value->textWithoutNul();
  if (!format) return;
  if (format->starts_with(oldPrefix)) format->erase(0, oldPrefix.size());
  if (std::find(type.formats.begin(), type.formats.end(), *format) != type.formats.end()) return;
  if (type.takesPattern) {
    readPattern(*value, *format, reading);
    return;
  }
  const std::vector<std::string> known(type.formats.begin(), type.formats.end());
  value->reject("^1 is \"^2\", and a field of type \"^3\" knows only ^4.", {*format, type.name, listedOr(known)},
                remedyWithHint("It says how cells are read; how values are shown stands in \"statistics:variable\".",
                               *format, known));
}

// The text is a mark inside numbers.
std::optional<std::string> markInNumbers(const DescriptorValue& value) {
  std::optional<std::string> mark = value.textWithoutNul();
  if (!mark) return std::nullopt;
  if (!mark->empty() && mark->find_first_of("0123456789+-") == std::string::npos) return mark;
  value.reject("^1 has to be one character or more, none of them a digit or a sign.",
               "Write the characters, or leave it out.");
  return std::nullopt;
}

void readDecimalChar(const DescriptorValue& value, CellReading& reading) {
  reading.decimalChar = markInNumbers(value).value_or(reading.decimalChar);
}

void readGroupChar(const DescriptorValue& value, CellReading& reading) {
  reading.groupChar = markInNumbers(value).value_or("");
}

void readBareNumber(const DescriptorValue& value, CellReading& reading) {
  reading.bareNumber = value.truth().value_or(true);
}

std::vector<std::string> textsOfTruth(const DescriptorValue& value) {
  std::vector<std::string> all = value.texts().value_or(std::vector<std::string>{});
  if (all.empty()) value.reject("^1 names no text.", "Name at least one, or leave it out.");
  return all;
}

void readTrueValues(const DescriptorValue& value, CellReading& reading) { reading.trueTexts = textsOfTruth(value); }
void readFalseValues(const DescriptorValue& value, CellReading& reading) { reading.falseTexts = textsOfTruth(value); }

struct ReadingRow {
  std::string_view name;
  CellType type;
  void (*read)(const DescriptorValue& value, CellReading& reading);
};
constexpr auto readingRows = std::to_array<ReadingRow>({
    {property::decimalChar, CellType::number, readDecimalChar},
    {property::groupChar, CellType::number, readGroupChar},
    {property::bareNumber, CellType::number, readBareNumber},
    {property::groupChar, CellType::integer, readGroupChar},
    {property::bareNumber, CellType::integer, readBareNumber},
    {property::trueValues, CellType::boolean, readTrueValues},
    {property::falseValues, CellType::boolean, readFalseValues},
});

void checkMarks(const DescriptorObject& field, const CellReading& reading) {
  if (reading.type != CellType::number || reading.groupChar != reading.decimalChar) return;
  field.value().rejectWith(
      "\"groupChar\" and \"decimalChar\" are both \"^1\".", {reading.groupChar},
      "Give both where numbers have a decimal comma: \"decimalChar\": \",\" and \"groupChar\": \".\".");
}

void checkTruth(const DescriptorObject& field, const CellReading& reading) {
  if (reading.type != CellType::boolean) return;
  const std::unordered_set<std::string> falseTexts(reading.falseTexts.begin(), reading.falseTexts.end());
  for (const std::string& each : reading.trueTexts) {
    if (!falseTexts.contains(each)) continue;
    field.value().rejectWith("\"^1\" stands among the texts for true and among those for false.", {each},
                             "Give both \"trueValues\" and \"falseValues\", each text in one of them.");
  }
}

}  // namespace

CellReading cellReading(const DescriptorObject& field, const FieldType& type) {
  CellReading reading;
  reading.type = type.cell;
  readFormat(field, type, reading);
  for (const ReadingRow& row : readingRows) {
    if (row.type != type.cell) continue;
    if (const auto value = field.at(row.name)) row.read(*value, reading);
  }
  checkMarks(field, reading);
  checkTruth(field, reading);
  return reading;
}

}  // namespace workbench::data
