// ScaledDecimal: a short decimal number behind a plus sign or with an exponent, as programs write them: +7, 1.5e-3.
//
// It has at most 15 digits and a magnitude far within the range of doubles, so it is always held. Other numbers are
// decimal_text's to read.
#pragma once

#include <cstdint>
#include <string_view>

#include "workbench/data/cells/short_decimal.h"

namespace workbench::data {

class ScaledDecimal {
 public:
  // False when the text is something else, another number perhaps; this one is then of no use. Requires:
  // readableBehind; the text outlives the number.
  bool readPadded(std::string_view text);

  // The nearest double.
  double value() const;
  bool isNegative() const { return digits_.isNegative(); }
  // As of a Decimal.
  std::int32_t expandedWholeDigits() const;
  std::int32_t expandedFractionDigits() const;
  std::int32_t significantDigits() const;

 private:
  // Takes the exponent off the text's end. False when what stands behind the mark is none, or one too far away.
  bool takeExponent(std::string_view& text);
  double valueByLibrary() const;

  ShortDecimal digits_;
  std::int32_t exponent_ = 0;
  std::string_view text_;  // without a plus sign
};

}  // namespace workbench::data
