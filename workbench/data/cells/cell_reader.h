// CellReader: the cells of one column as values, by what is declared of it.
//
// Reading is exact or it is refused: a number that a double does not hold is no value but an error of that cell, as is
// NaN or INF; so is a zoned date with a time among others without a zone (a reader remembers which it has seen).
// A user-missing value is a value like any other here.
//
//   text        every cell reads; it is no number
//   number, integer     white space around them is nothing
//   boolean     1 and 0
//   year        its number
//   date, time, dateTime, duration     as calendar_text.h counts them; with a zone: of the same moment in UTC
#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/cells/calendar_text.h"
#include "workbench/data/cells/cell_reading.h"
#include "workbench/data/cells/date_pattern.h"
#include "workbench/data/cells/number_text.h"

namespace workbench::data {

class CellReader {
 public:
  // Requires: patternProblem() finds none in the reading's pattern.
  explicit CellReader(CellReading reading);

  const CellReading& reading() const { return reading_; }

  // To be asked before all else.
  bool holdsNoValue(std::string_view cell) const;
  // Nothing when the cell does not read as the type, and for texts.
  std::optional<double> number(std::string_view cell);
  // Rewrites the cell as a text of its type that is read without any declaration: decimal point, no groups, ISO 8601 in
  // UTC; true is 1, false 0. False when the cell does not read. Texts stay as they are.
  bool plainText(std::string_view cell, std::string& plain);
  // Why the cell does not read, as a clause about the subject, which is what the sentence calls the cell: "it is no
  // integer". Requires: it does not.
  std::string whyNot(std::string_view cell, std::string_view subject);
  // Whether groups other than of three digits stand in a number, which reads all the same.
  bool hasOddGroups(std::string_view cell) const { return numbers_.hasOddGroups(cell); }
  // Whether the dates with times that were read bore a zone; nothing before there was one.
  std::optional<bool> sawZones() const { return sawZoned_ || sawUnzoned_ ? std::optional(sawZoned_) : std::nullopt; }

 private:
  std::optional<double> declaredNumber(std::string_view cell);
  // The plain text of a number, an integer or a year; valid until the next call.
  std::optional<std::string_view> plainNumber(std::string_view cell);
  std::optional<double> truthValue(std::string_view cell) const;
  std::optional<CalendarValue> calendarValue(std::string_view cell);
  // Of a date, a time or both; moment() gives nothing where it is beyond the calendar, or zoned among unzoned ones.
  std::optional<Moment> moment(std::string_view cell);
  std::optional<Moment> momentAsWritten(std::string_view cell) const;
  std::string whyNoNumber(std::string_view cell, std::string_view subject);
  std::string whyNoMoment(std::string_view cell, std::string_view subject) const;

  CellReading reading_;
  NumberText numbers_;
  std::optional<DatePattern> pattern_;
  bool isPlainNumber_;  // no declaration about its characters
  std::bitset<64> lengthsWithoutValue_;
  bool sawZoned_ = false;
  bool sawUnzoned_ = false;
};

// The type with its article, as it stands in sentences: "an integer".
std::string nameOf(CellType type);

}  // namespace workbench::data
