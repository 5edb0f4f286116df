#include "workbench/data/cells/date_pattern.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "workbench/data/cells/calendar_fields.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

using enum CalendarField;

constexpr std::string_view whiteSpace = " \t\n\v\f\r";

enum class FieldKind : std::uint8_t { number, monthName, weekdayName, halfName, fraction, zone };

struct Directive {
  char letter;
  CalendarField field;
  FieldKind kind;
  std::size_t fewestDigits;  // of numbers, all four
  std::size_t mostDigits;
  std::int32_t low;
  std::int32_t high;
};

constexpr auto directives = std::to_array<Directive>({
    {'Y', year, FieldKind::number, 4, 4, 1, 9999},
    {'C', century, FieldKind::number, 2, 2, 0, 99},
    {'y', yearOfCentury, FieldKind::number, 2, 2, 0, 99},
    {'m', month, FieldKind::number, 1, 2, 1, 12},
    {'b', month, FieldKind::monthName, 0, 0, 0, 0},
    {'B', month, FieldKind::monthName, 0, 0, 0, 0},
    {'h', month, FieldKind::monthName, 0, 0, 0, 0},
    {'d', day, FieldKind::number, 1, 2, 1, 31},
    {'e', day, FieldKind::number, 1, 2, 1, 31},
    {'j', dayOfYear, FieldKind::number, 1, 3, 1, 366},
    {'G', isoYear, FieldKind::number, 4, 4, 1, 9999},
    {'V', isoWeek, FieldKind::number, 1, 2, 1, 53},
    {'U', sundayWeek, FieldKind::number, 1, 2, 0, 53},
    {'W', mondayWeek, FieldKind::number, 1, 2, 0, 53},
    {'u', weekday, FieldKind::number, 1, 1, 1, 7},
    {'w', weekday, FieldKind::number, 1, 1, 0, 6},
    {'a', weekday, FieldKind::weekdayName, 0, 0, 0, 0},
    {'A', weekday, FieldKind::weekdayName, 0, 0, 0, 0},
    {'H', hour, FieldKind::number, 1, 2, 0, 23},
    {'k', hour, FieldKind::number, 1, 2, 0, 23},
    {'I', hourOfHalf, FieldKind::number, 1, 2, 1, 12},
    {'l', hourOfHalf, FieldKind::number, 1, 2, 1, 12},
    {'p', halfOfDay, FieldKind::halfName, 0, 0, 0, 0},
    {'M', minute, FieldKind::number, 1, 2, 0, 59},
    {'S', second, FieldKind::number, 1, 2, 0, 59},
    {'f', CalendarField::fraction, FieldKind::fraction, 0, 0, 0, 0},
    {'z', CalendarField::zone, FieldKind::zone, 0, 0, 0, 0},
});

struct Shorthand {
  char letter;
  std::string_view pattern;
};
constexpr auto shorthands = std::to_array<Shorthand>(
    {{'D', "%m/%d/%y"}, {'F', "%Y-%m-%d"}, {'R', "%H:%M"}, {'T', "%H:%M:%S"}, {'r', "%I:%M:%S %p"}});

constexpr auto monthNames =
    std::to_array<std::string_view>({"january", "february", "march", "april", "may", "june", "july", "august",
                                     "september", "october", "november", "december"});
constexpr auto weekdayNames =
    std::to_array<std::string_view>({"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"});
constexpr auto halfNames = std::to_array<std::string_view>({"am", "pm"});

const Directive* directiveOf(char letter) {
  const auto* const found = std::find_if(directives.begin(), directives.end(),
                                         [letter](const Directive& row) { return row.letter == letter; });
  return found == directives.end() ? nullptr : found;
}

