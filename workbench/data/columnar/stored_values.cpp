#include "workbench/data/columnar/stored_values.h"

#include <fmt/format.h>

#include "workbench/data/cells/calendar_parts.h"
#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/short_decimal.h"

namespace workbench::data {
namespace {

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr std::int32_t firstDay = -719'162;  // 0001-01-01
constexpr std::int32_t lastDay = 2'932'896;  // 9999-12-31

std::optional<double> secondsValue(std::int64_t microseconds) {
  const std::int64_t whole = microseconds / microsecondsPerSecond;
  if (whole * microsecondsPerSecond == microseconds) return static_cast<double>(whole);
  // Up to here neighbouring doubles lie closer than microseconds, and the number of these is one that is exact.
  constexpr std::int64_t farthest = (std::int64_t{1} << 33) * microsecondsPerSecond;
  if (microseconds > -farthest && microseconds < farthest) {
    return static_cast<double>(microseconds) / static_cast<double>(microsecondsPerSecond);
  }
  const std::int64_t below = microseconds < 0 ? whole - 1 : whole;
  const CalendarValue value =
      secondsWithFraction(below, fmt::format("{:06}", microseconds - below * microsecondsPerSecond));
  return value.isHeld ? std::optional(value.value) : std::nullopt;
}

}  // namespace

std::optional<double> dateValue(std::int32_t days) {
  if (days < firstDay || days > lastDay) return std::nullopt;
  return days;
}

std::optional<double> timeValue(std::int64_t microseconds) {
  if (microseconds < 0 || microseconds >= secondsPerDay * microsecondsPerSecond) return std::nullopt;
  return secondsValue(microseconds);
}

std::optional<double> dateTimeValue(std::int64_t microseconds) {
  constexpr std::int64_t first = firstDay * secondsPerDay * microsecondsPerSecond;
  constexpr std::int64_t behind = (lastDay + std::int64_t{1}) * secondsPerDay * microsecondsPerSecond;
  if (microseconds < first || microseconds >= behind) return std::nullopt;
  return secondsValue(microseconds);
}

std::int32_t secondsDigitsOf(std::int64_t microseconds) {
  std::int64_t fraction = microseconds % microsecondsPerSecond;
  if (fraction == 0) return 0;
  std::int32_t digits = 6;
  for (; fraction % 10 == 0; fraction /= 10) --digits;
  return digits;
}

std::optional<std::int32_t> daysOf(double date) {
  if (!(date >= firstDay && date <= lastDay) || date != std::floor(date)) return std::nullopt;
  return static_cast<std::int32_t>(date);
}

std::optional<std::int64_t> microsecondsOf(double seconds) {
  constexpr double farthest = 1e12;
  if (!(std::fabs(seconds) < farthest)) return std::nullopt;
  const double whole = std::floor(seconds);
  const auto fraction = static_cast<std::int64_t>(std::llround((seconds - whole) * microsecondsPerSecond));
  const std::int64_t microseconds = static_cast<std::int64_t>(whole) * microsecondsPerSecond + fraction;
  return dateTimeValue(microseconds) == seconds ? std::optional(microseconds) : std::nullopt;
}

double decimalValue(std::int64_t digits, std::int32_t scale) {
  // Both operands being exact, the one operation rounds correctly.
  return static_cast<double>(digits) / digit_words::powersOfTen[scale];
}

}  // namespace workbench::data
