// FieldValue: a value that a descriptor names: a category, a missing value, the value that a label belongs to.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "workbench/data/cells/cell_reading.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

// A number, or a text without the blanks at its end (in a case they are no part of it).
using FieldValue = std::variant<double, std::string>;

inline constexpr std::size_t longestMissingText = 8;  // bytes, all that is kept of a string's missing value

// A missing value as dictionaries keep it. Requires: a text is no longer than longestMissingText.
OBS missingValueOf(const FieldValue& value);

// What stands in messages: the number, or the text in quotes.
std::string shownValue(const FieldValue& value);

// Reads values of one field.
class FieldValueReader {
 public:
  explicit FieldValueReader(CellReading reading);

  bool isText() const { return reading_.type == CellType::text; }
  // What a cell of this text is by itself; nothing when it is no value of the field's type, or blank.
  std::optional<FieldValue> ofCell(std::string_view cell) const;
  // Of a JSON value; anything else than a value of the field's type is rejected. Dates, times, years and durations may
  // be written as in a cell or as the number that they are kept as; truth values as they are or as 1 and 0.
  std::optional<FieldValue> ofJson(const DescriptorValue& value) const;

 private:
  std::optional<FieldValue> ofNumber(const DescriptorValue& value) const;

  CellReading reading_;
};

// Labels of values that come from several places of a field.
class ValueLabels {
 public:
  // Rejects another label for a value that has one. The place is what gives the label.
  void add(const FieldValue& value, const std::string& label, const DescriptorValue& place);
  void giveTo(Variable& variable) const;

 private:
  std::map<FieldValue, std::string> labels_;
};

}  // namespace workbench::data
