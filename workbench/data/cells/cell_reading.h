// CellReading: how the cells of a column become values, where a dictionary says so.
//
//   text        the cell as it stands
//   number      a decimal number, its point and its grouping as said here; no "NaN", no "INF": data hold neither
//   integer     digits with an optional sign
//   boolean     one of the texts for true (1) or for false (0)
//   year        a year of at least four digits, with an optional minus
//   date, time, dateTime   ISO 8601, or as the pattern says; a date with a time may bear a zone and is then read as UTC
//   duration    ISO 8601, months and seconds kept apart
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace workbench::data {

enum class CellType : std::uint8_t { text, number, integer, boolean, year, date, time, dateTime, duration };

struct CellReading {
  CellType type = CellType::text;
  std::string pattern;            // of dates and times, in the directives of strptime; empty: ISO 8601
  std::string decimalChar = ".";  // of numbers; may be longer than a byte
  std::string groupChar;          // of numbers and integers; empty: none
  bool bareNumber = true;         // of numbers and integers: false lets other characters stand around the number
  std::vector<std::string> trueTexts = {"true", "True", "TRUE", "1"};
  std::vector<std::string> falseTexts = {"false", "False", "FALSE", "0"};
  // A cell that is one of these, byte by byte, holds no value: system-missing, or blanks. Looked at before all else.
  std::vector<std::string> noValueTexts = {""};

  bool operator==(const CellReading&) const = default;
};

}  // namespace workbench::data
