// The codes of missing values, and the values that belong to them, as dictionaries keep them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/data.h"
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

// A string's missing value without the blanks at its end. Valid as long as the value.
inline std::string_view missingText(const OBS& value) {
  return text::withoutTrailingBlanks({value.text, sizeof value.text});
}

}  // namespace workbench::data
