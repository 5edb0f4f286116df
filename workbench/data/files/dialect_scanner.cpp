#include "workbench/data/files/dialect_scanner.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace workbench::data {
namespace {

constexpr unsigned noByte = 256;

unsigned byteOf(char character) { return static_cast<unsigned char>(character); }

bool contains(const std::vector<std::uint64_t>& rows, std::uint64_t row) {
  return std::binary_search(rows.begin(), rows.end(), row);
}

// The name that a row gives to a column: beyond its end the last one that is not empty.
std::string_view nameIn(const std::vector<std::string>& row, std::size_t column) {
  if (column < row.size()) return row[column];
  const auto last = std::find_if(row.rbegin(), row.rend(), [](const std::string& name) { return !name.empty(); });
  return last == row.rend() ? std::string_view() : std::string_view(*last);
}

// One name per column, from top to bottom; names that are empty add nothing.
std::vector<std::string> joinedNames(const std::vector<std::vector<std::string>>& rows, std::string_view join) {
  std::vector<std::string> names(rows.back().size());
  for (std::size_t column = 0; column < names.size(); ++column) {
    for (const std::vector<std::string>& row : rows) {
      const std::string_view name = nameIn(row, column);
      if (name.empty()) continue;
      if (!names[column].empty()) names[column] += join;
      names[column] += name;
    }
  }
  return names;
}

}  // namespace

DialectScanner::DialectScanner(ByteSource& source, TableDialect dialect, std::string path)
    : TableScanner(source, std::move(path)),
      dialect_(std::move(dialect)),
      hasTopHeader_(dialect_.headerRows == std::vector<std::uint64_t>{1}),
      quote_(dialect_.quote ? byteOf(*dialect_.quote) : noByte),
      escape_(dialect_.escape ? byteOf(*dialect_.escape) : noByte) {
  for (const char character : {dialect_.delimiter->front(), '\n', '\r', '\0'}) special_[byteOf(character)] = true;
  for (const unsigned byte : {quote_, escape_}) {
    if (byte != noByte) special_[byte] = true;
  }
}

TableScanner::Step DialectScanner::readHeader(std::vector<std::string>& names) {
  std::vector<std::vector<std::string>> rows;
  do {
    if (!beginRow()) {
      if (problem_ || row_ == 0) return stopped();
      fail(line_, "The text ends before row ^1, which has to name the columns.",
           {fmt::to_string(dialect_.headerRows.back())}, "Say in which rows the header is.");
      return Step::problem;
    }
    if (!readRow(rows.emplace_back())) return Step::problem;
  } while (row_ != dialect_.headerRows.back());
  for (const std::vector<std::string>& row : rows) {
    if (row.size() <= rows.back().size()) continue;
    failAtFieldCount(recordLine_, rows.back().size(), row.size(), ExpectedBy::headerAbove);
    return Step::problem;
  }
  names = joinedNames(rows, dialect_.headerJoin);
  columns_ = names.size();
  return Step::taken;
}

bool DialectScanner::readRow(std::vector<std::string>& names) {
  CsvField field;
  do {
    if (!scanField(field)) return false;
    names.emplace_back(field.text);
  } while (!field.endsRecord);
  atRecordStart_ = true;
  return true;
}

TableScanner::Step DialectScanner::next(CsvField& field) {
  if (problem_) return Step::problem;
  if (atRecordStart_ && !beginRow()) return stopped();
  if (!scanField(field) || !checkFieldCount(field)) return Step::problem;
  return Step::taken;
}

// Steps over what is left out to the next row of the header or of the data.
bool DialectScanner::beginRow() {
  if (atStart_ && !beginText()) return false;
  for (;;) {
    anchor_ = position_;
    if (!has(1)) return false;
    ++row_;
    recordLine_ = line_;
    fieldIndex_ = 0;
    const bool isCommentLine = !dialect_.commentText.empty() && isNext(dialect_.commentText);
    if (isCommentLine || contains(dialect_.commentRows, row_)) {
      if (!leaveOutComment(isCommentLine)) return false;
    } else if (isBlankLine() && columns_ != 1) {
      if (!leaveOutBlankLine()) return false;
    } else if (isBeforeData() && !isHeaderRow()) {
      if (!leaveOutRow()) return false;
    } else {
      break;
    }
  }
  noteSkippedLines(std::exchange(blankRun_, 0), blankRunStart_);
  if (namesLine_ == 0) namesLine_ = line_;
  atRecordStart_ = false;
  return true;
}

