#include "workbench/data/files/csv_scanner.h"

#include <algorithm>
#include <utility>

#include "workbench/data/files/record_cutter.h"

namespace workbench::data {
namespace {

constexpr unsigned noQuote = 256;

unsigned byteOf(char character) { return static_cast<unsigned char>(character); }

bool isAscii(unsigned allBytes) { return (allBytes & 0x80U) == 0; }

}  // namespace

bool isPlain(const TableDialect& dialect) {
  const bool hasPlainQuotes = (!dialect.quote || dialect.doubleQuote) && !dialect.escape;
  const bool hasComments = !dialect.commentRows.empty() || !dialect.commentText.empty();
  const bool hasPlainHeader = dialect.headerRows.empty() || dialect.headerRows == std::vector<std::uint64_t>{1};
  return dialect.form == TextForm::delimited && dialect.delimiter->size() == 1 && hasPlainQuotes && !hasComments &&
         hasPlainHeader && !dialect.skipInitialSpace;
}

CsvScanner::CsvScanner(ByteSource& source, const TableDialect& dialect, std::string path)
    : TableScanner(source, std::move(path)),
      delimiter_(dialect.delimiter->front()),
      quote_(dialect.quote ? byteOf(*dialect.quote) : noQuote),
      hasHeader_(!dialect.headerRows.empty()),
      hasNull_(dialect.nullSequence.has_value()),
      null_(dialect.nullSequence.value_or("")) {
  for (const char character : {delimiter_, '\n', '\r', '\0'}) special_[byteOf(character)] = true;
  if (dialect.quote) special_[quote_] = true;
}

TableScanner::Step CsvScanner::readHeader(std::vector<std::string>& names) {
  CsvField field;
  for (Step step = next(field); step == Step::taken; step = next(field)) {
    names.emplace_back(field.text);
    if (field.endsRecord) return Step::taken;
  }
  return stopped();
}

TableScanner::Step CsvScanner::next(CsvField& field) {
  if (problem_) return Step::problem;
  if (atStart_ && !beginText()) return stopped();
  if (atRecordStart_ && !beginRecord()) return stopped();
  if (!scanField(field) || !checkFieldCount(field)) return Step::problem;
  return Step::taken;
}

TableScanner::Step CsvScanner::nextRecords(CellBatch& batch) {
  if (problem_) return Step::problem;
  while (canTakeWholeRecords()) {
    const bool isMarked = markedUpTo_ == end_ && markedDiscarded_ == discarded_;
    if (!isMarked) markWindow();
    const Taking taking = takeWholeRecords(batch, end_);
    if (taking == Taking::some) return Step::taken;
    anchor_ = position_;
    recordLine_ = line_;
    if (taking == Taking::noneAtOddRecord || !refill()) break;
  }
  return TableScanner::nextRecords(batch);
}

// Not before it is known what a record is.
bool CsvScanner::canTakeWholeRecords() const {
  return !atStart_ && atRecordStart_ && columns_ != 0 && (lineEnd() == "\n" || lineEnd() == "\r\n");
}

void CsvScanner::markWindow() {
  markedFrom_ = position_;
  markedUpTo_ = end_;
  markedDiscarded_ = discarded_;
  markedLine_ = line_;
  nextMark_ = 0;
  const char quote = quote_ == noQuote ? delimiter_ : static_cast<char>(quote_);
  marks_.find(buffer_.data() + markedFrom_, markedUpTo_ - markedFrom_, {delimiter_, quote});
}

// Takes records of the marked window up to one of its places.
CsvScanner::Taking CsvScanner::takeWholeRecords(CellBatch& batch, std::size_t upTo) {
  // 1. The marks that count: from the next record on, up to the place.
  const char* const text = buffer_.data() + markedFrom_;
  const std::size_t start = position_ - markedFrom_;
  const std::uint32_t* const marks = marks_.positions();
  const std::uint32_t* const behindAll = marks + marks_.count();
  const std::uint32_t* const behindMarks =
      upTo == markedUpTo_ ? behindAll : std::lower_bound(marks, behindAll, upTo - markedFrom_);
  while (marks + nextMark_ != behindMarks && marks[nextMark_] < start) ++nextMark_;

  // 2. The records. What does not come to its end may have filled one more than there are.
  const std::size_t mostRecords = static_cast<std::size_t>(behindMarks - marks - nextMark_) / columns_;
  batch.clear();
  CellPlace* const places = batch.share(text, markedLine_, columns_, mostRecords + 1);
  RecordCutter cutter{text, marks + nextMark_, behindMarks, delimiter_, quote_, lineEnd() == "\r\n", columns_, places,
                      start};
  std::size_t records = 0;
  for (std::size_t recordStart = start; cutter.cut(); recordStart = cutter.begin) {
    longestRecord_ = std::max<std::uint64_t>(longestRecord_, cutter.begin - recordStart);
    ++records;
  }
  if (records == 0) return cutter.reachedEnd ? Taking::noneAtWindowEnd : Taking::noneAtOddRecord;

  // 3. All are UTF-8, or those that end before the first byte that is none are taken.
  if (cutter.begin > marks_.asciiUpTo()) {
    const std::size_t from = std::max(marks_.asciiUpTo(), start);
    const std::size_t wrong = findNoUtf8({text + from, cutter.begin - from});
    if (wrong != std::string_view::npos) {
      const Taking before = takeWholeRecords(batch, markedFrom_ + from + wrong);
      return before == Taking::some ? before : Taking::noneAtOddRecord;
    }
  }
  batch.setRecords(records);
  if (hasNull_) markNulls(places, records * columns_, text);
  position_ = anchor_ = markedFrom_ + cutter.begin;
  line_ += cutter.lines;
  nextMark_ = static_cast<std::size_t>(cutter.mark - marks);
  return Taking::some;
}

void CsvScanner::markNulls(CellPlace* places, std::size_t cells, const char* text) const {
  for (CellPlace* place = places; place != places + cells; ++place) {
    if (isNull({text + place->begin(), place->length()})) place->makeNull();
  }
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
      const char* const what = hasHeader_ ? "The first line is blank, and it has to name the columns."
                                          : "The first line is blank, and it has to tell the number of columns.";
      return fail(line_, what, {}, "Remove the blank line.");
    }
    if (!takeLineEnd()) return false;
  }
  noteSkippedLines(blankLines, firstBlank);
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
  return byteOf(buffer_[position_]) == quote_ ? scanQuoted(field) : scanPlain(field);
}

