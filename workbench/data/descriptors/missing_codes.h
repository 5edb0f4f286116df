// The codes of missing values, and the values that belong to them, as dictionaries keep them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "host/data.h"
#include "workbench/data/dictionary.h"
#include "workbench/text/string_comparison.h"

namespace workbench::data {

inline constexpr std::int32_t rangeCode = -2;
inline constexpr std::int32_t rangeAndValueCode = -3;
inline constexpr std::int32_t mostDiscreteValues = 3;

inline constexpr bool isRange(std::int32_t code) { return code == rangeCode || code == rangeAndValueCode; }

// How many values a code uses; nothing when it stands for nothing.
inline constexpr std::optional<std::size_t> missingCount(std::int32_t code) {
  if (isRange(code)) return static_cast<std::size_t>(-code);
  if (code < 0 || code > mostDiscreteValues) return std::nullopt;
  return static_cast<std::size_t>(code);
}

// The discrete values that are declared; none of a range, or of a code that stands for nothing. Valid as long as the
// declaration.
inline std::span<const OBS> discreteValues(const MissingValues& missing) {
  return {missing.values.data(), isRange(missing.code) ? 0 : missingCount(missing.code).value_or(0)};
}

// A string's missing value without the blanks at its end. Valid as long as the value.
inline std::string_view missingText(const OBS& value) {
  return text::withoutTrailingBlanks({value.text, sizeof value.text});
}

}  // namespace workbench::data
