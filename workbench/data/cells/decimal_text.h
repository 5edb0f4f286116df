// Decimal numbers as they stand in text files: which texts are numbers, what they are worth, how they are written.
//
// A decimal number is an optional sign, digits with an optional fraction, and an optional exponent. It has no blanks
// around it, no thousands separators, and no zero before another digit of its whole part ("007" is no number but an
// identifier).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/cells/short_decimal.h"

namespace workbench::data {

// A decimal number taken apart, the exponent left where it is.
struct Decimal {
  std::string_view text;  // all of it
  bool negative = false;
  bool hasExponent = false;
  std::int32_t wholeDigits = 0;     // before the point
  std::int32_t fractionDigits = 0;  // behind it
  std::int32_t firstDigit = -1;     // the first digit that is not 0, counted from 0 over both; -1: there is none
  std::int32_t lastDigit = -1;      // the last one
  std::int32_t exponent = 0;        // as written, kept within bounds that no double reaches

  bool isNegative() const { return negative; }
  bool isZero() const { return firstDigit < 0; }
  std::int32_t significantDigits() const { return isZero() ? 0 : lastDigit - firstDigit + 1; }
  // Digits before the point once the exponent is carried out, at least 1.
  std::int32_t expandedWholeDigits() const;
  // Digits behind the point, as many as were written, once the exponent is carried out.
  std::int32_t expandedFractionDigits() const;
};

// Nothing when the text is no decimal number.
std::optional<Decimal> decimalOf(std::string_view text);

// Whether a double holds the number so that no two different ones become the same and none is changed in a digit that
// somebody wrote on purpose. Held are whole numbers up to 2^53; numbers of up to 15 significant digits in the range of
// normal doubles; and longer ones whose digits are just those with which programs write a double (its shortest form, or
// its form of 17 digits).
bool isHeld(const Decimal& number);

// The double nearest to the number, -0 being negative zero; nothing when it is beyond the range of doubles.
std::optional<double> valueOf(const Decimal& number);

// The shortest text that reads as exactly this value and is held. Requires: the value is finite.
std::string decimalText(double value);

}  // namespace workbench::data
