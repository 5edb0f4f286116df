#include "workbench/data/cells/scaled_decimal.h"

#include <algorithm>
#include <bit>
#include <charconv>

namespace workbench::data {
namespace {

// With 15 digits before it or behind it, this is far from what doubles do not reach.
constexpr std::int32_t largestExponent = 250;

bool isExponentMark(char character) { return character == 'e' || character == 'E'; }

}  // namespace

bool ScaledDecimal::readPadded(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return false;
  }
  text_ = text;
  return takeExponent(text) && digits_.readPadded(text);
}

bool ScaledDecimal::takeExponent(std::string_view& text) {
  constexpr std::size_t longest = 5;  // a mark, a sign and three digits
  exponent_ = 0;
  std::int32_t power = 1;
  for (std::size_t taken = 1; taken <= std::min(longest, text.size()); ++taken) {
    const std::size_t at = text.size() - taken;
    const char character = text[at];
    if (isExponentMark(character)) {
      text.remove_suffix(taken);
      return power > 1 && exponent_ >= -largestExponent && exponent_ <= largestExponent;
    }
    if (character >= '0' && character <= '9') {
      exponent_ += (character - '0') * power;
      power *= 10;
    } else {
      // A sign stands between the mark and the digits; anything else ends a number without an exponent.
      if ((character != '-' && character != '+') || at == 0 || !isExponentMark(text[at - 1])) break;
      if (character == '-') exponent_ = -exponent_;
      text.remove_suffix(taken + 1);
      return power > 1 && exponent_ >= -largestExponent && exponent_ <= largestExponent;
    }
  }
  exponent_ = 0;
  return true;
}

// Where the digits and the power of ten are exact, their one product or quotient rounds correctly.
double ScaledDecimal::value() const {
  constexpr std::int32_t exactPowers = 22;
  static constexpr double powersOfTen[exactPowers + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                          1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                          1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  const std::int32_t power = exponent_ - digits_.fractionDigits();
  if (power < -exactPowers || power > exactPowers) return valueByLibrary();
  const double whole = digits_.signedDigits();
  return power < 0 ? whole / powersOfTen[-power] : whole * powersOfTen[power];
}

double ScaledDecimal::valueByLibrary() const {
  double value = 0;
  std::from_chars(text_.data(), text_.data() + text_.size(), value);
  return value;
}

std::int32_t ScaledDecimal::expandedWholeDigits() const {
  const std::int32_t zerosBefore = digits_.wholeDigits() + digits_.fractionDigits() - digits_.digitsFromFirst();
  if (digits_.digitsFromFirst() == 0) return 1;
  return std::max(digits_.wholeDigits() + exponent_ - zerosBefore, 1);
}

std::int32_t ScaledDecimal::expandedFractionDigits() const { return std::max(digits_.fractionDigits() - exponent_, 0); }

std::int32_t ScaledDecimal::significantDigits() const { return digits_.digitsFromFirst() - digits_.zerosAtEnd(); }

}  // namespace workbench::data
