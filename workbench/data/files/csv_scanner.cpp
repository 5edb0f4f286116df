#include "workbench/data/files/csv_scanner.h"

#include <fmt/format.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace workbench::data {
namespace {

constexpr std::size_t bufferBytes = std::size_t{1} << 18;

std::string_view nameOfLineEnd(std::string_view lineEnd) {
  if (lineEnd == "\n") return "LF";
  return lineEnd == "\r" ? "CR" : "CR LF";
}

// Where the first byte stands that is no UTF-8; npos when all are.
std::size_t findNoUtf8(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t next = 0; next < text.size();) {
    const std::size_t start = next;
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    if (character < 0) return start;
  }
  return std::string_view::npos;
}

// Line breaks of any kind.
std::uint64_t countLines(std::string_view text) {
  std::uint64_t lines = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool closesPair = text[index] == '\n' && index > 0 && text[index - 1] == '\r';
    if ((text[index] == '\n' || text[index] == '\r') && !closesPair) ++lines;
  }
  return lines;
}

unsigned byteOf(char character) { return static_cast<unsigned char>(character); }

bool isAscii(unsigned allBytes) { return (allBytes & 0x80U) == 0; }

constexpr const char* saveAsUtf8 = "Save the file as UTF-8.";
constexpr const char* nulRemedy = "Is this a text file, saved as UTF-8? Then remove the NUL bytes from it.";

}  // namespace

CsvScanner::CsvScanner(ByteSource& source, char delimiter, std::string path)
    : source_(source), path_(std::move(path)), delimiter_(delimiter), buffer_(bufferBytes) {
  for (const char character : {delimiter, '\n', '\r', '"', '\0'}) special_[byteOf(character)] = true;
}

CsvScanner::Step CsvScanner::next(CsvField& field) {
  const auto stopped = [this] { return problem_ ? Step::problem : Step::end; };
  if (problem_) return Step::problem;
  if (!atRecordStart_ && takePlainField(field)) return Step::field;
  if (atStart_ && !beginText()) return stopped();
  if (atRecordStart_ && !beginRecord()) return stopped();
  if (!scanField(field) || !checkFieldCount(field)) return Step::problem;
  return Step::field;
}

// The step that is almost every one: an unquoted field of ASCII, its delimiter at hand, and another field to come. When
// it is anything else, nothing has happened.
bool CsvScanner::takePlainField(CsvField& field) {
  const char* const start = buffer_.data() + position_;
  const char* next = start;
  unsigned allBytes = 0;
  for (; !special_[byteOf(*next)]; ++next) allBytes |= byteOf(*next);
  if (*next != delimiter_ || !isAscii(allBytes) || fieldIndex_ + 1 >= columns_) return false;
  field = {{start, static_cast<std::size_t>(next - start)}, false, line_};
  position_ += field.text.size() + 1;
  ++fieldIndex_;
  return true;
}

bool CsvScanner::beginText() {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  atStart_ = false;
  while (end_ < byteOrderMark.size() && refill()) continue;
  if (problem_) return false;
  const std::string_view text(buffer_.data(), end_);
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return fail(1, "This is UTF-16.", saveAsUtf8);
  if (text.starts_with(byteOrderMark)) position_ = byteOrderMark.size();
  return true;
}

// Steps over blank lines to the next record.
bool CsvScanner::beginRecord() {
  std::uint64_t blankLines = 0;
  const std::uint64_t firstBlank = line_;
  for (;; ++blankLines) {
    anchor_ = position_;
    if (position_ == end_ && !refill()) return false;
    const bool isBlank = buffer_[position_] == '\n' || buffer_[position_] == '\r';
    if (!isBlank || columns_ == 1) break;
    if (columns_ == 0) {
      return fail(line_, "The first line is blank, and it has to name the columns.", "Remove the blank line.");
    }
    if (!takeLineEnd()) return false;
  }
  if (blankLines != 0 && skippedLines_ == 0) firstSkipped_ = firstBlank;
  skippedLines_ += blankLines;
  atRecordStart_ = false;
  recordStart_ = discarded_ + position_;
  recordLine_ = line_;
  fieldIndex_ = 0;
  return true;
}

bool CsvScanner::scanField(CsvField& field) {
  anchor_ = position_;
  field.line = line_;
  if (position_ == end_ && !refill() && problem_) return false;
  return buffer_[position_] == '"' ? scanQuoted(field) : scanPlain(field);
}

bool CsvScanner::scanPlain(CsvField& field) {
  unsigned allBytes = 0;
  for (;;) {
    const char* next = buffer_.data() + position_;
    for (; !special_[byteOf(*next)]; ++next) allBytes |= byteOf(*next);
    position_ = static_cast<std::size_t>(next - buffer_.data());
    if (*next == '"') {
      const std::string_view before(buffer_.data() + anchor_, position_ - anchor_);
      if (before.find_first_not_of(" \t") == std::string_view::npos) {
        return fail(line_, "A blank stands before an opening quote.", "Remove it, or put it inside the quotes.");
      }
      ++position_;
    } else if (*next != '\0') {
      break;
    } else if (position_ < end_) {
      return fail(line_, "A NUL byte stands in the text.", nulRemedy);
    } else if (!refill()) {
      if (problem_) return false;
      break;
    }
  }
  return finishField(field, position_ - anchor_, isAscii(allBytes), false);
}

