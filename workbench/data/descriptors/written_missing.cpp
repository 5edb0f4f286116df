#include "workbench/data/descriptors/written_missing.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <span>

#include "workbench/data/descriptors/field_types.h"
#include "workbench/data/descriptors/field_values.h"
#include "workbench/data/descriptors/missing_codes.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/statistics_words.h"

namespace workbench::data {
namespace {

// What stands in the cell of such a value; nothing when no text does.
std::optional<std::string> cellText(const Variable& variable, const OBS& value) {
  if (variable.isNumeric()) return writtenType(variable.format.type).cell(value.number);
  return std::string(missingText(value));
}

bool isSame(const FieldValue& read, const Variable& variable, const OBS& value) {
  if (!variable.isNumeric()) return std::get<std::string>(read) == missingText(value);
  return std::bit_cast<std::uint64_t>(std::get<double>(read)) == std::bit_cast<std::uint64_t>(value.number);
}

// The texts of all values, when each reads back as its value and no two are the same value.
std::optional<std::vector<std::string>> textsOf(const Variable& variable, std::span<const OBS> values) {
  CellReading reading;
  if (variable.isNumeric()) reading.type = writtenType(variable.format.type).cellType;
  const FieldValueReader reader(reading);
  std::vector<std::string> texts;
  std::set<FieldValue> known;
  for (const OBS& value : values) {
    std::optional<std::string> text = cellText(variable, value);
    const std::optional<FieldValue> read = text ? reader.ofCell(*text) : std::nullopt;
    if (!read || !isSame(*read, variable, value) || !known.insert(*read).second) return std::nullopt;
    texts.push_back(*std::move(text));
  }
  return texts;
}

Json valueJson(const Variable& variable, const OBS& value) {
  return variable.isNumeric() ? numberJson(value.number) : Json(missingText(value));
}

Json rangeJson(const MissingValues& missing) {
  const double low = missing.values[0].number;
  const double high = missing.values[1].number;
  Json range;
  range[property::low] = low == lowestNumber ? Json(lowWord) : numberJson(low);
  range[property::high] = high == highestNumber ? Json(highWord) : numberJson(high);
  if (missing.code == rangeAndValueCode) range[property::value] = numberJson(missing.values[2].number);
  return range;
}

}  // namespace

WrittenMissing writtenMissing(const Variable& variable) {
  WrittenMissing written;
  const MissingValues& missing = variable.missing;
  if (isRange(missing.code)) {
    written.declared = std::make_shared<const Json>(rangeJson(missing));
    return written;
  }
  const std::span<const OBS> values = discreteValues(missing);
  if (auto texts = textsOf(variable, values)) {
    written.texts = *std::move(texts);
    return written;
  }
  Json list;
  for (const OBS& value : values) list[property::values].push_back(valueJson(variable, value));
  written.declared = std::make_shared<const Json>(std::move(list));
  return written;
}

// Whole numbers are written as such where doubles tell them apart; -0 is none.
Json numberJson(double value) {
  constexpr double largestExactInteger = 9007199254740992;
  const bool isWhole = value == std::floor(value) && std::fabs(value) <= largestExactInteger;
  if (isWhole && !(value == 0 && std::signbit(value))) return static_cast<std::int64_t>(value);
  return value;
}

}  // namespace workbench::data
