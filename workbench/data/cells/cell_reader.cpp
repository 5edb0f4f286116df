#include "workbench/data/cells/cell_reader.h"

#include <algorithm>
#include <utility>

#include "workbench/data/cells/calendar_parts.h"
#include "workbench/data/cells/decimal_text.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t longestLength = 63;

bool contains(const std::vector<std::string>& texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

std::optional<double> heldValue(std::string_view plain) {
  const std::optional<Decimal> number = decimalOf(plain);
  return number && isHeld(*number) ? valueOf(*number) : std::nullopt;
}

// Requires: the text is a decimal number that is not held.
std::string_view whyNotHeld(std::string_view plain) {
  const Decimal number = *decimalOf(plain);
  const bool isWhole = !number.hasExponent && number.lastDigit < number.wholeDigits;
  if (isWhole) return "^1 is beyond 2^53, which is not held exactly; declare the field as string";
  const std::optional<double> value = valueOf(number);
  constexpr std::int32_t digitsOfDouble = 17;
  if (!value || *value == 0) return "^1 is beyond the range of numbers that are held; declare the field as string";
  if (number.significantDigits() > digitsOfDouble) {
    return "^1 has more digits than are held exactly; declare the field as string";
  }
  return "^1 is a number that is not held exactly; declare the field as string";
}

// Date, T, time and perhaps a zone.
std::optional<Moment> isoMoment(std::string_view cell) {
  if (cell.size() < isoDateLength + 1 + isoClockLength || cell[isoDateLength] != 'T') return std::nullopt;
  const std::optional<std::int64_t> days = isoDays(cell.substr(0, isoDateLength));
  if (!days) return std::nullopt;
  std::string_view clock = cell.substr(isoDateLength + 1);
  Moment moment;
  if (const std::size_t zoneStart = clock.find_first_of("Z+-"); zoneStart != std::string_view::npos) {
    constexpr std::size_t offsetLength = 6;  // +01:00
    std::string_view zone = clock.substr(zoneStart);
    const bool isInForm = zone.size() == 1 || (zone.size() == offsetLength && zone[3] == ':');
    moment.zoneMinutes = isInForm ? takeZone(zone) : std::nullopt;
    if (!moment.zoneMinutes || !zone.empty()) return std::nullopt;
    clock = clock.substr(0, zoneStart);
  }
  const std::optional<ClockTime> time = isoClock(clock);
  if (!time) return std::nullopt;
  moment.days = *days;
  moment.secondOfDay = time->seconds;
  moment.fraction = time->fraction;
  return moment;
}

// In UTC, since 1970-01-01T00:00:00.
std::int64_t secondsOf(const Moment& moment) {
  return moment.days * secondsPerDay + moment.secondOfDay - std::int64_t{moment.zoneMinutes.value_or(0)} * 60;
}

bool isInCalendar(const Moment& moment) {
  constexpr std::int64_t firstDay = -719'162;  // 0001-01-01
  constexpr std::int64_t lastDay = 2'932'896;  // 9999-12-31
  const std::int64_t seconds = secondsOf(moment);
  return seconds >= firstDay * secondsPerDay && seconds < (lastDay + 1) * secondsPerDay;
}

// Requires: the moment is in the calendar.
std::string isoText(CellType type, const Moment& moment) {
  if (type == CellType::date) return isoDateText(moment.days).value_or("");
  std::string text =
      type == CellType::time ? isoClockText(moment.secondOfDay) : isoDateTimeText(secondsOf(moment)).value_or("");
  if (!moment.fraction.empty()) text.append(".").append(moment.fraction);
  return text;
}

bool isYear(std::string_view cell) {
  constexpr std::size_t fewestDigits = 4;
  const std::string_view digits = cell.substr(cell.starts_with('-') ? 1 : 0);
  return digits.size() >= fewestDigits && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

// That a cell is none of these, written as the pattern says.
std::string_view notAsPattern(CellType type) {
  if (type == CellType::date) return "^1 is no date written as \"^2\"";
  return type == CellType::time ? "^1 is no time written as \"^2\"" : "^1 is no date with a time written as \"^2\"";
}

// The same, where nothing says how they are written.
std::string_view notAsExample(CellType type) {
  if (type == CellType::date) return "^1 is no date like ^2";
  return type == CellType::time ? "^1 is no time like ^2" : "^1 is no date with a time like ^2";
}

std::string_view exampleOf(CellType type) {
  if (type == CellType::date) return "2026-11-21";
  return type == CellType::time ? "15:59:55" : "2026-11-21T15:59:55";
}

// A year is a whole number whose characters are not open to declaration.
CellReading readingOfNumbers(const CellReading& reading) {
  if (reading.type != CellType::year) return reading;
  CellReading plain;
  plain.type = CellType::integer;
  return plain;
}

}  // namespace

CellReader::CellReader(CellReading reading) : reading_(std::move(reading)), numbers_(readingOfNumbers(reading_)) {
  if (!reading_.pattern.empty()) pattern_.emplace(reading_.pattern);
  const bool hasPlainMark = reading_.type == CellType::integer || reading_.decimalChar == ".";
  isPlainNumber_ = hasPlainMark && reading_.groupChar.empty() && reading_.bareNumber;
  for (const std::string& text : reading_.noValueTexts) lengthsWithoutValue_.set(std::min(text.size(), longestLength));
}

bool CellReader::holdsNoValue(std::string_view cell) const {
  return lengthsWithoutValue_.test(std::min(cell.size(), longestLength)) && contains(reading_.noValueTexts, cell);
}

std::optional<double> CellReader::number(std::string_view cell) {
  switch (reading_.type) {
    case CellType::number:
    case CellType::integer:
      return declaredNumber(cell);
    case CellType::boolean:
      return truthValue(cell);
    case CellType::year: {
      const std::optional<std::string_view> plain = plainNumber(cell);
      return plain ? heldValue(*plain) : std::nullopt;
    }
    case CellType::date:
    case CellType::time:
    case CellType::dateTime:
    case CellType::duration: {
      const std::optional<CalendarValue> value = calendarValue(cell);
      return value && value->isHeld ? std::optional(value->value) : std::nullopt;
    }
    case CellType::text:
      break;
  }
  return std::nullopt;
}

// Most numbers are short and written plainly; they are read where they stand.
std::optional<double> CellReader::declaredNumber(std::string_view cell) {
  if (ShortDecimal number; isPlainNumber_ && number.read(cell)) {
    const bool isOfType = reading_.type == CellType::number || cell.find('.') == std::string_view::npos;
    return isOfType ? std::optional(number.value()) : std::nullopt;
  }
  const std::optional<std::string_view> plain = numbers_.plain(cell);
  return plain ? heldValue(*plain) : std::nullopt;
}

std::optional<double> CellReader::truthValue(std::string_view cell) const {
  if (contains(reading_.trueTexts, cell)) return 1;
  if (contains(reading_.falseTexts, cell)) return 0;
  return std::nullopt;
}

std::optional<std::string_view> CellReader::plainNumber(std::string_view cell) {
  if (reading_.type == CellType::year && !isYear(cell)) return std::nullopt;
  return numbers_.plain(cell);
}

std::optional<CalendarValue> CellReader::calendarValue(std::string_view cell) {
  if (reading_.type == CellType::duration) return durationOf(cell);
  const std::optional<Moment> read = moment(cell);
  if (!read) return std::nullopt;
  if (reading_.type == CellType::date) return CalendarValue{static_cast<double>(read->days), 0, true};
  return secondsWithFraction(secondsOf(*read), read->fraction);
}

std::optional<Moment> CellReader::moment(std::string_view cell) {
  const std::optional<Moment> read = momentAsWritten(cell);
  if (!read || !isInCalendar(*read)) return std::nullopt;
  if (read->zoneMinutes ? sawUnzoned_ : sawZoned_) return std::nullopt;
  (read->zoneMinutes ? sawZoned_ : sawUnzoned_) = true;
  return read;
}

std::optional<Moment> CellReader::momentAsWritten(std::string_view cell) const {
  if (pattern_) return pattern_->read(cell);
  if (reading_.type == CellType::dateTime) return isoMoment(cell);
  Moment read;
  if (reading_.type == CellType::date) {
    const std::optional<std::int64_t> days = isoDays(cell);
    if (!days) return std::nullopt;
    read.days = *days;
  } else {
    const std::optional<ClockTime> time = isoClock(cell);
    if (!time) return std::nullopt;
    read.secondOfDay = time->seconds;
    read.fraction = time->fraction;
  }
  return read;
}

bool CellReader::plainText(std::string_view cell, std::string& plain) {
  switch (reading_.type) {
    case CellType::text:
      plain = cell;
      return true;
    case CellType::number:
    case CellType::integer:
    case CellType::year: {
      const std::optional<std::string_view> number = plainNumber(cell);
      if (!number || !heldValue(*number)) return false;
      plain = *number;
      return true;
    }
    case CellType::boolean: {
      const std::optional<double> truth = truthValue(cell);
      if (truth) plain = *truth == 0 ? "0" : "1";
      return truth.has_value();
    }
    case CellType::duration: {
      const std::optional<CalendarValue> read = durationOf(cell);
      if (!read || !read->isHeld) return false;
      plain = durationText(read->value).value_or(std::string(cell));
      return true;
    }
    case CellType::date:
    case CellType::time:
    case CellType::dateTime:
      break;
  }
  const std::optional<Moment> read = moment(cell);
  if (!read || !secondsWithFraction(secondsOf(*read), read->fraction).isHeld) return false;
  plain = isoText(reading_.type, *read);
  return true;
}

std::string CellReader::whyNot(std::string_view cell, std::string_view subject) {
  if (cell.empty()) return text::sentence("^1 is empty, and an empty text is not declared as missing", {subject});
  switch (reading_.type) {
    case CellType::number:
    case CellType::integer:
    case CellType::year:
      return whyNoNumber(cell, subject);
    case CellType::boolean:
      return text::sentence("^1 is none of the texts for true and for false", {subject});
    case CellType::duration:
      return text::sentence(durationOf(cell) ? "^1 is a duration that is not held exactly; declare the field as string"
                                             : "^1 is no duration like P1Y2M3DT4H5M6S",
                            {subject});
    default:
      return whyNoMoment(cell, subject);
  }
}

std::string CellReader::whyNoNumber(std::string_view cell, std::string_view subject) {
  if (const std::optional<std::string_view> plain = plainNumber(cell)) {
    return text::sentence(whyNotHeld(*plain), {subject});
  }
  if (reading_.type == CellType::year) return text::sentence("^1 is no year of four digits at least", {subject});
  return numbers_.whyNot(cell, subject);
}

std::string CellReader::whyNoMoment(std::string_view cell, std::string_view subject) const {
  const std::optional<Moment> read = momentAsWritten(cell);
  if (!read && pattern_) return text::sentence(notAsPattern(reading_.type), {subject, reading_.pattern});
  if (!read) return text::sentence(notAsExample(reading_.type), {subject, exampleOf(reading_.type)});
  if (!isInCalendar(*read)) return text::sentence("^1 is in UTC outside the years 1 to 9999", {subject});
  if (read->zoneMinutes && sawUnzoned_) {
    return text::sentence("^1 bears a time zone, and values before it bear none", {subject});
  }
  if (!read->zoneMinutes && sawZoned_) {
    return text::sentence("^1 bears no time zone, and values before it do", {subject});
  }
  return text::sentence("^1 has a finer fraction than is held; declare the field as string", {subject});
}

std::string nameOf(CellType type) {
  switch (type) {
    case CellType::text:
      return text::sentence("a string");
    case CellType::number:
      return text::sentence("a number");
    case CellType::integer:
      return text::sentence("an integer");
    case CellType::boolean:
      return text::sentence("a boolean");
    case CellType::year:
      return text::sentence("a year");
    case CellType::date:
      return text::sentence("a date");
    case CellType::time:
      return text::sentence("a time");
    case CellType::dateTime:
      return text::sentence("a datetime");
    case CellType::duration:
      return text::sentence("a duration");
  }
  return "";
}

}  // namespace workbench::data
