// CsvScanner: the fields of a text in a plain dialect, fast.
//
// Cases are mostly read by DuckDB; but DuckDB accepts in silence what must not be: it drops empty fields beyond the
// last column, blanks before an opening and behind a closing quote, NUL bytes stay in values, a header is taken that is
// no UTF-8, an empty file is a table without columns. So before anything else every file is scanned once, which refuses
// all of that with the line, and hands out the fields from which types are inferred. What this scanner accepts DuckDB
// reads in just one way; a test holds both against each other.
//
// Quotes are doubled inside a quoted field. The first line, which has to name the columns where the dialect has a
// header, has as many fields as all others.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/table_scanner.h"

namespace workbench::data {

// Whether this scanner reads the dialect: one byte between fields, quotes that are doubled or none, no escapes, no
// comments, one line of names at the top or none. Requires: the dialect has a delimiter.
bool isPlain(const TableDialect& dialect);

class CsvScanner final : public TableScanner {
 public:
  // Requires: the dialect is plain.
  CsvScanner(ByteSource& source, const TableDialect& dialect, std::string path);

  Step readHeader(std::vector<std::string>& names) override;
  Step next(CsvField& field) override;

 private:
  bool takePlainField(CsvField& field);
  // Those that return a truth value give false at a problem; beginRecord also at the end.
  bool beginRecord();
  bool scanField(CsvField& field);
  bool scanPlain(CsvField& field);
  bool scanQuoted(CsvField& field);
  bool finishField(CsvField& field, std::size_t length, bool isAsciiText, bool isUnescaped);
  bool checkFieldCount(CsvField& field);
  bool isNull(std::string_view text) const { return hasNull_ && text == null_; }

  char delimiter_;
  unsigned quote_;  // beyond all bytes: there is none
  bool hasHeader_;
  bool hasNull_;
  std::string null_;
  std::size_t plainColumns_ = 0;  // those that are taken plainly; none while fields have to be told from nulls
  bool special_[256] = {};        // bytes that end the plain run of an unquoted field, or need a look
  std::uint64_t recordStart_ = 0;
};

}  // namespace workbench::data