bool CsvScanner::scanPlain(CsvField& field) {
  unsigned allBytes = 0;
  for (;;) {
    const char* next = buffer_.data() + position_;
    for (; !special_[byteOf(*next)]; ++next) allBytes |= byteOf(*next);
    position_ = static_cast<std::size_t>(next - buffer_.data());
    if (byteOf(*next) == quote_) {
      const std::string_view before(buffer_.data() + anchor_, position_ - anchor_);
      if (before.find_first_not_of(" \t") == std::string_view::npos) return failAtBlankBeforeQuote();
      ++position_;
    } else if (*next != '\0') {
      break;
    } else if (position_ < end_) {
      return failAtNul();
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
    if (byteOf(next) == quote_) {
      if (position_ + 1 == end_ && !refill() && problem_) return false;
      if (byteOf(buffer_[position_ + 1]) != quote_) break;
      hasDoubled = true;
      unescaped_.append(buffer_.data() + anchor_, position_ + 1 - anchor_);
      anchor_ = ++position_ + 1;
    } else if (next == '\0') {
      if (position_ < end_) return failAtNul();
      if (refill()) continue;
      return !problem_ && failAtOpenQuote(field.line);
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
  if (!isEnd) return failBehindQuote(field.line);
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
  field.isNull = isNull(field.text);
  return isAsciiText || checkUtf8(field);
}

bool CsvScanner::checkFieldCount(CsvField& field) {
  ++fieldIndex_;
  const bool isTooMany = columns_ != 0 && fieldIndex_ > columns_;
  const bool isTooFew = columns_ != 0 && fieldIndex_ < columns_ && field.endsRecord;
  if (isTooMany || isTooFew) {
    for (; !field.endsRecord; ++fieldIndex_) {
      if (!scanField(field)) return false;
    }
    return failAtFieldCount(recordLine_, fieldIndex_, columns_, ExpectedBy::firstLine);
  }
  if (field.endsRecord) {
    columns_ = fieldIndex_;
    longestRecord_ = std::max(longestRecord_, discarded_ + position_ - recordStart_);
    atRecordStart_ = true;
  }
  return true;
}

}  // namespace workbench::data
