// TableScanner: the fields of a text that holds a table, one after the other, and the proof that the text is sound.
//
// A sound text is UTF-8 (with or without a byte order mark), without NUL. Lines end alike throughout, with LF, CR LF or
// CR. A field is either without quotes at its start, or wholly in quotes. Every row of data has as many fields as there
// are columns. Rows without a character are skipped, or are an empty field where there is but one column. Anything else
// is a problem that names the line.
//
// What scanners share stands here: the window over the text, in which a field lies in one piece, the count of lines and
// the refusals. CsvScanner is for almost every file, DialectScanner for what is written in an unusual way.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/byte_source.h"
#include "workbench/data/files/cell_batch.h"
#include "workbench/data/files/table_dialect.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct CsvField {
  std::string_view text;  // unquoted; valid until the next step
  bool endsRecord = false;
  bool isNull = false;     // it is the dialect's null sequence: no value, whatever its column's type
  std::uint64_t line = 0;  // where it begins, from 1
};

class TableScanner {
 public:
  enum class Step { taken, end, problem };

  virtual ~TableScanner() = default;
  TableScanner(const TableScanner&) = delete;
  TableScanner& operator=(const TableScanner&) = delete;

  // Steps over the header and gives the columns' names. Gives `end` for a text that ends before. Requires: the dialect
  // has a header, and nothing was read yet.
  virtual Step readHeader(std::vector<std::string>& names) = 0;
  // The next field of the data. Requires: the header was read, where there is one.
  virtual Step next(CsvField& field) = 0;
  // The next records of the data, one at least; they stay as they are until the next step. Records before a problem
  // are given before it. Requires: the same, and that no record has been left half way.
  virtual Step nextRecords(CellBatch& batch);
  // What the number of fields in a line is held against.
  enum class ExpectedBy : std::uint8_t { firstLine, firstRow, header, headerAbove };

  // Requires: the last step was a problem.
  const Problem& problem() const { return *problem_; }

  // How lines end; empty as long as none has ended.
  std::string_view lineEnd() const { return lineEnd_; }
  std::uint64_t longestRecord() const { return longestRecord_; }    // in bytes, its line end included
  std::uint64_t skippedLines() const { return skippedLines_; }      // without a character, between others
  std::uint64_t firstSkippedLine() const { return firstSkipped_; }  // 0: none
  // Names of all columns, where records name them and further ones may come with each batch; else empty.
  virtual std::vector<std::string> keys() const { return {}; }
  // Those of them that no record has had so far.
  virtual std::vector<std::string> unseenKeys() const { return {}; }
  // What whoever reads the text should know of it once all of it was scanned. Sentences.
  virtual std::vector<std::string> remarks() const { return {}; }

 protected:
  // The source outlives the scanner. The path is for problems only.
  TableScanner(ByteSource& source, std::string path);

  // Those that return a truth value give false at a problem; refill also at the end.
  bool beginText();
  bool refill();
  bool takeLineEnd();
  bool checkUtf8(const CsvField& field);
  void noteSkippedLines(std::uint64_t count, std::uint64_t firstLine);
  // What and remedy are sentences to be looked up, the first with items.
  bool fail(std::uint64_t line, std::string_view what, std::initializer_list<std::string_view> items,
            std::string_view remedy);
  // The same of sentences that are whole.
  bool failWith(std::uint64_t line, std::string what, std::string remedy);
  bool failAtNul();
  bool failAtOpenQuote(std::uint64_t line);
  bool failBehindQuote(std::uint64_t fieldLine);
  bool failAtBlankBeforeQuote();
  bool failAtFieldCount(std::uint64_t line, std::size_t fields, std::size_t expected, ExpectedBy expectedBy);
  virtual bool failAtLength(std::uint64_t line);
  Step stopped() const { return problem_ ? Step::problem : Step::end; }

  std::vector<char> buffer_;     // what was read, a NUL behind it, and room for looking beyond it
  std::size_t anchor_ = 0;       // where the current field's text begins; what stands before may be discarded
  std::size_t position_ = 0;     // of the next byte
  std::size_t end_ = 0;          // behind the last byte
  std::uint64_t discarded_ = 0;  // bytes that stood before the buffer

  bool atStart_ = true;
  bool atRecordStart_ = true;
  std::uint64_t line_ = 1;
  std::uint64_t recordLine_ = 1;
  std::size_t fieldIndex_ = 0;
  std::size_t columns_ = 0;  // 0: not known yet
  std::string unescaped_;    // a field's text that does not lie in one piece
  std::uint64_t longestRecord_ = 0;
  std::optional<Problem> problem_;

 private:
  ByteSource& source_;
  std::string path_;
  bool sourceIsEmpty_ = false;
  std::string_view lineEnd_;
  std::uint64_t skippedLines_ = 0;
  std::uint64_t firstSkipped_ = 0;
};

// Where the first byte stands that is no UTF-8; npos when all are.
std::size_t findNoUtf8(std::string_view text);

// The scanner that is right for the dialect. Requires: the dialect has a delimiter and does not contradict itself; the
// source, whose bytes are UTF-8, outlives the scanner.
std::unique_ptr<TableScanner> openScanner(ByteSource& source, const TableDialect& dialect, std::string path);

}  // namespace workbench::data