bool CsvScanner::scanQuoted(CsvField& field) {
  unsigned allBytes = 0;
  bool hasDoubled = false;
  bool afterReturn = false;
  unescaped_.clear();
  anchor_ = ++position_;
  for (;;) {
    const char next = buffer_[position_];
    allBytes |= byteOf(next);
    if (next == '"') {
      if (position_ + 1 == end_ && !refill() && problem_) return false;
      if (buffer_[position_ + 1] != '"') break;
      hasDoubled = true;
      unescaped_.append(buffer_.data() + anchor_, position_ + 1 - anchor_);
      anchor_ = ++position_ + 1;
    } else if (next == '\0') {
      if (position_ < end_) return fail(line_, "A NUL byte stands in the text.", nulRemedy);
      if (refill()) continue;
      return !problem_ && fail(field.line, "The quote that opens here is never closed.",
                               "Close it, or double it where it is a character of the text.");
    } else if (next == '\r' || (next == '\n' && !afterReturn)) {
      ++line_;
    }
    afterReturn = next == '\r';
    ++position_;
  }
  const std::size_t length = position_++ - anchor_;
  if (hasDoubled) unescaped_.append(buffer_.data() + anchor_, length);
  const char behind = buffer_[position_];
  const bool isEnd = position_ == end_ || behind == delimiter_ || behind == '\n' || behind == '\r';
  if (!isEnd) {
    return fail(line_, fmt::format("A quote is closed, and the field (which began in line {}) goes on.", field.line),
                "Double the quotes inside a quoted field, and leave no blanks behind it.");
  }
  return finishField(field, length, isAscii(allBytes), hasDoubled);
}

// Takes the delimiter or the line's end behind a field of that length.
bool CsvScanner::finishField(CsvField& field, std::size_t length, bool isAsciiText, bool isUnescaped) {
  field.endsRecord = true;
  if (position_ < end_) {
    if (buffer_[position_] == delimiter_) {
      ++position_;
      field.endsRecord = false;
    } else if (!takeLineEnd()) {
      return false;
    }
  }
  field.text = isUnescaped ? std::string_view(unescaped_) : std::string_view(buffer_.data() + anchor_, length);
  if (isAsciiText) return true;
  const std::size_t wrong = findNoUtf8(field.text);
  if (wrong == std::string_view::npos) return true;
  return fail(field.line + countLines(field.text.substr(0, wrong)),
              fmt::format("The byte 0x{:02X} is no UTF-8.", byteOf(field.text[wrong])), saveAsUtf8);
}

// Requires: a line end is next.
bool CsvScanner::takeLineEnd() {
  std::string_view found = "\n";
  if (buffer_[position_] == '\r') {
    if (position_ + 1 == end_ && !refill() && problem_) return false;
    found = buffer_[position_ + 1] == '\n' ? "\r\n" : "\r";
  }
  if (lineEnd_.empty()) lineEnd_ = found;
  if (found != lineEnd_) {
    return fail(line_,
                fmt::format("The line ends with {}, the lines before it with {}.", nameOfLineEnd(found),
                            nameOfLineEnd(lineEnd_)),
                "Let all lines end alike, and put line breaks inside a field in quotes.");
  }
  position_ += found.size();
  ++line_;
  return true;
}

bool CsvScanner::checkFieldCount(CsvField& field) {
  ++fieldIndex_;
  const bool isTooMany = columns_ != 0 && fieldIndex_ > columns_;
  const bool isTooFew = columns_ != 0 && fieldIndex_ < columns_ && field.endsRecord;
  if (isTooMany || isTooFew) {
    for (; !field.endsRecord; ++fieldIndex_) {
      if (!scanField(field)) return false;
    }
    return fail(recordLine_,
                fmt::format("The number of fields in this line is {}; {} are expected, as the first line has them.",
                            fieldIndex_, columns_),
                "Put a field that holds a delimiter into quotes, and write an empty one where a value is missing.");
  }
  if (field.endsRecord) {
    columns_ = fieldIndex_;
    longestRecord_ = std::max(longestRecord_, discarded_ + position_ - recordStart_);
    atRecordStart_ = true;
  }
  return true;
}

// Reads on; what stands from the anchor on stays, further to the front.
bool CsvScanner::refill() {
  if (sourceIsEmpty_) return false;
  std::memmove(buffer_.data(), buffer_.data() + anchor_, end_ - anchor_);
  discarded_ += anchor_;
  position_ -= anchor_;
  end_ -= std::exchange(anchor_, 0);
  if (end_ + 1 >= buffer_.size()) buffer_.resize(buffer_.size() * 2);
  const Outcome<std::size_t> bytes = source_.read(buffer_.data() + end_, buffer_.size() - 1 - end_);
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

bool CsvScanner::fail(std::uint64_t line, std::string what, std::string remedy) {
  problem_ = Problem{std::move(what), fmt::format("{}, line {}", path_, line), std::move(remedy)};
  return false;
}

}  // namespace workbench::data
