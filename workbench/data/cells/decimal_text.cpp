#include "workbench/data/cells/decimal_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace workbench::data {
namespace {

constexpr std::uint64_t largestExactInteger = std::uint64_t{1} << 53;
constexpr std::int32_t digitsAlwaysHeld = 15;
constexpr std::int32_t mostDigitsOfDouble = 17;
constexpr std::int32_t exponentBound = 100'000;  // far beyond what a double reaches, far from overflow

bool isDigit(char character) { return character >= '0' && character <= '9'; }

// The significant digits of a number, without zeros at either end. Requires: at most mostDigitsOfDouble.
std::string significantDigitsOf(const Decimal& number) {
  std::string digits;
  std::int32_t index = 0;
  for (const char character : number.text) {
    if (character == 'e' || character == 'E') break;
    if (!isDigit(character)) continue;
    if (index >= number.firstDigit && index <= number.lastDigit) digits.push_back(character);
    ++index;
  }
  return digits;
}

// The digits of a rendering like "1.25e+07", without zeros at the end.
std::string digitsOfRendering(std::string_view rendering) {
  std::string digits;
  for (const char character : rendering.substr(0, rendering.find('e'))) {
    if (isDigit(character)) digits.push_back(character);
  }
  digits.erase(digits.find_last_not_of('0') + 1);
  return digits;
}

bool isWritingOfDouble(const Decimal& number, double value) {
  const std::string digits = significantDigitsOf(number);
  std::array<char, 64> buffer;
  const auto shortest =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value), std::chars_format::scientific);
  if (digits == digitsOfRendering({buffer.data(), shortest.ptr})) return true;
  const auto full = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                  std::chars_format::scientific, mostDigitsOfDouble - 1);
  return digits == digitsOfRendering({buffer.data(), full.ptr});
}

// Requires: the number is whole and written without an exponent.
bool isExactInteger(const Decimal& number) {
  constexpr std::int32_t digitsOfLargest = 16;
  if (number.wholeDigits > digitsOfLargest) return false;
  std::uint64_t whole = 0;
  for (const char character : number.text) {
    if (character == '.') break;
    if (isDigit(character)) whole = whole * 10 + static_cast<std::uint64_t>(character - '0');
  }
  return whole <= largestExactInteger;
}

}  // namespace

std::int32_t Decimal::expandedWholeDigits() const {
  if (isZero()) return 1;
  return std::max(wholeDigits + exponent - firstDigit, 1);
}

std::int32_t Decimal::expandedFractionDigits() const { return std::max(fractionDigits - exponent, 0); }

std::optional<Decimal> decimalOf(std::string_view text) {
  Decimal number;
  number.text = text;
  const char* next = text.data();
  const char* const end = next + text.size();
  if (next != end && (*next == '-' || *next == '+')) number.negative = *next++ == '-';

  std::int32_t digits = 0;
  const auto takeDigits = [&] {
    for (; next != end && isDigit(*next); ++next, ++digits) {
      if (*next != '0') {
        if (number.firstDigit < 0) number.firstDigit = digits;
        number.lastDigit = digits;
      }
    }
  };
  if (end - next > 1 && next[0] == '0' && isDigit(next[1])) return std::nullopt;
  takeDigits();
  number.wholeDigits = digits;
  if (next != end && *next == '.') {
    ++next;
    takeDigits();
    number.fractionDigits = digits - number.wholeDigits;
  }
  if (digits == 0) return std::nullopt;
  if (next == end) return number;

  if (*next != 'e' && *next != 'E') return std::nullopt;
  ++next;
  number.hasExponent = true;
  bool isBelowOne = false;
  if (next != end && (*next == '-' || *next == '+')) isBelowOne = *next++ == '-';
  if (next == end) return std::nullopt;
  for (; next != end; ++next) {
    if (!isDigit(*next)) return std::nullopt;
    number.exponent = std::min(number.exponent * 10 + (*next - '0'), exponentBound);
  }
  if (isBelowOne) number.exponent = -number.exponent;
  return number;
}

bool isHeld(const Decimal& number) {
  if (number.isZero()) return true;
  const bool isWhole = !number.hasExponent && number.lastDigit < number.wholeDigits;
  if (isWhole) return isExactInteger(number);
  // Where its first digit stands, from the point on: doubles of 15 digits reach beyond that to both sides.
  constexpr std::int32_t farWithinRange = 290;
  const bool isShort = number.significantDigits() <= digitsAlwaysHeld;
  if (isShort && std::abs(number.wholeDigits + number.exponent - number.firstDigit) < farWithinRange) return true;
  if (number.significantDigits() > mostDigitsOfDouble) return false;
  const std::optional<double> value = valueOf(number);
  if (!value || *value == 0) return false;
  return (isShort && std::isnormal(*value)) || isWritingOfDouble(number, *value);
}

std::optional<double> valueOf(const Decimal& number) {
  std::string_view text = number.text;
  if (text.starts_with('+')) text.remove_prefix(1);  // the one form that from_chars does not know
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string decimalText(double value) {
  // Written as a whole number it would read as one that a double may not hold.
  if (std::fabs(value) > static_cast<double>(largestExactInteger)) {
    std::array<char, 64> buffer;
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    return {buffer.data(), written.ptr};
  }
  return fmt::format("{}", value);
}

}  // namespace workbench::data