bool DialectScanner::leaveOutComment(bool isLine) {
  if (isHeaderRow()) {
    if (!hasTopHeader_) {
      return fail(line_, "Row ^1 has to name the columns, and it is a comment.", {fmt::to_string(row_)},
                  "Say in which rows the header is.");
    }
    ++dialect_.headerRows.front();
  }
  if (isLine) return leaveOutLine();
  return isBlankLine() ? takeLineEnd() : leaveOutRow();
}

bool DialectScanner::leaveOutBlankLine() {
  const bool isPreamble = isBeforeData() && !isHeaderRow();
  if (!isPreamble && columns_ == 0) {
    const std::string_view toTellCount = line_ == 1
                                             ? "The first line is blank, and it has to tell the number of columns."
                                             : "The row is blank, and it has to tell the number of columns.";
    const std::string_view toName = line_ == 1 ? "The first line is blank, and it has to name the columns."
                                               : "The row is blank, and it has to name the columns.";
    return fail(line_, dialect_.headerRows.empty() ? toTellCount : toName, {}, "Remove the blank line.");
  }
  if (!isPreamble && blankRun_++ == 0) blankRunStart_ = line_;
  return takeLineEnd();
}

bool DialectScanner::leaveOutRow() {
  CsvField field;
  do {
    if (!scanField(field)) return false;
  } while (!field.endsRecord);
  return true;
}

bool DialectScanner::leaveOutLine() {
  CsvField line;
  line.line = line_;
  for (;; ++position_) {
    if (!has(1)) break;
    const char next = buffer_[position_];
    if (next == '\0') return failAtNul();
    if (next == '\n' || next == '\r') break;
  }
  if (problem_) return false;
  line.text = {buffer_.data() + anchor_, position_ - anchor_};
  if (!checkUtf8(line)) return false;
  return !has(1) || takeLineEnd();
}

bool DialectScanner::scanField(CsvField& field) {
  unescaped_.clear();
  isUnescaped_ = hasEscape_ = false;
  anchor_ = position_;
  if (dialect_.skipInitialSpace && fieldIndex_ != 0) {
    while (isNext(" ")) anchor_ = ++position_;
  }
  field.line = line_;
  field.isNull = false;
  if (has(1) && byteOf(buffer_[position_]) == quote_) {
    if (!scanQuoted(field.line)) return false;
    const std::size_t length = position_++ - anchor_;
    if (!endsField(0)) return !problem_ && failBehindQuote(field.line);
    return finishField(field, length);
  }
  if (isNullNext()) {
    position_ += dialect_.nullSequence->size();
    field.isNull = true;
  } else if (!scanPlain()) {
    return false;
  }
  return finishField(field, position_ - anchor_);
}

// Up to what ends the field.
bool DialectScanner::scanPlain() {
  for (;;) {
    const char* next = buffer_.data() + position_;
    while (!special_[byteOf(*next)]) ++next;
    position_ = static_cast<std::size_t>(next - buffer_.data());
    const unsigned byte = byteOf(*next);
    if (byte == 0) {
      if (position_ < end_) return failAtNul();
      if (!refill()) return !problem_;
    } else if (byte == escape_) {
      if (!takeEscaped()) return false;
    } else if (byte == '\n' || byte == '\r' || isNext(*dialect_.delimiter)) {
      return true;
    } else {
      const std::string_view before(buffer_.data() + anchor_, position_ - anchor_);
      const bool isOpening =
          byte == quote_ && !isUnescaped_ && before.find_first_not_of(" \t") == std::string_view::npos;
      if (isOpening) return failAtBlankBeforeQuote();
      ++position_;
    }
  }
}

