// How stored dates, times and decimals become the numbers that stand for them in cases.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace workbench::data {

// Nothing when the value is beyond 2^53, or no finite number: cases do not hold it.
inline std::optional<double> wholeValue(std::int64_t number) {
  constexpr std::int64_t largest = std::int64_t{1} << 53;
  return number > largest || number < -largest ? std::nullopt : std::optional(static_cast<double>(number));
}
inline std::optional<double> realValue(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

// Nothing when the value is none of a date or time that cases hold: infinite, beyond the calendar, finer than is held.
std::optional<double> dateValue(std::int32_t days);
std::optional<double> timeValue(std::int64_t microseconds);
std::optional<double> dateTimeValue(std::int64_t microseconds);

// How many digits of a fraction of a second the microseconds have, without zeros at the end.
std::int32_t secondsDigitsOf(std::int64_t microseconds);

// The other way round; nothing when they would not hold the value as it is.
std::optional<std::int32_t> daysOf(double date);
std::optional<std::int64_t> microsecondsOf(double seconds);

// Requires: at most 15 digits, and as few behind the point.
double decimalValue(std::int64_t digits, std::int32_t scale);

}  // namespace workbench::data
