// Durations of calendar_text.h. Their parts are read in the one order that ISO 8601 has for them.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "workbench/data/cells/calendar_parts.h"
#include "workbench/data/cells/calendar_text.h"

namespace workbench::data {
namespace {

constexpr std::int64_t perMonth = std::int64_t{1} << 40;
constexpr std::int64_t mostMonths = std::int64_t{1} << 22;        // so that all of it stays below 2^63
constexpr std::int64_t beyondSeconds = std::int64_t{1} << 39;     // half of what a month is away
constexpr std::int64_t longestCount = 1'000'000'000'000'000'000;  // any part that reaches it is beyond all bounds

// What one letter counts: so many months, or so many seconds.
struct DurationUnit {
  char letter;
  std::int64_t months;
  std::int64_t seconds;
};
constexpr auto dateUnits = std::to_array<DurationUnit>({{'Y', 12, 0}, {'M', 1, 0}, {'D', 0, secondsPerDay}});
constexpr auto timeUnits = std::to_array<DurationUnit>({{'H', 0, 3600}, {'M', 0, 60}, {'S', 0, 1}});

struct Amounts {
  std::int64_t months = 0;
  std::int64_t seconds = 0;
  std::string_view fraction;  // of the seconds, its digits
  bool areBounded = true;

  void add(std::int64_t count, const DurationUnit& unit) {
    const std::int64_t size = unit.months + unit.seconds;  // one of them is 0
    if (count > longestCount / size) areBounded = false;
    if (!areBounded) return;
    months += count * unit.months;
    seconds += count * unit.seconds;
    areBounded = months < mostMonths && seconds < beyondSeconds;
  }
};

std::string_view takeDigits(std::string_view& rest) {
  const std::size_t length = std::min(rest.find_first_not_of("0123456789"), rest.size());
  const std::string_view digits = rest.substr(0, length);
  rest.remove_prefix(length);
  return digits;
}

std::int64_t countOf(std::string_view digits) {
  std::int64_t count = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), count);
  return read.ec == std::errc() ? count : longestCount;
}

// Takes what is left of parts in their order, each at most once; false when something else stands there, or nothing.
template <std::size_t size>
bool takeParts(std::string_view& rest, const std::array<DurationUnit, size>& units, Amounts& amounts) {
  std::size_t next = 0;
  bool hasAny = false;
  while (!rest.empty() && rest.front() != 'T') {
    const std::string_view digits = takeDigits(rest);
    if (digits.empty() || rest.empty()) return false;
    const bool hasFraction = rest.front() == '.';
    if (hasFraction) {
      rest.remove_prefix(1);
      amounts.fraction = takeDigits(rest);
      if (amounts.fraction.empty() || rest.empty()) return false;
    }
    while (next < size && units[next].letter != rest.front()) ++next;
    if (next == size || (hasFraction && units[next].letter != 'S')) return false;
    amounts.add(countOf(digits), units[next++]);
    rest.remove_prefix(1);
    hasAny = true;
  }
  return hasAny;
}

std::optional<Amounts> amountsOf(std::string_view text) {
  if (!text.starts_with('P')) return std::nullopt;
  text.remove_prefix(1);
  Amounts amounts;
  const bool hasDateParts = !text.starts_with('T');
  if (hasDateParts && !takeParts(text, dateUnits, amounts)) return std::nullopt;
  if (text.empty()) return amounts;
  text.remove_prefix(1);
  if (!takeParts(text, timeUnits, amounts) || !text.empty()) return std::nullopt;
  return amounts;
}

bool isExact(std::int64_t whole) { return static_cast<std::int64_t>(static_cast<double>(whole)) == whole; }

}  // namespace

std::optional<CalendarValue> durationOf(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  const std::optional<Amounts> amounts = amountsOf(text.substr(isNegative ? 1 : 0));
  if (!amounts) return std::nullopt;
  if (!amounts->areBounded) return CalendarValue{0, static_cast<std::int32_t>(amounts->fraction.size()), false};
  const std::int64_t whole = amounts->months * perMonth + amounts->seconds;
  CalendarValue read = secondsWithFraction(whole, amounts->fraction);
  read.isHeld = read.isHeld && isExact(whole);
  if (isNegative) read.value = -read.value;
  return read;
}

std::optional<std::string> durationText(double monthsAndSeconds) {
  constexpr double beyond = static_cast<double>(mostMonths) * static_cast<double>(perMonth);
  const double magnitude = std::fabs(monthsAndSeconds);
  if (!(magnitude < beyond)) return std::nullopt;
  const SecondsText parts = secondsTextOf(magnitude);
  const std::int64_t months = parts.whole / perMonth;
  const std::int64_t seconds = parts.whole % perMonth;
  std::string text = monthsAndSeconds < 0 ? "-P" : "P";
  const auto write = [&text](std::int64_t count, char letter) {
    if (count != 0) text += fmt::format("{}{}", count, letter);
  };
  write(months / 12, 'Y');
  write(months % 12, 'M');
  write(seconds / secondsPerDay, 'D');
  const std::int64_t secondOfDay = seconds % secondsPerDay;
  if (secondOfDay != 0 || !parts.fraction.empty() || magnitude == 0) {
    text += 'T';
    write(secondOfDay / 3600, 'H');
    write(secondOfDay / 60 % 60, 'M');
    const bool hasSeconds = secondOfDay % 60 != 0 || !parts.fraction.empty() || magnitude == 0;
    if (hasSeconds) text += fmt::format("{}{}S", secondOfDay % 60, parts.fraction);
  }
  const std::optional<CalendarValue> read = durationOf(text);
  if (!read || !read->isHeld || read->value != monthsAndSeconds) return std::nullopt;
  return text;
}

}  // namespace workbench::data
