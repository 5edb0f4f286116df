// Texts for scanners, given in as small pieces as a test wants, and what a scanner finds in them as a short text.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/data/files/table_scanner.h"

namespace workbench::data {

// Gives so many bytes at a time, so that whatever is looked at across two reads is.
class TextSource final : public ByteSource {
 public:
  explicit TextSource(std::string text, std::size_t pieceBytes = 1) : text_(std::move(text)), piece_(pieceBytes) {}

  Outcome<std::size_t> read(char* into, std::size_t room) override {
    const std::size_t bytes = std::min({room, piece_, text_.size() - next_});
    std::memcpy(into, text_.data() + next_, bytes);
    next_ += bytes;
    return bytes;
  }

 private:
  std::string text_;
  std::size_t piece_;
  std::size_t next_ = 0;
};

class DialectBuilder {
 public:
  DialectBuilder() { dialect_.delimiter = ","; }

  DialectBuilder& delimiter(std::string text) { return set(&TableDialect::delimiter, std::move(text)); }
  DialectBuilder& quote(char character) { return set(&TableDialect::quote, character); }
  DialectBuilder& noQuotes() { return set(&TableDialect::quote, std::nullopt); }
  DialectBuilder& noDoubledQuotes() { return set(&TableDialect::doubleQuote, false); }
  DialectBuilder& escape(char character) { return set(&TableDialect::escape, character); }
  DialectBuilder& header(std::vector<std::uint64_t> rows) { return set(&TableDialect::headerRows, std::move(rows)); }
  DialectBuilder& noHeader() { return header({}); }
  DialectBuilder& headerJoin(std::string text) { return set(&TableDialect::headerJoin, std::move(text)); }
  DialectBuilder& comments(std::string text) { return set(&TableDialect::commentText, std::move(text)); }
  DialectBuilder& commentRows(std::vector<std::uint64_t> rows) {
    return set(&TableDialect::commentRows, std::move(rows));
  }
  DialectBuilder& null(std::string text) { return set(&TableDialect::nullSequence, std::move(text)); }
  DialectBuilder& skipInitialSpace() { return set(&TableDialect::skipInitialSpace, true); }
  DialectBuilder& encoding(std::string name) { return set(&TableDialect::encoding, std::move(name)); }

  operator TableDialect() const { return dialect_; }

 private:
  template <class Member, class Value>
  DialectBuilder& set(Member TableDialect::* member, Value value) {
    dialect_.*member = std::move(value);
    return *this;
  }

