// The words that descriptors have for what the standard has none for: measurement levels, roles, alignments, print
// formats, the ends of ranges.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "host/data.h"
#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

inline constexpr auto alignmentWords = std::to_array<WordRow<VRIX_Variable_Enumerations::Alignment>>({
    {"left", VRIX_Variable_Enumerations::Alignment::left},
    {"right", VRIX_Variable_Enumerations::Alignment::right},
    {"center", VRIX_Variable_Enumerations::Alignment::center},
});

inline constexpr auto levelWords = std::to_array<WordRow<VRIX_Variable_Enumerations::MeasurementLevel>>({
    {"unknown", VRIX_Variable_Enumerations::MeasurementLevel::unknown},
    {"nominal", VRIX_Variable_Enumerations::MeasurementLevel::nominal},
    {"ordinal", VRIX_Variable_Enumerations::MeasurementLevel::ordinal},
    {"scale", VRIX_Variable_Enumerations::MeasurementLevel::scale},
    {"flag", VRIX_Variable_Enumerations::MeasurementLevel::flag},
    {"typeless", VRIX_Variable_Enumerations::MeasurementLevel::typeless},
});

inline constexpr auto roleWords = std::to_array<WordRow<VRIX_Variable_Enumerations::Role>>({
    {"input", VRIX_Variable_Enumerations::Role::input},
    {"target", VRIX_Variable_Enumerations::Role::target},
    {"both", VRIX_Variable_Enumerations::Role::both},
    {"none", VRIX_Variable_Enumerations::Role::none},
    {"partition", VRIX_Variable_Enumerations::Role::partition},
    {"split", VRIX_Variable_Enumerations::Role::split},
    {"frequency", VRIX_Variable_Enumerations::Role::frequency},
    {"recordID", VRIX_Variable_Enumerations::Role::recordID},
});

// Bounds of what a dictionary keeps.
inline constexpr std::int32_t widestStorage = 32767;    // bytes of a string
inline constexpr std::int32_t widestNumber = 40;        // characters of a number's print format
inline constexpr std::int32_t mostDecimals = 16;        // of a print format
inline constexpr std::int32_t widestDisplay = 255;      // characters of a column
inline constexpr std::int32_t mostAttributes = 10'000;  // names; each new one is held against all before it

constexpr std::int32_t widestFormat(FormatType type) { return type == FormatType::text ? widestStorage : widestNumber; }

// Of a print format of this width. Fractions of seconds may be longer than other decimals.
constexpr std::int32_t mostDecimalsOf(FormatType type, std::int32_t width) {
  if (type == FormatType::text) return 0;
  const bool isClock = type == FormatType::time || type == FormatType::dateTime || type == FormatType::duration;
  return isClock || width <= mostDecimals ? width - 1 : mostDecimals;
}

// A range without a lower or an upper end: the machine constants for LO and HI.
inline constexpr std::string_view lowWord = "LO";
inline constexpr std::string_view highWord = "HI";
inline constexpr double highestNumber = std::numeric_limits<double>::max();
// The next double above the lowest one, which stands for no value at all.
inline constexpr double lowestNumber = -0x1.ffffffffffffep+1023;

}  // namespace workbench::data
