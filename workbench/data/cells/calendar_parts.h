// What the texts of dates, times and durations are made of: days, seconds of a day, fractions of a second.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/cells/calendar_text.h"

namespace workbench::data {

inline constexpr std::int64_t secondsPerDay = 86'400;
inline constexpr std::size_t isoDateLength = 10;  // 2026-11-21
inline constexpr std::size_t isoClockLength = 8;  // 15:59:55

// Days since 1970-01-01; nothing when no calendar of the years 1 to 9999 has such a day.
std::optional<std::int64_t> daysOfDate(std::int32_t year, std::int32_t month, std::int32_t day);

struct ClockTime {
  std::int64_t seconds = 0;   // since midnight, without the fraction
  std::string_view fraction;  // its digits, as written
};

// 2026-11-21 as days since 1970-01-01, and 15:59:55 with an optional fraction. Nothing when the text is anything else.
std::optional<std::int64_t> isoDays(std::string_view text);
std::optional<ClockTime> isoClock(std::string_view text);

// The double nearest to whole seconds (below 0, too) and a decimal fraction that is added to them.
CalendarValue secondsWithFraction(std::int64_t whole, std::string_view fraction);

// Seconds taken apart into whole ones (rounded down) and the digits of the shortest fraction.
struct SecondsText {
  std::int64_t whole = 0;
  std::string fraction;  // with its point; or empty
};

// Requires: the magnitude is below 2^62.
SecondsText secondsTextOf(double seconds);

std::string isoClockText(std::int64_t secondOfDay);
// Nothing outside the years 1 to 9999.
std::optional<std::string> isoDateText(std::int64_t days);
// The same of a moment in seconds since 1970-01-01T00:00:00.
std::optional<std::string> isoDateTimeText(std::int64_t seconds);

}  // namespace workbench::data
