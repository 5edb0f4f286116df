// TableDialect: how a text file holds a table. The defaults are those of a plain CSV file.
//
// Rows are counted from 1 after the text was split into rows, comment rows and rows without a character included.
//
// JSON lines have no delimiters, quotes, header or comments: of them only the encoding and the keys count.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/files/file_kind.h"

namespace workbench::data {

struct TableDialect {
  std::optional<std::string> delimiter;         // none: as the ending of the file's name says
  std::optional<char> quote = '"';              // none: quotes are characters like others
  bool doubleQuote = true;                      // two quotes inside a quoted field are one
  std::optional<char> escape;                   // takes the next character as it stands
  std::vector<std::uint64_t> headerRows = {1};  // ascending; empty: there is no header
  std::string headerJoin = " ";                 // between the names of a column in several header rows
  std::vector<std::uint64_t> commentRows;       // ascending; these are left out
  std::string commentText;                      // rows that begin with it are left out; empty: none
  std::optional<std::string> nullSequence;      // a field that is just this holds no value, whatever its column's type
  bool skipInitialSpace = false;                // blanks behind a delimiter are left out
  std::string encoding;                         // as IANA names it; empty: UTF-8
  TextForm form = TextForm::delimited;
  // Of JSON lines: all different; they are the first columns, whether a line has them or none does.
  std::vector<std::string> keys = {};

  bool operator==(const TableDialect&) const = default;
};

// The dialect in which JSON lines are read that have at least these keys.
TableDialect jsonLinesDialect(std::string encoding, std::vector<std::string> keys);

// Why no text can be read by the dialect, as the end of a sentence: its characters contradict each other. Nothing when
// it can.
std::optional<std::string> contradictionIn(const TableDialect& dialect);

}  // namespace workbench::data