// What it stands for; empty when the letter is none.
std::string_view shorthandOf(char letter) {
  for (const Shorthand& shorthand : shorthands) {
    if (shorthand.letter == letter) return shorthand.pattern;
  }
  return {};
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isSpace(char character) { return whiteSpace.find(character) != std::string_view::npos; }

bool startsWithAnyCase(std::string_view text, std::string_view lowerName) {
  if (text.size() < lowerName.size()) return false;
  return std::equal(lowerName.begin(), lowerName.end(), text.begin(), [](char wanted, char found) {
    return wanted == (found >= 'A' && found <= 'Z' ? static_cast<char>(found - 'A' + 'a') : found);
  });
}

// The index of the name at the text's start, in full or by its first three letters.
template <std::size_t size>
std::optional<std::int32_t> takeName(std::string_view& text, const std::array<std::string_view, size>& names) {
  constexpr std::size_t shortLength = 3;
  for (const bool isFull : {true, false}) {
    for (std::size_t index = 0; index < size; ++index) {
      const std::string_view name = isFull ? names[index] : names[index].substr(0, shortLength);
      if (!startsWithAnyCase(text, name)) continue;
      text.remove_prefix(name.size());
      return static_cast<std::int32_t>(index);
    }
  }
  return std::nullopt;
}

// A blank may stand for the first digit, where there may be fewer digits.
std::optional<std::int32_t> takeNumber(std::string_view& text, const Directive& directive) {
  std::size_t most = directive.mostDigits;
  if (directive.fewestDigits < most && !text.empty() && text.front() == ' ') {
    text.remove_prefix(1);
    --most;
  }
  std::size_t digits = 0;
  std::int32_t number = 0;
  for (; digits < most && digits < text.size() && isDigit(text[digits]); ++digits) {
    number = number * 10 + (text[digits] - '0');
  }
  if (digits < directive.fewestDigits || number < directive.low || number > directive.high) return std::nullopt;
  text.remove_prefix(digits);
  return number;
}

std::optional<std::int32_t> takeField(std::string_view& text, const Directive& directive, Moment& moment) {
  constexpr std::int32_t sundayIso = 7;
  switch (directive.kind) {
    case FieldKind::number: {
      const std::optional<std::int32_t> number = takeNumber(text, directive);
      return number && directive.letter == 'u' ? std::optional(*number % sundayIso) : number;
    }
    case FieldKind::monthName: {
      const std::optional<std::int32_t> index = takeName(text, monthNames);
      return index ? std::optional(*index + 1) : std::nullopt;
    }
    case FieldKind::weekdayName:
      return takeName(text, weekdayNames);
    case FieldKind::halfName:
      return takeName(text, halfNames);
    case FieldKind::fraction: {
      const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
      if (digits == 0) return std::nullopt;
      moment.fraction = text.substr(0, digits);
      text.remove_prefix(digits);
      return 0;
    }
    case FieldKind::zone:
      return moment.zoneMinutes = takeZone(text);
  }
  return std::nullopt;
}

constexpr auto dateFields = std::to_array<CalendarField>(
    {year, century, yearOfCentury, month, day, dayOfYear, isoYear, isoWeek, sundayWeek, mondayWeek, weekday});
constexpr auto timeFields =
    std::to_array<CalendarField>({hour, hourOfHalf, halfOfDay, minute, second, CalendarField::fraction});

// Notes that texts of a pattern tell what the directive says, or gives what is wrong with it.
std::optional<std::string> addField(CalendarFields& fields, char letter) {
  if (letter == 0 || letter == ' ') return std::nullopt;
  if (letter == '%') return text::sentence("this pattern ends with a single \"%\"");
  const Directive* const directive = directiveOf(letter);
  if (directive == nullptr)
    return text::sentence("this pattern has the directive \"%^1\", which is not known", {{&letter, 1}});
  if (fields.has(directive->field))
    return text::sentence("this pattern tells with \"%^1\" what it has told before", {{&letter, 1}});
  fields.set(directive->field, 0);
  return std::nullopt;
}

bool hasAny(const CalendarFields& fields, std::span<const CalendarField> wanted) {
  return std::any_of(wanted.begin(), wanted.end(), [&](CalendarField field) { return fields.has(field); });
}

std::optional<std::string> dateProblem(const CalendarFields& fields) {
  if (fields.has(year) && (fields.has(yearOfCentury) || fields.has(century)))
    return text::sentence("this pattern tells the year twice");
  if (fields.has(century) && !fields.has(yearOfCentury))
    return text::sentence("this pattern has a century without a year in it");
  if (!fields.determineDay()) {
    return text::sentence(
        "this pattern does not determine a date: that needs a year, a month and a day, or a year and a day of the "
        "year");
  }
  return std::nullopt;
}

std::optional<std::string> timeProblem(const CalendarFields& fields) {
  if (!fields.determineHour())
    return text::sentence(
        "this pattern does not determine a time: that needs an hour of 24, or one of 12 and AM or PM");
  const bool hasGap =
      (fields.has(second) && !fields.has(minute)) || (fields.has(CalendarField::fraction) && !fields.has(second));
  if (hasGap)
    return text::sentence(
        "this pattern does not determine a time: seconds need minutes, and their fraction needs seconds");
  return std::nullopt;
}

}  // namespace

