#include "workbench/output/date_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace workbench::output {
namespace {

using Days = std::chrono::sys_days;

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t firstDay = Days{std::chrono::year{1} / 1 / 1}.time_since_epoch().count();
constexpr std::int64_t lastDay = Days{std::chrono::year{9999} / 12 / 31}.time_since_epoch().count();

std::optional<std::string> dayText(std::int64_t day) {
  if (day < firstDay || day > lastDay) return std::nullopt;
  const std::chrono::year_month_day date{Days{std::chrono::days{day}}};
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

// A time in whole units of its last decimal, so that rounding carries into minutes, hours and days.
struct Ticks {
  std::int64_t count;
  std::int64_t perSecond;
  std::int32_t decimals;
};

std::optional<Ticks> ticksOf(double seconds, std::int32_t decimals) {
  constexpr double mostSeconds = 1e12;  // far beyond the calendar, and its microseconds still fit
  if (!(std::fabs(seconds) <= mostSeconds)) return std::nullopt;
  const std::int32_t kept = std::clamp(decimals, 0, mostTimeDecimals);
  const std::int64_t perSecond = std::llround(std::pow(10.0, kept));
  return Ticks{std::llround(seconds * static_cast<double>(perSecond)), perSecond, kept};
}

std::string clockText(const Ticks& ticks) {
  const std::int64_t seconds = ticks.count / ticks.perSecond;
  std::string text = fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
  if (ticks.decimals > 0) text += fmt::format(".{:0{}}", ticks.count % ticks.perSecond, ticks.decimals);
  return text;
}

}  // namespace

std::optional<std::string> dateText(double days) {
  const double whole = std::floor(days);
  if (!(whole >= static_cast<double>(firstDay) && whole <= static_cast<double>(lastDay))) return std::nullopt;
  return dayText(static_cast<std::int64_t>(whole));
}

std::optional<std::string> timeText(double seconds, std::int32_t decimals) {
  std::optional<Ticks> ticks = ticksOf(seconds, decimals);
  if (!ticks) return std::nullopt;
  const bool isNegative = ticks->count < 0;
  ticks->count = std::abs(ticks->count);
  return fmt::format("{}{}", isNegative ? "-" : "", clockText(*ticks));
}

std::optional<std::string> dateTimeText(double seconds, std::int32_t decimals) {
  std::optional<Ticks> ticks = ticksOf(seconds, decimals);
  if (!ticks) return std::nullopt;
  const std::int64_t perDay = secondsPerDay * ticks->perSecond;
  std::int64_t day = ticks->count / perDay;
  ticks->count %= perDay;
  if (ticks->count < 0) {
    ticks->count += perDay;
    --day;
  }
  const std::optional<std::string> date = dayText(day);
  if (!date) return std::nullopt;
  return *date + "T" + clockText(*ticks);
}

}  // namespace workbench::output
