#include "workbench/data/files/table_scanner.h"

#include <fmt/format.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "workbench/data/files/csv_scanner.h"
#include "workbench/data/files/dialect_scanner.h"
#include "workbench/data/files/json_line.h"
#include "workbench/data/files/json_lines_scanner.h"
#include "workbench/data/files/structure_marks.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t bufferBytes = std::size_t{1} << 17;
constexpr std::size_t behindText = std::max({readBehindMarks, readableBehind, readBehindJson});
constexpr const char* saveAsUtf8 = "Save the file as UTF-8.";

std::string_view nameOfLineEnd(std::string_view lineEnd) {
  if (lineEnd == "\n") return "LF";
  return lineEnd == "\r" ? "CR" : "CR LF";
}

std::string_view patternOf(TableScanner::ExpectedBy expectedBy) {
  using ExpectedBy = TableScanner::ExpectedBy;
  switch (expectedBy) {
    case ExpectedBy::firstLine:
      return "The number of fields in this line is ^1; ^2 are expected, as the first line has them.";
    case ExpectedBy::firstRow:
      return "The number of fields in this line is ^1; ^2 are expected, as the first row has them.";
    case ExpectedBy::header:
      return "The number of fields in this line is ^1; ^2 are expected, as the header has them.";
    case ExpectedBy::headerAbove:
      break;
  }
  return "The number of fields in this line is ^1; ^2 are expected, as a row of the header above it has them.";
}

}  // namespace

TableScanner::TableScanner(ByteSource& source, std::string path)
    : buffer_(bufferBytes + behindText), source_(source), path_(std::move(path)) {}

bool TableScanner::beginText() {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  atStart_ = false;
  while (end_ < byteOrderMark.size() && refill()) continue;
  if (problem_) return false;
  const std::string_view text(buffer_.data(), end_);
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return fail(1, "This is UTF-16.", {}, saveAsUtf8);
  if (text.starts_with(byteOrderMark)) position_ = byteOrderMark.size();
  return true;
}

// Reads on; what stands from the anchor on stays, further to the front.
bool TableScanner::refill() {
  if (sourceIsEmpty_) return false;
  std::memmove(buffer_.data(), buffer_.data() + anchor_, end_ - anchor_);
  discarded_ += anchor_;
  position_ -= anchor_;
  end_ -= std::exchange(anchor_, 0);
  if (end_ + behindText == buffer_.size()) {
    if (end_ >= CellBatch::mostBytes) return failAtLength(recordLine_);
    buffer_.resize(end_ * 2 + behindText);
  }
  const Outcome<std::size_t> bytes = source_.read(buffer_.data() + end_, buffer_.size() - behindText - end_);
  if (!bytes) {
    problem_ = bytes.problem();
    problem_->where = path_;
    return false;
  }
  end_ += *bytes;
  buffer_[end_] = '\0';
  sourceIsEmpty_ = *bytes == 0;
  return !sourceIsEmpty_;
}

// Requires: a line end is next.
bool TableScanner::takeLineEnd() {
  std::string_view found = "\n";
  if (buffer_[position_] == '\r') {
    if (position_ + 1 == end_ && !refill() && problem_) return false;
    found = buffer_[position_ + 1] == '\n' ? "\r\n" : "\r";
  }
  if (lineEnd_.empty()) lineEnd_ = found;
  if (found != lineEnd_) {
    return fail(line_, "The line ends with ^1, the lines before it with ^2.",
                {nameOfLineEnd(found), nameOfLineEnd(lineEnd_)},
                "Let all lines end alike, and put line breaks inside a field in quotes.");
  }
  position_ += found.size();
  ++line_;
  return true;
}

bool TableScanner::checkUtf8(const CsvField& field) {
  const std::size_t wrong = findNoUtf8(field.text);
  if (wrong == std::string_view::npos) return true;
  return fail(field.line + countLines(field.text.substr(0, wrong)), "The byte ^1 is no UTF-8.",
              {fmt::format("0x{:02X}", static_cast<unsigned char>(field.text[wrong]))}, saveAsUtf8);
}

