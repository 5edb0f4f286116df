// CsvScanner: the fields of a CSV text one after the other, and the proof that the text is sound.
//
// Cases are read by DuckDB; but DuckDB accepts in silence what must not be: it drops empty fields beyond the last
// column, blanks before an opening and behind a closing quote, NUL bytes stay in values, a header is taken that is no
// UTF-8, an empty file is a table without columns. So before anything else every file goes through this scanner once,
// which refuses all of that with the line, and hands out the fields from which types are inferred. What it accepts
// DuckDB reads in just one way; a test holds both against each other.
//
// A sound text is UTF-8 (with or without a byte order mark), without NUL. Lines end alike throughout, with LF, CR LF or
// CR. The first line names the columns, all others have as many fields. A field is either without quotes at its start,
// or wholly in quotes, which are doubled inside. Lines without a character are skipped, or are an empty field where
// there is but one column.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/byte_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct CsvField {
  std::string_view text;  // unquoted; valid until the next step
  bool endsRecord = false;
  std::uint64_t line = 0;  // where it begins, from 1
};

class CsvScanner {
 public:
  // The source outlives the scanner. The path is for problems only.
  CsvScanner(ByteSource& source, char delimiter, std::string path);

  enum class Step { field, end, problem };
  Step next(CsvField& field);
  // Requires: the last step was a problem.
  const Problem& problem() const { return *problem_; }

  // How lines end; empty as long as none has ended.
  std::string_view lineEnd() const { return lineEnd_; }
  std::uint64_t longestRecord() const { return longestRecord_; }    // in bytes, its line end included
  std::uint64_t skippedLines() const { return skippedLines_; }      // without a character, between others
  std::uint64_t firstSkippedLine() const { return firstSkipped_; }  // 0: none

 private:
  bool takePlainField(CsvField& field);
  // Those that return a truth value give false at a problem; beginRecord and refill also at the end.
  bool beginText();
  bool beginRecord();
  bool scanField(CsvField& field);
  bool scanPlain(CsvField& field);
  bool scanQuoted(CsvField& field);
  bool finishField(CsvField& field, std::size_t length, bool isAsciiText, bool isUnescaped);
  bool takeLineEnd();
  bool checkFieldCount(CsvField& field);
  bool refill();
  bool fail(std::uint64_t line, std::string what, std::string remedy);

  ByteSource& source_;
  std::string path_;
  char delimiter_;
  bool special_[256] = {};  // bytes that end the plain run of an unquoted field, or need a look

  std::vector<char> buffer_;     // what was read, a NUL behind it
  std::size_t anchor_ = 0;       // where the current field's text begins; what stands before may be discarded
  std::size_t position_ = 0;     // of the next byte
  std::size_t end_ = 0;          // behind the last byte
  std::uint64_t discarded_ = 0;  // bytes that stood before the buffer
  bool sourceIsEmpty_ = false;

  bool atStart_ = true;
  bool atRecordStart_ = true;
  std::uint64_t line_ = 1;
  std::uint64_t recordLine_ = 1;
  std::uint64_t recordStart_ = 0;
  std::size_t fieldIndex_ = 0;
  std::size_t columns_ = 0;  // 0: the first record is not complete
  std::vector<std::string> header_;
  std::string unescaped_;
  std::string_view lineEnd_;
  std::uint64_t longestRecord_ = 0;
  std::uint64_t blankRun_ = 0;
  std::uint64_t blankRunStart_ = 0;
  std::uint64_t skippedLines_ = 0;
  std::uint64_t firstSkipped_ = 0;
  std::optional<Problem> problem_;
};

}  // namespace workbench::data
