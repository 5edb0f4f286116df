// NumberText: the numbers of a column as its dictionary declares them, rewritten in the plain form that decimal_text.h
// reads: a decimal point, no groups, no blanks, no zero before another digit.
//
//   1.234,50      with "," before the decimals and "." between groups: 1234.50
//   007           a declared number is no identifier: 7
//   EUR 95, 95%   where other characters may stand around a number: 95
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/cells/cell_reading.h"

namespace workbench::data {

class NumberText {
 public:
  // Of a column of numbers or of integers.
  explicit NumberText(const CellReading& reading);

  // Nothing when the cell is no number of that form; valid until the next call. What it gives, decimalOf() reads.
  std::optional<std::string_view> plain(std::string_view cell);
  // Whether groups other than of three digits stand in the number: perhaps the mark was meant for a decimal one.
  bool hasOddGroups(std::string_view cell) const;
  // Why the cell is no such number, as the end of a sentence. Requires: plain() gives nothing.
  std::string whyNot(std::string_view cell, std::string_view subject) const;

 private:
  // Where the number stands that a cell has among other characters; nothing when there is none, or when what is around
  // it may belong to it: a digit, or a sign.
  std::optional<std::string_view> numberInside(std::string_view cell) const;
  std::size_t numberLength(std::string_view text) const;
  std::size_t digitsLength(std::string_view text) const;
  std::optional<std::string_view> candidateIn(std::string_view cell) const;

  bool isInteger_;
  bool bareNumber_;
  std::string decimalChar_;
  std::string groupChar_;
  std::string plain_;
};

}  // namespace workbench::data
