// CsvScanner: the records of a text in a plain dialect, fast.
//
// Whole records are taken from the window as they lie: marks tell where its few bytes stand that count, and cells are
// what lies between. A record that is odd in any way (a doubled quote, a blank line before it, a byte that is no UTF-8,
// another number of fields) is taken field by field, which knows all rules and what to say when one is broken.
//
// Quotes are doubled inside a quoted field. The first line, which has to name the columns where the dialect has a
// header, has as many fields as all others. What this scanner accepts DuckDB reads in just one way; a test holds both
// against each other.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/structure_marks.h"
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
  Step nextRecords(CellBatch& batch) override;

 private:
  enum class Taking { some, noneAtWindowEnd, noneAtOddRecord };
  bool canTakeWholeRecords() const;
  void markWindow();
  Taking takeWholeRecords(CellBatch& batch, std::size_t upTo);
  void markNulls(CellPlace* places, std::size_t cells, const char* text) const;
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
  bool special_[256] = {};  // bytes that end the plain run of an unquoted field, or need a look
  std::uint64_t recordStart_ = 0;

  // The marks of the window from one of its places on, and what of the window they are for.
  StructureMarks marks_;
  std::size_t markedFrom_ = 0;
  std::size_t markedUpTo_ = 0;
  std::uint64_t markedDiscarded_ = 0;
  std::uint64_t markedLine_ = 1;
  std::size_t nextMark_ = 0;
};

}  // namespace workbench::data
