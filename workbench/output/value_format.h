// Numbers as people read them, by the print formats of host/data.h, and as programs do.
//
// A format says what is shown, never how much of it: a value that is wider than its format is shown whole. Rounding is
// to the nearest, exact halves away from zero, and a number that rounds to zero has no sign.
#pragma once

#include <cstdint>
#include <string>

#include "host/data.h"
#include "workbench/text/locale_forms.h"

namespace workbench::output {

// How numbers stand in texts.
enum class NumberStyle {
  asFormatted,  // for people: with the grouping and currency sign of the format, in the forms of the locale
  plain,        // for scripts: a decimal point and no grouping, whatever the format
  full,         // for programs: the whole value as fullNumber writes it, whatever the format
};

bool isSystemMissing(double value);

// The value in the print format; "." when it is system-missing. A date or time that no calendar has (years 1 to 9999)
// is shown as the plain number. A duration is shown whole, as ISO 8601 writes it, or as the plain number when no text
// says it. What has a locale's forms are numbers without marks of their own (comma, dot and dollar formats say which
// marks they have), dates, and the decimal mark of times; only texts for people have them.
std::string formattedNumber(double value, FormatType type, std::int32_t width, std::int32_t decimals, NumberStyle style,
                            const text::LocaleForms& forms = {});

// Everything that tells the value from any other: the shortest text that reads back as the same double, with an
// exponent only where a number is very large or very small. "." when it is system-missing.
std::string fullNumber(double value);

// The value in full as its format shows it: a date or time with as many decimals as it has, up to six; any other as
// fullNumber.
std::string fullNumber(double value, FormatType type);
// The same for people.
std::string fullNumber(double value, FormatType type, const text::LocaleForms& forms);

// A count: a whole number. A percentage: one decimal and "%"; more where one decimal would show a share above nothing
// as 0.0% or one below the whole as 100.0%.
std::string countText(double value);
std::string percentText(double value);
// The same for people: a count in groups of digits, a percentage as the locale writes it.
std::string countText(double value, const text::LocaleForms& forms);
std::string percentText(double value, const text::LocaleForms& forms);

}  // namespace workbench::output
