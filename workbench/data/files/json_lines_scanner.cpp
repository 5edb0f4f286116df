#include "workbench/data/files/json_lines_scanner.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "workbench/data/cells/decimal_text.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t noColumn = ~std::size_t{0};

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

bool looksLikeNumber(std::string_view text) {
  const bool mayBegin = !text.empty() && text.front() >= '+' && text.front() <= '9';
  return mayBegin && decimalOf(text).has_value();
}

}  // namespace

JsonLinesScanner::JsonLinesScanner(ByteSource& source, const std::vector<std::string>& keys, std::string path)
    : TableScanner(source, path) {
  for (const std::string& key : keys) addColumn(key);
  const Outcome<Done> library = jsonLibrary();
  if (library) return;
  problem_ = library.problem();
  problem_->where = std::move(path);
}

TableScanner::Step JsonLinesScanner::readHeader(std::vector<std::string>& names) {
  if (problem_) return Step::problem;
  names = keys();
  return Step::taken;
}

TableScanner::Step JsonLinesScanner::next(CsvField& field) {
  while (nextField_ == fieldwise_.records() * fieldwise_.columns()) {
    nextField_ = 0;
    if (const Step step = nextRecords(fieldwise_); step != Step::taken) return step;
  }
  const std::size_t record = nextField_ / fieldwise_.columns();
  const std::size_t column = nextField_++ % fieldwise_.columns();
  const ColumnCells cells = fieldwise_.column(column);
  field = {cells.text(record), column + 1 == fieldwise_.columns(), cells.isNull(record),
           fieldwise_.lineOf(record, column)};
  return Step::taken;
}

TableScanner::Step JsonLinesScanner::nextRecords(CellBatch& batch) {
  batch.clear();
  if (problem_ || (atStart_ && !beginText())) return Step::problem;
  while (batch.records() == 0 && !problem_) {
    anchor_ = position_;
    recordLine_ = line_;
    bool isLast = false;
    if (!holdLine(isLast)) break;
    if (position_ == end_) return Step::end;
    batch.shareLines(buffer_.data(), found_.size());
    takeLines(batch, isLast);
  }
  return batch.records() != 0 ? Step::taken : Step::problem;
}

// Reads on until a whole line lies in the window, with its end or as the last one.
bool JsonLinesScanner::holdLine(bool& isLast) {
  for (std::size_t looked = 0;;) {
    const char* const line = buffer_.data() + position_;
    const std::size_t there = end_ - position_;
    if (std::memchr(line + looked, '\n', there - looked) != nullptr) return true;
    looked = there;
    if (refill()) continue;
    isLast = true;
    return !problem_;
  }
}

// Takes all lines that lie in the window wholly.
bool JsonLinesScanner::takeLines(CellBatch& batch, bool isLast) {
  while (position_ != end_) {
    const char* const line = buffer_.data() + position_;
    const void* const found = std::memchr(line, '\n', end_ - position_);
    if (found == nullptr && !isLast) break;
    const std::size_t length =
        found == nullptr ? end_ - position_ : static_cast<std::size_t>(static_cast<const char*>(found) - line);
    if (!takeLine(batch, length)) return false;
    position_ += length + (found == nullptr ? 0 : 1);
    ++line_;
  }
  return true;
}

bool JsonLinesScanner::takeLine(CellBatch& batch, std::size_t length) {
  char* const text = buffer_.data() + position_;
  if (length == 0 || (*text != '{' && isBlank({text, length}))) {
    skipLine();
    return true;
  }
  noteSkippedLines(std::exchange(blankLines_, 0), firstBlank_);
  longestRecord_ = std::max<std::uint64_t>(longestRecord_, length + 1);
  if (const std::optional<JsonFault> fault = json_.read(text, length, buffer_.size() - position_)) {
    return failAtLine(length, *fault);
  }
  return takeMembers(batch);
}

bool JsonLinesScanner::takeMembers(CellBatch& batch) {
  CellPlace* cells = batch.beginLine(line_);
  std::size_t likely = 0;
  for (const JsonMember& member : json_.members()) {
    std::size_t column = columnOf(member.key, likely);
    if (column == noColumn) {
      column = found_.size();
      addColumn(std::string(member.key));
      cells = batch.widenLines();
    }
    likely = column + 1;
    Column& found = found_[column];
    if (found.lastLine == line_) {
      return fail(line_, "The key \"^1\" stands twice in the line.", {found.key}, "Leave one of them out.");
    }
    found.lastLine = line_;
    if (member.kind == JsonMember::Kind::nothing) continue;
    cells[column] = CellPlace(static_cast<std::size_t>(member.value.data() - buffer_.data()), member.value.size());
    if (member.kind == JsonMember::Kind::nested && found.firstNested == 0) found.firstNested = line_;
    if (member.kind != JsonMember::Kind::text || !looksLikeNumber(member.value)) continue;
    cells[column].makeText();
    batch.markText(column);
  }
  batch.endRecord();
  return true;
}

// At the end of the file blank lines are none of those that are told of.
void JsonLinesScanner::skipLine() {
  if (blankLines_++ == 0) firstBlank_ = line_;
}

// Most lines have their keys in the same order.
std::size_t JsonLinesScanner::columnOf(std::string_view key, std::size_t likely) const {
  if (likely < found_.size() && found_[likely].key == key) return likely;
  const auto found = columnOfKey_.find(key);
  return found == columnOfKey_.end() ? noColumn : found->second;
}

void JsonLinesScanner::addColumn(std::string key) {
  columnOfKey_.emplace(key, found_.size());
  found_.push_back({std::move(key), 0, 0});
}

std::vector<std::string> JsonLinesScanner::keys() const {
  std::vector<std::string> keys;
  for (const Column& column : found_) keys.push_back(column.key);
  return keys;
}

std::vector<std::string> JsonLinesScanner::unseenKeys() const {
  std::vector<std::string> unseen;
  for (const Column& column : found_) {
    if (column.lastLine == 0) unseen.push_back(column.key);
  }
  return unseen;
}

std::vector<std::string> JsonLinesScanner::remarks() const {
  std::vector<std::string> all;
  for (const Column& column : found_) {
    if (column.firstNested == 0) continue;
    all.push_back(text::sentence(
        "Column \"^1\" holds objects or lists, the first of them in line ^2; each is read as the text of its JSON.",
        {column.key, fmt::to_string(column.firstNested)}));
  }
  return all;
}

// A byte that is no UTF-8 is the better thing to tell.
bool JsonLinesScanner::failAtLine(std::size_t length, const JsonFault& fault) {
  const CsvField line{{buffer_.data() + position_, length}, true, false, line_};
  return checkUtf8(line) && failWith(line_, fault.what, fault.remedy);
}

bool JsonLinesScanner::failAtLength(std::uint64_t line) {
  return fail(line, "The line is longer than ^1 MiB.", {fmt::to_string(CellBatch::mostBytes >> 20)},
              "Write every object in a line of its own; is this a file of JSON lines?");
}

}  // namespace workbench::data
