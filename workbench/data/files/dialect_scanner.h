// DialectScanner: the fields of a text in any dialect.
//
//   comments     a row whose number is told, and a row that begins, outside of quotes, with a text that is told. The
//                latter is left out up to its line's end, whatever stands in it
//   header       the rows that are told; what stands before the last of them otherwise is left out. Names of a column
//                in several rows are joined; a row that is shorter than the last goes on with its last name that is not
//                empty. When the header is the first row and that is a comment, it is the first row that is none
//   escapes      take the next character as it stands, within quotes and without
//   null         a field without quotes that is the null sequence as written, before escapes are resolved; or one
//                without escapes that is it once unquoted
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/table_scanner.h"

namespace workbench::data {

class DialectScanner final : public TableScanner {
 public:
  // Requires: the dialect has a delimiter and does not contradict itself.
  DialectScanner(ByteSource& source, TableDialect dialect, std::string path);

  Step readHeader(std::vector<std::string>& names) override;
  Step next(CsvField& field) override;

 private:
  // Those that return a truth value give false at a problem; those that step over rows also at the end.
  bool beginRow();
  bool leaveOutComment(bool isLine);
  bool leaveOutBlankLine();
  bool leaveOutRow();
  bool leaveOutLine();
  bool readRow(std::vector<std::string>& names);
  bool scanField(CsvField& field);
  bool scanPlain();
  bool scanQuoted(std::uint64_t fieldLine);
  bool takeEscaped();
  bool finishField(CsvField& field, std::size_t length);
  bool checkFieldCount(CsvField& field);

  bool isBeforeData() const { return !dialect_.headerRows.empty() && row_ <= dialect_.headerRows.back(); }
  bool isHeaderRow() const;
  // These look ahead, and read on for it.
  bool has(std::size_t bytes);
  bool isNext(std::string_view text, std::size_t offset = 0);
  bool isBlankLine() { return has(1) && (buffer_[position_] == '\n' || buffer_[position_] == '\r'); }
  bool endsField(std::size_t offset);
  bool isNullNext();
  void keepUpTo(std::size_t position);

  TableDialect dialect_;
  bool hasTopHeader_;  // in the first row that is no comment
  unsigned quote_;     // beyond all bytes: there is none
  unsigned escape_;    // the same
  bool special_[256] = {};
  std::uint64_t row_ = 0;        // the current one
  std::uint64_t namesLine_ = 0;  // of the row that tells the number of columns
  std::uint64_t blankRun_ = 0;
  std::uint64_t blankRunStart_ = 0;
  bool isUnescaped_ = false;  // the field's text stands in unescaped_ so far, and goes on in the window
  bool hasEscape_ = false;
};

}  // namespace workbench::data
