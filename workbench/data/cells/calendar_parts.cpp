#include "workbench/data/cells/calendar_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

namespace workbench::data {
namespace {

constexpr std::size_t mostFractionDigits = 18;  // what 64 bits hold

// The number that so many digits at the text's start are; nothing when they are not all digits.
std::optional<std::int32_t> digitsAt(std::string_view text, std::size_t start, std::size_t count) {
  std::int32_t number = 0;
  for (std::size_t index = start; index < start + count; ++index) {
    if (text[index] < '0' || text[index] > '9') return std::nullopt;
    number = number * 10 + (text[index] - '0');
  }
  return number;
}

}  // namespace

std::optional<std::int64_t> daysOfDate(std::int32_t year, std::int32_t month, std::int32_t day) {
  constexpr std::int32_t lastYear = 9999;
  if (year < 1 || year > lastYear || month < 1 || day < 1) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch().count();
}

std::optional<std::int64_t> isoDays(std::string_view text) {
  if (text.size() != isoDateLength || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = digitsAt(text, 0, 4);
  const auto month = digitsAt(text, 5, 2);
  const auto day = digitsAt(text, 8, 2);
  if (!year || !month || !day) return std::nullopt;
  return daysOfDate(*year, *month, *day);
}

std::optional<ClockTime> isoClock(std::string_view text) {
  if (text.size() < isoClockLength || text[2] != ':' || text[5] != ':') return std::nullopt;
  const auto hour = digitsAt(text, 0, 2);
  const auto minute = digitsAt(text, 3, 2);
  const auto second = digitsAt(text, 6, 2);
  if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  ClockTime time{(*hour * 60 + *minute) * 60 + *second, {}};
  if (text.size() == isoClockLength) return time;
  time.fraction = text.substr(isoClockLength + 1);
  if (text[isoClockLength] != '.' || time.fraction.empty() ||
      time.fraction.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  return time;
}

CalendarValue secondsWithFraction(std::int64_t whole, std::string_view fraction) {
  CalendarValue read;
  read.fractionDigits = static_cast<std::int32_t>(fraction.size());
  fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
  read.value = static_cast<double>(whole);
  if (fraction.empty()) return read;
  if (fraction.size() > mostFractionDigits) {
    read.isHeld = false;
    fraction = fraction.substr(0, mostFractionDigits);
  }
  std::string digits(fraction);
  if (whole < 0) {
    // -3 and 0.25 are -2.75: one second less, and the complement of the fraction.
    const auto unit = static_cast<std::int64_t>(std::pow(10.0, static_cast<double>(digits.size())));
    digits = fmt::format("{:0{}}", unit - std::stoll(digits), digits.size());
    whole += 1;
  }
  const std::string text = fmt::format("{}.{}", std::abs(whole), digits);
  double magnitude = 0;
  std::from_chars(text.data(), text.data() + text.size(), magnitude);
  const bool isNegative = read.value < 0;
  read.value = isNegative ? -magnitude : magnitude;
  const double gap = std::nextafter(magnitude, std::numeric_limits<double>::infinity()) - magnitude;
  if (std::pow(10.0, -static_cast<double>(digits.size())) <= gap) read.isHeld = false;
  return read;
}

SecondsText secondsTextOf(double seconds) {
  std::array<char, 400> buffer;
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(seconds), std::chars_format::fixed);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
  const std::size_t point = text.find('.');
  SecondsText parts;
  std::from_chars(text.data(), text.data() + std::min(point, text.size()), parts.whole);
  if (seconds < 0) parts.whole = -parts.whole;
  if (point == std::string_view::npos) return parts;
  parts.fraction = text.substr(point);
  if (seconds > 0) return parts;
  // Rounded down means: one second less, and the complement of the fraction, digit by digit.
  parts.whole -= 1;
  const std::size_t last = parts.fraction.find_last_not_of('0');
  for (std::size_t index = 1; index < last; ++index) {
    parts.fraction[index] = static_cast<char>('0' + '9' - parts.fraction[index]);
  }
  parts.fraction[last] = static_cast<char>('0' + ('9' + 1) - parts.fraction[last]);
  return parts;
}

std::string isoClockText(std::int64_t secondOfDay) {
  return fmt::format("{:02}:{:02}:{:02}", secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60);
}

std::optional<std::string> isoDateText(std::int64_t days) {
  constexpr std::int64_t firstDay = -719'162;  // 0001-01-01
  constexpr std::int64_t lastDay = 2'932'896;  // 9999-12-31
  if (days < firstDay || days > lastDay) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

std::optional<std::string> isoDateTimeText(std::int64_t seconds) {
  const std::int64_t days = (seconds >= 0 ? seconds : seconds - (secondsPerDay - 1)) / secondsPerDay;
  const std::optional<std::string> date = isoDateText(days);
  if (!date) return std::nullopt;
  return *date + "T" + isoClockText(seconds - days * secondsPerDay);
}

}  // namespace workbench::data