void TableScanner::noteSkippedLines(std::uint64_t count, std::uint64_t firstLine) {
  if (count != 0 && skippedLines_ == 0) firstSkipped_ = firstLine;
  skippedLines_ += count;
}

bool TableScanner::fail(std::uint64_t line, std::string_view what, std::initializer_list<std::string_view> items,
                        std::string_view remedy) {
  return failWith(line, text::sentence(what, items), text::sentence(remedy));
}

bool TableScanner::failWith(std::uint64_t line, std::string what, std::string remedy) {
  problem_ = Problem{std::move(what), text::sentence("^1, line ^2", {path_, fmt::to_string(line)}), std::move(remedy)};
  return false;
}

bool TableScanner::failAtNul() {
  return fail(line_, "A NUL byte stands in the text.", {},
              "Is this a text file, saved as UTF-8? Then remove the NUL bytes from it.");
}

bool TableScanner::failAtOpenQuote(std::uint64_t line) {
  return fail(line, "The quote that opens here is never closed.", {},
              "Close it, or double it where it is a character of the text.");
}

bool TableScanner::failBehindQuote(std::uint64_t fieldLine) {
  return fail(line_, "A quote is closed, and the field (which began in line ^1) goes on.", {fmt::to_string(fieldLine)},
              "Double the quotes inside a quoted field, and leave no blanks behind it.");
}

bool TableScanner::failAtBlankBeforeQuote() {
  return fail(line_, "A blank stands before an opening quote.", {}, "Remove it, or put it inside the quotes.");
}

bool TableScanner::failAtFieldCount(std::uint64_t line, std::size_t fields, std::size_t expected,
                                    ExpectedBy expectedBy) {
  return fail(line, patternOf(expectedBy), {fmt::to_string(fields), fmt::to_string(expected)},
              "Put a field that holds a delimiter into quotes, and write an empty one where a value is missing.");
}

bool TableScanner::failAtLength(std::uint64_t line) {
  return fail(line, "The record that begins here is longer than ^1 MiB.", {fmt::to_string(CellBatch::mostBytes >> 20)},
              "Is a quote missing that closes a field? If not, part the record.");
}

// Field by field, and not many: who can be faster may be so again after a few odd records.
TableScanner::Step TableScanner::nextRecords(CellBatch& batch) {
  constexpr std::size_t mostRecords = 64;
  constexpr std::size_t enoughBytes = std::size_t{1} << 20;
  batch.clear();
  CsvField field;
  Step step = problem_ ? Step::problem : Step::taken;
  std::size_t bytesBefore = 0;
  while (step == Step::taken && batch.records() < mostRecords && bytesBefore < enoughBytes) {
    step = next(field);
    if (step != Step::taken) break;
    if (batch.ownBytes() - bytesBefore + field.text.size() > CellBatch::mostBytes) {
      failAtLength(recordLine_);
      step = Step::problem;
      break;
    }
    batch.add(field.text, field.isNull, field.line);
    if (!field.endsRecord) continue;
    batch.endRecord();
    bytesBefore = batch.ownBytes();
  }
  batch.finish(columns_);
  return batch.records() != 0 ? Step::taken : step;
}

std::size_t findNoUtf8(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t next = 0; next < text.size();) {
    std::uint64_t eight = 0;
    if (text.size() - next >= sizeof eight) {
      std::memcpy(&eight, bytes + next, sizeof eight);
      if ((eight & 0x8080808080808080) == 0) {
        next += sizeof eight;
        continue;
      }
    }
    const std::size_t start = next;
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    if (character < 0) return start;
  }
  return std::string_view::npos;
}

std::unique_ptr<TableScanner> openScanner(ByteSource& source, const TableDialect& dialect, std::string path) {
  if (dialect.form == TextForm::jsonLines) {
    return std::make_unique<JsonLinesScanner>(source, dialect.keys, std::move(path));
  }
  if (isPlain(dialect)) return std::make_unique<CsvScanner>(source, dialect, std::move(path));
  return std::make_unique<DialectScanner>(source, dialect, std::move(path));
}

}  // namespace workbench::data