std::optional<std::string> patternProblem(CellType type, std::string_view pattern) {
  if (pattern.empty()) return std::nullopt;
  if (pattern == "any")
    return text::sentence(
        "this pattern leaves open how the values are written, and nothing is guessed; name a pattern");
  CalendarFields fields;
  for (const DatePattern::Piece& piece : DatePattern::piecesOf(pattern)) {
    if (auto wrong = addField(fields, piece.directive)) return wrong;
  }
  if (type != CellType::dateTime && fields.has(CalendarField::zone)) {
    return text::sentence("this pattern has a time zone, which only a date with a time can have");
  }
  if (type == CellType::date) {
    if (hasAny(fields, timeFields))
      return text::sentence("this pattern has a time of day, which a date has not; declare the field as datetime");
    return dateProblem(fields);
  }
  if (type == CellType::time) {
    if (hasAny(fields, dateFields))
      return text::sentence("this pattern has parts of a date, which a time has not; declare the field as datetime");
    return timeProblem(fields);
  }
  if (type != CellType::dateTime)
    return text::sentence("this pattern is a pattern of dates or times, which values of this type are not");
  if (auto wrong = dateProblem(fields)) return wrong;
  return hasAny(fields, timeFields) ? timeProblem(fields) : std::nullopt;
}

DatePattern::DatePattern(std::string_view pattern) : pieces_(piecesOf(pattern)) {}

// Shorthands are written out. A directive that is not known stands by its letter, a "%" at the end by itself.
std::vector<DatePattern::Piece> DatePattern::piecesOf(std::string_view pattern) {
  std::vector<Piece> pieces;
  const auto addLiteral = [&](char character) {
    if (pieces.empty() || pieces.back().directive != 0) pieces.emplace_back();
    pieces.back().literal += character;
  };
  const auto addSpace = [&] {
    if (pieces.empty() || pieces.back().directive != ' ') pieces.push_back({' ', {}});
  };
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    if (isSpace(pattern[at])) {
      addSpace();
    } else if (pattern[at] != '%') {
      addLiteral(pattern[at]);
    } else if (at + 1 == pattern.size()) {
      pieces.push_back({'%', {}});
    } else if (const char letter = pattern[++at]; letter == '%') {
      addLiteral('%');
    } else if (letter == 'n' || letter == 't') {
      addSpace();
    } else if (const std::string_view writtenOut = shorthandOf(letter); !writtenOut.empty()) {
      for (Piece& piece : piecesOf(writtenOut)) pieces.push_back(std::move(piece));
    } else {
      pieces.push_back({letter, {}});
    }
  }
  return pieces;
}

std::optional<Moment> DatePattern::read(std::string_view text) const {
  Moment moment;
  CalendarFields fields;
  for (const Piece& piece : pieces_) {
    if (piece.directive == 0) {
      if (!text.starts_with(piece.literal)) return std::nullopt;
      text.remove_prefix(piece.literal.size());
    } else if (piece.directive == ' ') {
      const std::size_t blanks = std::min(text.find_first_not_of(whiteSpace), text.size());
      if (blanks == 0) return std::nullopt;
      text.remove_prefix(blanks);
    } else {
      const Directive* const directive = directiveOf(piece.directive);
      const std::optional<std::int32_t> value = takeField(text, *directive, moment);
      if (!value) return std::nullopt;
      fields.set(directive->field, *value);
    }
  }
  if (!text.empty()) return std::nullopt;
  if (fields.determineDay()) {
    const std::optional<std::int64_t> days = fields.days();
    if (!days) return std::nullopt;
    moment.days = *days;
  }
  const std::optional<std::int64_t> seconds = fields.secondOfDay();
  if (!seconds) return std::nullopt;
  moment.secondOfDay = *seconds;
  return moment;
}

std::optional<std::int32_t> takeZone(std::string_view& text) {
  constexpr std::int32_t farthest = 14 * 60;
  if (text.starts_with('Z')) {
    text.remove_prefix(1);
    return 0;
  }
  if (text.empty() || (text.front() != '+' && text.front() != '-')) return std::nullopt;
  const bool isBehind = text.front() == '-';
  std::string_view rest = text.substr(1);
  const auto takeTwoDigits = [&rest]() -> std::optional<std::int32_t> {
    if (rest.size() < 2 || !isDigit(rest[0]) || !isDigit(rest[1])) return std::nullopt;
    const std::int32_t number = (rest[0] - '0') * 10 + (rest[1] - '0');
    rest.remove_prefix(2);
    return number;
  };
  const std::optional<std::int32_t> hours = takeTwoDigits();
  if (!hours) return std::nullopt;
  std::int32_t minutes = 0;
  if (rest.starts_with(':') || (!rest.empty() && isDigit(rest.front()))) {
    if (rest.front() == ':') rest.remove_prefix(1);
    const std::optional<std::int32_t> told = takeTwoDigits();
    constexpr std::int32_t minutesOfHour = 60;
    if (!told || *told >= minutesOfHour) return std::nullopt;
    minutes = *told;
  }
  minutes += *hours * 60;
  if (minutes > farthest) return std::nullopt;
  text = rest;
  return isBehind ? -minutes : minutes;
}

}  // namespace workbench::data