  TableDialect dialect_;
};

inline DialectBuilder dialect() { return {}; }

// All that the scanner gives: names, "//", cases parted by " / ", their fields by "|"; "<null>" for a null. What stands
// in the way ends it: "a|b // 1|2 / ! t.csv, line 3: ...", without the remedy.
inline std::string scanned(TableScanner& scanner, bool hasHeader) {
  std::string all;
  if (hasHeader) {
    std::vector<std::string> names;
    const TableScanner::Step step = scanner.readHeader(names);
    if (step == TableScanner::Step::end) return "empty";
    if (step == TableScanner::Step::problem)
      return fmt::format("! {}: {}", scanner.problem().where, scanner.problem().what);
    all = fmt::format("{} //", fmt::join(names, "|"));
  }
  CsvField field;
  bool atStart = true;
  TableScanner::Step step = scanner.next(field);
  for (; step == TableScanner::Step::taken; step = scanner.next(field)) {
    if (!atStart) {
      all += '|';
    } else if (!all.empty()) {
      all += all.ends_with("//") ? " " : " / ";
    }
    all += field.isNull ? "<null>" : std::string(field.text);
    atStart = field.endsRecord;
  }
  if (step == TableScanner::Step::problem) {
    all += fmt::format("{}! {}: {}", all.empty() ? "" : " ", scanner.problem().where, scanner.problem().what);
  }
  return all;
}

// A field with where it begins, if that is asked for: "text:line".
inline std::string placed(std::string_view text, bool isNull, std::optional<std::uint64_t> line) {
  const std::string_view shown = isNull ? "<null>" : text;
  return line ? fmt::format("{}:{}", shown, *line) : std::string(shown);
}

enum class Lines { shown, left };

// The whole records of the data, field by field, and what ends them: "a:2|b:2 / c:3|d:3 / ! t.csv, line 4: ...".
inline std::string recordsByField(TableScanner& scanner, bool hasHeader, Lines lines = Lines::shown) {
  std::vector<std::string> names;
  if (hasHeader && scanner.readHeader(names) != TableScanner::Step::taken) return "no header";
  std::string all;
  std::string record;
  CsvField field;
  TableScanner::Step step = scanner.next(field);
  for (; step == TableScanner::Step::taken; step = scanner.next(field)) {
    const auto line = lines == Lines::shown ? std::optional(field.line) : std::nullopt;
    record += placed(field.text, field.isNull, line) + (field.endsRecord ? " / " : "|");
    if (field.endsRecord) all += std::exchange(record, "");
  }
  if (step == TableScanner::Step::problem)
    all += fmt::format("! {}: {}", scanner.problem().where, scanner.problem().what);
  return all;
}

// The same, taken in batches. Lines take long to find in long texts.
inline std::string recordsByBatch(TableScanner& scanner, bool hasHeader, Lines lines = Lines::shown) {
  std::vector<std::string> names;
  if (hasHeader && scanner.readHeader(names) != TableScanner::Step::taken) return "no header";
  std::string all;
  CellBatch batch;
  TableScanner::Step step = scanner.nextRecords(batch);
  for (; step == TableScanner::Step::taken; step = scanner.nextRecords(batch)) {
    std::uint64_t bytes = 0;
    for (std::size_t record = 0; record < batch.records(); ++record) {
      for (std::size_t column = 0; column < batch.columns(); ++column) {
        const ColumnCells cells = batch.column(column);
        const auto line = lines == Lines::shown ? std::optional(batch.lineOf(record, column)) : std::nullopt;
        all += placed(cells.text(record), cells.isNull(record), line);
        all += column + 1 == batch.columns() ? " / " : "|";
        bytes += cells.text(record).size();
      }
    }
    if (bytes != batch.bytes()) all += "wrong number of bytes";
    if (batch.records() == 0) all += "empty batch";
  }
  if (step == TableScanner::Step::problem)
    all += fmt::format("! {}: {}", scanner.problem().where, scanner.problem().what);
  return all;
}

// By the scanner that is for the dialect, read byte by byte.
inline std::string scanned(const TableDialect& dialect, std::string text) {
  TextSource source(std::move(text));
  const std::unique_ptr<TableScanner> scanner = openScanner(source, dialect, "t.csv");
  return scanned(*scanner, !dialect.headerRows.empty());
}

// Fields of a text as they are written, sound ones and (rarely picked) others.
inline const std::vector<std::string> rawFields{
    "x",  "",  "QQ",   "QxDyQ", "QxQQyQ", "QNQ",  "QxNNyDQ", "\\N",  "null", "-", "é",    "12",  "\\",   "#",   "x ",
    "\t", "'", "\"\"", "xQQ",   "QéQ",    "Q xQ", "xQy",     "QQQQ", "Qx Q", "a", "Q\\Q", "Q'Q", "x\"y", "QDQ", "1Q"};
inline const std::vector<std::string> rareRawFields{" x", "QxQ ", "xDy", "N", "Q", "QxQy", "NN", "\xF6", "xN", " Q"};

// A table of so many columns, a field for every pick, to be written out in a dialect.
inline std::string rawTable(const std::vector<std::uint8_t>& picks, std::size_t columns, bool hasHeader,
                            bool endsLast) {
  constexpr std::uint8_t rarely = 254;
  std::string raw = hasHeader ? "h" : "";
  for (std::size_t column = 1; hasHeader && column < columns; ++column) raw += fmt::format("Dh{}", column);
  std::size_t column = 0;
  for (std::size_t index = 0; index < picks.size(); ++index) {
    if (!raw.empty()) raw += column == 0 ? 'N' : 'D';
    const std::uint8_t pick = picks[index];
    raw += pick >= rarely ? rareRawFields[(pick + index) % rareRawFields.size()] : rawFields[pick % rawFields.size()];
    column = (column + 1) % columns;
  }
  for (; column != 0; column = (column + 1) % columns) raw += 'D';
  return endsLast ? raw + 'N' : raw;
}

// Writes out what stands for a character of the dialect: Q a quote, D the delimiter, N a line's end.
inline std::string writtenOut(std::string_view raw, char quote, const std::string& delimiter,
                              const std::string& lineEnd) {
  std::string text;
  for (const char character : raw) {
    if (character == 'Q') {
      text += quote;
    } else if (character == 'D') {
      text += delimiter;
    } else {
      text += character == 'N' ? lineEnd : std::string(1, character);
    }
  }
  return text;
}

}  // namespace workbench::data
