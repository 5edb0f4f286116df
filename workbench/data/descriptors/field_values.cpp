#include "workbench/data/descriptors/field_values.h"

#include <fmt/format.h>

#include <cmath>
#include <cstring>
#include <utility>

#include "workbench/data/cells/cell_reader.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/system_missing.h"
#include "workbench/text/string_comparison.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

CellReading withoutMissingTexts(CellReading reading) {
  reading.noValueTexts.clear();
  return reading;
}

bool isWholeType(CellType type) { return type == CellType::integer || type == CellType::year; }

bool isCalendarType(CellType type) {
  return type == CellType::year || type == CellType::date || type == CellType::time || type == CellType::dateTime ||
         type == CellType::duration;
}

}  // namespace

OBS missingValueOf(const FieldValue& value) {
  OBS kept;
  if (const double* const number = std::get_if<double>(&value)) {
    kept.number = *number;
    return kept;
  }
  const auto& written = std::get<std::string>(value);
  std::memset(kept.text, ' ', sizeof kept.text);
  std::memcpy(kept.text, written.data(), std::min(written.size(), longestMissingText));
  return kept;
}

std::string shownValue(const FieldValue& value) {
  const double* const number = std::get_if<double>(&value);
  return number != nullptr ? decimalText(*number) : fmt::format("\"{}\"", std::get<std::string>(value));
}

FieldValueReader::FieldValueReader(CellReading reading) : reading_(withoutMissingTexts(std::move(reading))) {}

std::optional<FieldValue> FieldValueReader::ofCell(std::string_view cell) const {
  if (isText()) {
    cell = text::withoutTrailingBlanks(cell);
    if (cell.empty()) return std::nullopt;
    return std::string(cell);
  }
  const std::optional<double> number = CellReader(reading_).number(cell);
  if (!number || *number == systemMissing) return std::nullopt;
  return *number;
}

std::optional<FieldValue> FieldValueReader::ofJson(const DescriptorValue& value) const {
  if (isText()) {
    const std::optional<std::string> written = value.text();
    if (!written) return std::nullopt;
    return std::string(text::withoutTrailingBlanks(*written));
  }
  if (value.isTruth() && reading_.type == CellType::boolean) return *value.truth() ? 1.0 : 0.0;
  if (!value.isText() || !isCalendarType(reading_.type)) return ofNumber(value);
  const std::string written = *value.text();
  std::optional<FieldValue> read = ofCell(written);
  if (!read)
    value.reject("^1 is \"^2\", ^3.", {written, CellReader(reading_).whyNot(written, text::sentence("which"))},
                 "Write it as in a cell.");
  return read;
}

std::optional<FieldValue> FieldValueReader::ofNumber(const DescriptorValue& value) const {
  const std::optional<double> number = value.number();
  if (!number) return std::nullopt;
  if (isWholeType(reading_.type) && *number != std::floor(*number)) {
    value.reject("^1 is ^2, and the field holds whole numbers.", {decimalText(*number)}, "Write a whole number.");
    return std::nullopt;
  }
  if (reading_.type == CellType::boolean && *number != 0 && *number != 1) {
    value.reject("^1 is ^2, and the field holds true and false.", {decimalText(*number)}, "Write true, false, 1 or 0.");
    return std::nullopt;
  }
  if (*number == systemMissing) {
    value.reject("^1 is the number that stands for no value at all.", "Write another number.");
    return std::nullopt;
  }
  return *number;
}

void ValueLabels::add(const FieldValue& value, const std::string& label, const DescriptorValue& place) {
  const auto [known, isNew] = labels_.emplace(value, label);
  if (isNew || known->second == label) return;
  place.rejectWith("The value ^1 has the labels \"^2\" and \"^3\".", {shownValue(value), known->second, label},
                   "Give it one.");
}

void ValueLabels::giveTo(Variable& variable) const {
  for (const auto& [value, label] : labels_) {
    if (const double* const number = std::get_if<double>(&value)) {
      variable.numberLabels.emplace_back(*number, label);
    } else {
      variable.textLabels.emplace_back(std::get<std::string>(value), label);
    }
  }
}

}  // namespace workbench::data
