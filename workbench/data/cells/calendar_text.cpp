#include "workbench/data/cells/calendar_text.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

namespace workbench::data {
namespace {

constexpr std::int64_t secondsPerDay = 86'400;
constexpr std::size_t dateLength = 10;
constexpr std::size_t timeLength = 8;
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

// Days since 1970-01-01.
std::optional<std::int64_t> daysOf(std::string_view text) {
  if (text.size() != dateLength || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = digitsAt(text, 0, 4);
  const auto month = digitsAt(text, 5, 2);
  const auto day = digitsAt(text, 8, 2);
  if (!year || !month || !day || *year == 0) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch().count();
}

struct ClockTime {
  std::int64_t seconds = 0;
  std::string_view fraction;  // its digits
};

std::optional<ClockTime> clockTimeOf(std::string_view text) {
  if (text.size() < timeLength || text[2] != ':' || text[5] != ':') return std::nullopt;
  const auto hour = digitsAt(text, 0, 2);
  const auto minute = digitsAt(text, 3, 2);
  const auto second = digitsAt(text, 6, 2);
  if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  ClockTime time{(*hour * 60 + *minute) * 60 + *second, {}};
  if (text.size() == timeLength) return time;
  time.fraction = text.substr(timeLength + 1);
  if (text[timeLength] != '.' || time.fraction.empty() ||
      time.fraction.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  return time;
}

// The double nearest to whole seconds (below 0, too) and a decimal fraction that is added to them.
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

// A value taken apart into whole seconds (rounded down) and the digits of its shortest fraction.
struct SecondsText {
  std::int64_t whole = 0;
  std::string fraction;  // with its point; or empty
};

// Requires: the magnitude is below 1e15.
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

std::string clockText(std::int64_t secondOfDay) {
  return fmt::format("{:02}:{:02}:{:02}", secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60);
}

std::optional<std::string> textOfDays(std::int64_t days) {
  constexpr std::int64_t firstDay = -719'162;  // 0001-01-01
  constexpr std::int64_t lastDay = 2'932'896;  // 9999-12-31
  if (days < firstDay || days > lastDay) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

constexpr double beyondEverySecond = 1e12;

}  // namespace

std::optional<CalendarValue> dateOf(std::string_view text) {
  const std::optional<std::int64_t> days = daysOf(text);
  if (!days) return std::nullopt;
  return CalendarValue{static_cast<double>(*days), 0, true};
}

std::optional<CalendarValue> timeOf(std::string_view text) {
  const std::optional<ClockTime> time = clockTimeOf(text);
  if (!time) return std::nullopt;
  return secondsWithFraction(time->seconds, time->fraction);
}

std::optional<CalendarValue> dateTimeOf(std::string_view text) {
  if (text.size() < dateLength + 1 + timeLength || (text[dateLength] != 'T' && text[dateLength] != ' ')) {
    return std::nullopt;
  }
  const std::optional<std::int64_t> days = daysOf(text.substr(0, dateLength));
  if (!days) return std::nullopt;
  const std::optional<ClockTime> time = clockTimeOf(text.substr(dateLength + 1));
  if (!time) return std::nullopt;
  return secondsWithFraction(*days * secondsPerDay + time->seconds, time->fraction);
}

std::optional<std::string> dateText(double days) {
  if (!(std::fabs(days) < beyondEverySecond) || days != std::floor(days)) return std::nullopt;
  return textOfDays(static_cast<std::int64_t>(days));
}

std::optional<std::string> timeText(double seconds) {
  if (!(seconds >= 0 && seconds < static_cast<double>(secondsPerDay))) return std::nullopt;
  const SecondsText parts = secondsTextOf(seconds);
  return clockText(parts.whole) + parts.fraction;
}

std::optional<std::string> dateTimeText(double seconds) {
  if (!(std::fabs(seconds) < beyondEverySecond)) return std::nullopt;
  const SecondsText parts = secondsTextOf(seconds);
  const std::int64_t days = (parts.whole >= 0 ? parts.whole : parts.whole - (secondsPerDay - 1)) / secondsPerDay;
  const std::optional<std::string> date = textOfDays(days);
  if (!date) return std::nullopt;
  return *date + "T" + clockText(parts.whole - days * secondsPerDay) + parts.fraction;
}

}  // namespace workbench::data
