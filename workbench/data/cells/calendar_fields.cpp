#include "workbench/data/cells/calendar_fields.h"

#include <chrono>

#include "workbench/data/cells/calendar_parts.h"

namespace workbench::data {
namespace {

using enum CalendarField;

constexpr std::int32_t daysOfWeek = 7;
constexpr std::int32_t firstYear = 1;
constexpr std::int32_t lastYear = 9999;

std::int64_t floorDivided(std::int64_t value, std::int64_t by) {
  return value >= 0 ? value / by : -((-value + by - 1) / by);
}

// 0 is Sunday; 1970-01-01 was a Thursday.
std::int32_t weekdayOf(std::int64_t days) {
  constexpr std::int32_t thursday = 4;
  const std::int64_t shifted = days + thursday;
  return static_cast<std::int32_t>(shifted - floorDivided(shifted, daysOfWeek) * daysOfWeek);
}

// Since Monday, which is 0.
std::int32_t daysSinceMonday(std::int32_t weekday) { return (weekday + daysOfWeek - 1) % daysOfWeek; }

std::int64_t newYear(std::int32_t ofYear) {
  return std::chrono::sys_days(std::chrono::year(ofYear) / 1 / 1).time_since_epoch().count();
}

// The Monday that begins the first ISO week of a year: the week that the fourth of January lies in.
std::int64_t firstIsoMonday(std::int32_t ofYear) {
  const std::int64_t fourth = newYear(ofYear) + 3;
  return fourth - daysSinceMonday(weekdayOf(fourth));
}

std::int64_t firstSunday(std::int32_t ofYear) {
  return newYear(ofYear) + (daysOfWeek - weekdayOf(newYear(ofYear))) % daysOfWeek;
}

std::int64_t firstMonday(std::int32_t ofYear) {
  return newYear(ofYear) + (daysOfWeek - daysSinceMonday(weekdayOf(newYear(ofYear)))) % daysOfWeek;
}

// The week of the year, weeks beginning at that first day; 0 before it.
std::int64_t weekFrom(std::int64_t firstDay, std::int64_t days) {
  return floorDivided(days - firstDay, daysOfWeek) + 1;
}

}  // namespace

bool CalendarFields::determineDay() const {
  if (has(isoYear) && has(isoWeek) && has(weekday)) return true;
  if (!tellYear()) return false;
  return (has(month) && has(day)) || has(dayOfYear) || ((has(sundayWeek) || has(mondayWeek)) && has(weekday));
}

bool CalendarFields::determineHour() const { return has(hour) || (has(hourOfHalf) && has(halfOfDay)); }

bool CalendarFields::tellYear() const { return has(year) || has(yearOfCentury); }

// Without a century two digits mean the years from 1969 to 2068.
std::int32_t CalendarFields::toldYear() const {
  constexpr std::int32_t firstOfFormerCentury = 69;
  if (has(year)) return (*this)[year];
  const std::int32_t rest = (*this)[yearOfCentury];
  if (has(century)) return (*this)[century] * 100 + rest;
  return rest + (rest >= firstOfFormerCentury ? 1900 : 2000);
}

std::optional<std::int64_t> CalendarFields::days() const {
  const std::optional<std::int64_t> read = firstReading();
  return read && agreeWith(*read) ? read : std::nullopt;
}

// By the first way that leads to a day.
std::optional<std::int64_t> CalendarFields::firstReading() const {
  const std::int32_t ofYear = tellYear() ? toldYear() : (*this)[isoYear];
  if (ofYear < firstYear || ofYear > lastYear) return std::nullopt;
  if (tellYear() && has(month) && has(day)) return daysOfDate(ofYear, (*this)[month], (*this)[day]);
  if (tellYear() && has(dayOfYear)) return newYear(ofYear) + (*this)[dayOfYear] - 1;
  const std::int32_t sinceMonday = daysSinceMonday((*this)[weekday]);
  if (tellYear() && has(sundayWeek)) {
    return firstSunday(ofYear) + ((*this)[sundayWeek] - 1) * daysOfWeek + (*this)[weekday];
  }
  if (tellYear() && has(mondayWeek)) return firstMonday(ofYear) + ((*this)[mondayWeek] - 1) * daysOfWeek + sinceMonday;
  if ((*this)[isoYear] < firstYear || (*this)[isoYear] > lastYear) return std::nullopt;
  return firstIsoMonday((*this)[isoYear]) + ((*this)[isoWeek] - 1) * daysOfWeek + sinceMonday;
}

bool CalendarFields::agreeWith(std::int64_t days) const {
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
  const auto ofYear = static_cast<std::int32_t>(static_cast<int>(date.year()));
  if (ofYear < firstYear || ofYear > lastYear) return false;
  if (tellYear() && toldYear() != ofYear) return false;
  // The year of the Thursday in the same week is the year that the week belongs to.
  const std::int64_t thursday = days - daysSinceMonday(weekdayOf(days)) + 3;
  const std::chrono::year_month_day weekDate{std::chrono::sys_days(std::chrono::days(thursday))};
  const auto weekYear = static_cast<std::int32_t>(static_cast<int>(weekDate.year()));
  return agree(month, static_cast<unsigned>(date.month())) && agree(day, static_cast<unsigned>(date.day())) &&
         agree(dayOfYear, days - newYear(ofYear) + 1) && agree(weekday, weekdayOf(days)) && agree(isoYear, weekYear) &&
         agree(isoWeek, weekFrom(firstIsoMonday(weekYear), days)) &&
         agree(sundayWeek, weekFrom(firstSunday(ofYear), days)) &&
         agree(mondayWeek, weekFrom(firstMonday(ofYear), days));
}

std::optional<std::int64_t> CalendarFields::secondOfDay() const {
  constexpr std::int32_t hoursOfHalf = 12;
  const std::int32_t ofHalves = (*this)[hourOfHalf] % hoursOfHalf + (*this)[halfOfDay] * hoursOfHalf;
  const std::int32_t ofDay = has(hour) ? (*this)[hour] : ofHalves;
  if (has(hourOfHalf) && ofDay % hoursOfHalf != (*this)[hourOfHalf] % hoursOfHalf) return std::nullopt;
  if (!agree(halfOfDay, ofDay / hoursOfHalf)) return std::nullopt;
  return (ofDay * 60 + (*this)[minute]) * 60 + (*this)[second];
}

}  // namespace workbench::data
