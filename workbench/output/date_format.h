// Dates and times as ISO 8601 writes them. Nothing, where the calendar (years 1 to 9999) has no such moment.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace workbench::output {

inline constexpr std::int32_t mostTimeDecimals = 6;

// Days since 1970-01-01, as 2026-11-21; a part of a day is left out.
std::optional<std::string> dateText(double days);
// Seconds since midnight, as 15:59:55, with up to six decimals; more hours than a day has are shown, and a sign.
std::optional<std::string> timeText(double seconds, std::int32_t decimals);
// Seconds since 1970-01-01T00:00:00, as 2026-11-21T15:59:55.
std::optional<std::string> dateTimeText(double seconds, std::int32_t decimals);

}  // namespace workbench::output
