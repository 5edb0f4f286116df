// Dates, times and durations as they stand in text files: ISO 8601, without a time zone.
//
//   2026-11-21                   a date: days since 1970-01-01, years 0001 to 9999
//   15:59:55, 15:59:55.25        a time: seconds since midnight
//   2026-11-21T15:59:55.25       both: seconds since 1970-01-01T00:00:00; a blank may stand for the T
//   P1Y2M3DT4H5M6.5S, -PT1M      a duration: months times 2^40 plus seconds, a day being 86400 of them. A month is no
//                                number of days, so the two never mix: seconds stay below 2^39
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace workbench::data {

struct CalendarValue {
  double value = 0;                 // the nearest double
  std::int32_t fractionDigits = 0;  // of the seconds, as written
  bool isHeld = true;               // doubles tell this value from every other of that many digits
};

// Nothing when the text is none of the kind.
std::optional<CalendarValue> dateOf(std::string_view text);
std::optional<CalendarValue> timeOf(std::string_view text);
std::optional<CalendarValue> dateTimeOf(std::string_view text);
std::optional<CalendarValue> durationOf(std::string_view text);

// The text that reads as exactly this value; nothing when no text does (a fraction of a day, a year beyond 9999, a time
// beyond midnight, months and seconds of different signs).
std::optional<std::string> dateText(double days);
std::optional<std::string> timeText(double seconds);
std::optional<std::string> dateTimeText(double seconds);
std::optional<std::string> durationText(double monthsAndSeconds);

}  // namespace workbench::data
