#include "procedures/profile/shown_number.h"

#include <algorithm>
#include <cmath>

#include "procedures/profile/value_equality.h"

namespace profile {

namespace {

constexpr std::int32_t decimalsOfExponent = 2;
constexpr std::int32_t mostDecimals = 15;
constexpr double leastPrecision = 2e-3;  // of what is shown, relative to the number
constexpr std::int32_t shownWidth = 20;
constexpr double smallestWrittenOut = 1e-6;  // below it a number has an exponent

}  // namespace

// A result may have the bits of the system-missing value, which would be shown as none: its neighbour stands for it.
ShownNumber::ShownNumber(const VRIX_Variable& variable, double number, std::int32_t decimals)
    : name_(variable.GetName()),
      number_(isSystemMissing(number) ? pvGetCmnMch()->constants[CmnMch::lowestValidNumber] : number),
      decimals_(decimalsFor(number, decimals)) {
  if (number != 0 && std::fabs(number) < smallestWrittenOut) {
    type_ = FormatType::scientific;
    decimals_ = decimalsOfExponent;
  }
}

void ShownNumber::GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const {
  type = type_;
  width = shownWidth;
  decimals = decimals_;
}

VRIX_Variable_Enumerations::MeasurementLevel ShownNumber::GetMeasurementLevel() const {
  return VRIX_Variable_Enumerations::MeasurementLevel::scale;
}

std::int32_t ShownNumber::GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const {
  first = second = third = nullptr;
  return 0;
}

VRIX_Variable_Enumerations::Alignment ShownNumber::GetAlignment() const {
  return VRIX_Variable_Enumerations::Alignment::right;
}

VRIX_Variable_Enumerations::Role ShownNumber::GetRole() const { return VRIX_Variable_Enumerations::Role::none; }

std::int32_t decimalsFor(double number, std::int32_t least) {
  if (number == 0 || !std::isfinite(number)) return std::clamp(least, 0, mostDecimals);
  const auto magnitude = static_cast<std::int32_t>(std::floor(std::log10(std::fabs(number))));
  // Beyond so many digits no decimal of a double means anything.
  const std::int32_t most = std::max(0, mostDecimals - std::max(0, magnitude));
  std::int32_t decimals = std::clamp(least, 0, most);
  const auto isTooCoarse = [number](std::int32_t shown) {
    const double scale = std::pow(10.0, shown);
    return std::fabs(std::round(number * scale) / scale - number) > leastPrecision * std::fabs(number);
  };
  while (decimals < most && isTooCoarse(decimals)) ++decimals;
  return decimals;
}

}  // namespace profile