// From the opening quote up to the closing one.
bool DialectScanner::scanQuoted(std::uint64_t fieldLine) {
  bool afterReturn = false;
  anchor_ = ++position_;
  for (;;) {
    const char next = buffer_[position_];
    if (byteOf(next) == quote_) {
      const bool isDoubled = dialect_.doubleQuote && has(2) && byteOf(buffer_[position_ + 1]) == quote_;
      if (problem_) return false;
      if (!isDoubled) return true;
      keepUpTo(position_ + 1);
      position_ += 2;
      anchor_ = position_;
    } else if (byteOf(next) == escape_) {
      if (!takeEscaped()) return false;
    } else if (next == '\0') {
      if (position_ < end_) return failAtNul();
      if (refill()) continue;
      return !problem_ && failAtOpenQuote(fieldLine);
    } else {
      if (next == '\r' || (next == '\n' && !afterReturn)) ++line_;
      ++position_;
    }
    afterReturn = next == '\r';
  }
}

// An escape character is next: the one behind it is text, whatever it is. A pair of CR and LF is one line break.
bool DialectScanner::takeEscaped() {
  keepUpTo(position_);
  hasEscape_ = true;
  anchor_ = ++position_;
  if (!has(1)) {
    return !problem_ &&
           fail(line_, "The text ends with an escape character.", {}, "Double it where it is a character of the text.");
  }
  const char escaped = buffer_[position_];
  if (escaped == '\0') return failAtNul();
  if (escaped == '\n' || escaped == '\r') ++line_;
  position_ += isNext("\r\n") ? 2 : 1;
  return true;
}

// Takes the delimiter or the line's end behind the field, whose text goes on for that length from the anchor.
bool DialectScanner::finishField(CsvField& field, std::size_t length) {
  ++fieldIndex_;
  field.endsRecord = !isNext(*dialect_.delimiter);
  if (!field.endsRecord) {
    position_ += dialect_.delimiter->size();
  } else if (has(1) && !takeLineEnd()) {
    return false;
  }
  if (problem_) return false;
  field.text = {buffer_.data() + anchor_, length};
  if (isUnescaped_) field.text = unescaped_.append(field.text);
  if (!hasEscape_ && dialect_.nullSequence == field.text) field.isNull = true;
  const bool isAscii =
      std::all_of(field.text.begin(), field.text.end(), [](char byte) { return byteOf(byte) < 0x80U; });
  return isAscii || checkUtf8(field);
}

bool DialectScanner::checkFieldCount(CsvField& field) {
  const bool isTooMany = columns_ != 0 && fieldIndex_ > columns_;
  const bool isTooFew = columns_ != 0 && fieldIndex_ < columns_ && field.endsRecord;
  if (isTooMany || isTooFew) {
    while (!field.endsRecord) {
      if (!scanField(field)) return false;
    }
    const ExpectedBy names = dialect_.headerRows.empty() ? ExpectedBy::firstRow : ExpectedBy::header;
    return failAtFieldCount(recordLine_, fieldIndex_, columns_, namesLine_ == 1 ? ExpectedBy::firstLine : names);
  }
  if (field.endsRecord) {
    columns_ = fieldIndex_;
    atRecordStart_ = true;
  }
  return true;
}

bool DialectScanner::isHeaderRow() const { return contains(dialect_.headerRows, row_); }

bool DialectScanner::has(std::size_t bytes) {
  while (end_ - position_ < bytes && refill()) continue;
  return end_ - position_ >= bytes;
}

bool DialectScanner::isNext(std::string_view text, std::size_t offset) {
  return has(offset + text.size()) && std::string_view(buffer_.data() + position_ + offset, text.size()) == text;
}

// Whether a delimiter, a line's end or the end of the text stands there.
bool DialectScanner::endsField(std::size_t offset) {
  if (!has(offset + 1)) return !problem_;
  const char next = buffer_[position_ + offset];
  return next == '\n' || next == '\r' || isNext(*dialect_.delimiter, offset);
}

// Only where escapes could make it another text; else the finished text tells.
bool DialectScanner::isNullNext() {
  if (escape_ == noByte || !dialect_.nullSequence) return false;
  return isNext(*dialect_.nullSequence) && endsField(dialect_.nullSequence->size());
}

// Keeps the field's text from the anchor up to there.
void DialectScanner::keepUpTo(std::size_t position) {
  unescaped_.append(buffer_.data() + anchor_, position - anchor_);
  isUnescaped_ = true;
}

}  // namespace workbench::data
