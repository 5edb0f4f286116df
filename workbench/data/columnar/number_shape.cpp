#include "workbench/data/columnar/number_shape.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/cells/short_decimal.h"

namespace workbench::data {
namespace {

constexpr std::int32_t mostQuickDigits = 15;

std::int32_t digitsOf(double whole) {
  std::int32_t digits = 1;
  for (double power = 10; whole >= power; power *= 10) ++digits;
  return digits;
}

}  // namespace

void NumberShape::addWhole(std::int64_t number) {
  noteExtremes(static_cast<double>(number));
  significantDigits_ = std::max(significantDigits_, digitsOf(std::fabs(static_cast<double>(number))));
}

void NumberShape::addDecimal(std::int64_t digits, std::int32_t scale) {
  noteExtremes(static_cast<double>(digits) / digit_words::powersOfTen[scale]);
  fractionDigits_ = std::max(fractionDigits_, scale);
  significantDigits_ = std::max(significantDigits_, digitsOf(std::fabs(static_cast<double>(digits))));
}

std::int32_t NumberShape::wholeWidth() const {
  const std::int32_t width = digitsOf(std::floor(highest_));
  return lowest_ < 0 ? std::max(width, digitsOf(std::floor(-lowest_)) + 1) : width;
}

void NumberShape::widen(double number) {
  noteExtremes(number);
  const std::string text = fmt::format("{}", number);
  const Decimal decimal = *decimalOf(text);
  significantDigits_ = std::max(significantDigits_, decimal.significantDigits());
  fractionDigits_ = std::max(fractionDigits_, decimal.expandedFractionDigits());
  scale_ = fractionDigits_ <= mostQuickDigits ? digit_words::powersOfTen[fractionDigits_] : 0;
}

void NumberShape::noteExtremes(double whole) {
  lowest_ = std::min(lowest_, whole);
  highest_ = std::max(highest_, whole);
}

}  // namespace workbench::data
