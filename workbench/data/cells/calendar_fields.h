// CalendarFields: the numbers that a text tells of a date and a time, whichever of them, and the day that they make.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace workbench::data {

enum class CalendarField : std::uint8_t {
  year,
  century,
  yearOfCentury,
  month,
  day,
  dayOfYear,
  isoYear,
  isoWeek,
  sundayWeek,  // of the year, the first Sunday beginning the first
  mondayWeek,  // of the year, the first Monday beginning the first
  weekday,     // 0 is Sunday
  hour,
  hourOfHalf,  // 1 to 12
  halfOfDay,   // 0 AM, 1 PM
  minute,
  second,
  fraction,
  zone,
};
inline constexpr std::size_t calendarFields = 18;

class CalendarFields {
 public:
  bool has(CalendarField field) const { return values_[index(field)].has_value(); }
  std::int32_t operator[](CalendarField field) const { return values_[index(field)].value_or(0); }
  void set(CalendarField field, std::int32_t value) { values_[index(field)] = value; }

  // Whether one day, or one hour at least of a day, follows from the fields, whatever their values are.
  bool determineDay() const;
  bool determineHour() const;

  // Nothing when the fields contradict each other or no calendar has them. Requires: they determine it.
  std::optional<std::int64_t> days() const;         // since 1970-01-01
  std::optional<std::int64_t> secondOfDay() const;  // minutes and seconds that are not told are 0

 private:
  static std::size_t index(CalendarField field) { return static_cast<std::size_t>(field); }
  bool tellYear() const;
  std::int32_t toldYear() const;
  std::optional<std::int64_t> firstReading() const;
  bool agreeWith(std::int64_t days) const;
  bool agree(CalendarField field, std::int64_t value) const { return !has(field) || (*this)[field] == value; }

  std::array<std::optional<std::int32_t>, calendarFields> values_;
};

}  // namespace workbench::data
