#include "workbench/data/cells/calendar_text.h"

#include <cmath>

#include "workbench/data/cells/calendar_parts.h"

namespace workbench::data {
namespace {

constexpr double beyondEverySecond = 1e12;

}  // namespace

std::optional<CalendarValue> dateOf(std::string_view text) {
  const std::optional<std::int64_t> days = isoDays(text);
  if (!days) return std::nullopt;
  return CalendarValue{static_cast<double>(*days), 0, true};
}

std::optional<CalendarValue> timeOf(std::string_view text) {
  const std::optional<ClockTime> time = isoClock(text);
  if (!time) return std::nullopt;
  return secondsWithFraction(time->seconds, time->fraction);
}

std::optional<CalendarValue> dateTimeOf(std::string_view text) {
  if (text.size() < isoDateLength + 1 + isoClockLength || (text[isoDateLength] != 'T' && text[isoDateLength] != ' ')) {
    return std::nullopt;
  }
  const std::optional<std::int64_t> days = isoDays(text.substr(0, isoDateLength));
  if (!days) return std::nullopt;
  const std::optional<ClockTime> time = isoClock(text.substr(isoDateLength + 1));
  if (!time) return std::nullopt;
  return secondsWithFraction(*days * secondsPerDay + time->seconds, time->fraction);
}

std::optional<std::string> dateText(double days) {
  if (!(std::fabs(days) < beyondEverySecond) || days != std::floor(days)) return std::nullopt;
  return isoDateText(static_cast<std::int64_t>(days));
}

std::optional<std::string> timeText(double seconds) {
  if (!(seconds >= 0 && seconds < static_cast<double>(secondsPerDay))) return std::nullopt;
  const SecondsText parts = secondsTextOf(seconds);
  return isoClockText(parts.whole) + parts.fraction;
}

std::optional<std::string> dateTimeText(double seconds) {
  if (!(std::fabs(seconds) < beyondEverySecond)) return std::nullopt;
  const SecondsText parts = secondsTextOf(seconds);
  std::optional<std::string> text = isoDateTimeText(parts.whole);
  if (text) *text += parts.fraction;
  return text;
}

}  // namespace workbench::data
