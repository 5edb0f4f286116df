// Numbers as people read them, by the print formats of host/data.h.
//
// A format says what is shown, never how much of it: a value that is wider than its format is shown whole. Rounding is
// to the nearest, exact halves away from zero, and a number that rounds to zero has no sign.
#pragma once

#include <cstdint>
#include <string>

#include "host/data.h"

namespace workbench::output {

// How numbers stand in texts.
enum class NumberStyle {
  asFormatted,  // for people: with the grouping, decimal comma and currency sign of the format
  plain,        // for scripts: a decimal point and no grouping, whatever the format
};

bool isSystemMissing(double value);

// The value in the print format; "." when it is system-missing. A date or time that no calendar has (years 1 to 9999)
// is shown as the plain number. A duration is shown whole, as ISO 8601 writes it, or as the plain number when no text
// says it.
std::string formattedNumber(double value, FormatType type, std::int32_t width, std::int32_t decimals,
                            NumberStyle style);

// Everything that tells the value from any other: the shortest text that reads back as the same double, with an
// exponent only where a number is very large or very small. "." when it is system-missing.
std::string fullNumber(double value);

// The value in full as its format shows it: a date or time with as many decimals as it has, up to six; any other as
// fullNumber.
std::string fullNumber(double value, FormatType type);

// A count: a whole number. A percentage: one decimal and "%"; more where one decimal would show a share above nothing
// as 0.0% or one below the whole as 100.0%.
std::string countText(double value);
std::string percentText(double value);

}  // namespace workbench::output
