#include "workbench/data/files/cell_batch.h"

#include <algorithm>
#include <numeric>

namespace workbench::data {

std::uint64_t CellBatch::lineOf(std::size_t record, std::size_t column) const {
  if (!recordLines_.empty()) return recordLines_[record];
  if (!lines_.empty()) return lines_[record * columns_ + column];
  return firstLine_ + countLines({text_, places_[record * columns_ + column].begin()});
}

std::uint64_t CellBatch::bytes() const {
  const auto cells = static_cast<std::ptrdiff_t>(records_ * columns_);
  return std::accumulate(places_.begin(), places_.begin() + cells, std::uint64_t{0},
                         [](std::uint64_t sum, const CellPlace& cell) { return sum + cell.length(); });
}

void CellBatch::clear() {
  columns_ = 0;
  records_ = 0;
  ownText_.clear();
  lines_.clear();
  recordLines_.clear();
  isText_.clear();
  text_ = nullptr;
}

CellPlace* CellBatch::share(const char* text, std::uint64_t firstLine, std::size_t columns, std::size_t records) {
  text_ = text;
  firstLine_ = firstLine;
  columns_ = columns;
  if (places_.size() < columns * records) places_.resize(columns * records);
  return places_.data();
}

void CellBatch::shareLines(const char* text, std::size_t columns) {
  text_ = text;
  columns_ = columns;
}

CellPlace* CellBatch::beginLine(std::uint64_t line) {
  recordLines_.resize(records_);
  recordLines_.push_back(line);
  const std::size_t behind = (records_ + 1) * columns_;
  if (places_.size() < behind) places_.resize(behind * 2);
  CellPlace* const cells = places_.data() + records_ * columns_;
  CellPlace none(0, 0);
  none.makeNull();
  std::fill(cells, cells + columns_, none);
  return cells;
}

// From the last record to the first: none is written over before it was moved.
CellPlace* CellBatch::widenLines() {
  const std::size_t before = columns_++;
  places_.resize(std::max(places_.size(), (records_ + 1) * columns_));
  for (std::size_t record = records_ + 1; record-- != 0;) {
    CellPlace* const from = places_.data() + record * before;
    CellPlace* const to = places_.data() + record * columns_;
    std::copy_backward(from, from + before, to + before);
    to[before] = CellPlace(0, 0);
    to[before].makeNull();
  }
  return places_.data() + records_ * columns_;
}

void CellBatch::add(std::string_view text, bool isNull, std::uint64_t line) {
  if (lines_.size() == places_.size()) places_.resize(places_.size() * 2 + 1);
  CellPlace& cell = places_[lines_.size()];
  cell = {ownText_.size(), text.size()};
  if (isNull) cell.makeNull();
  ownText_.insert(ownText_.end(), text.begin(), text.end());
  lines_.push_back(line);
}

void CellBatch::markText(std::size_t column) {
  if (isText_.size() <= column) isText_.resize(column + 1);
  isText_[column] = true;
}

void CellBatch::finish(std::size_t columns) {
  columns_ = columns;
  lines_.resize(records_ * columns_);
  ownText_.resize(ownText_.size() + readableBehind);
  text_ = ownText_.data();
}

std::uint64_t countLines(std::string_view text) {
  std::uint64_t lines = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool closesPair = text[index] == '\n' && index > 0 && text[index - 1] == '\r';
    if ((text[index] == '\n' || text[index] == '\r') && !closesPair) ++lines;
  }
  return lines;
}

}  // namespace workbench::data
