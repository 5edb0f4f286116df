// CellBatch: some records of a table, cut into cells.
//
// All records have the same number of cells. These lie in one text, which belongs to the batch or to the scanner that
// filled it, and behind which `readableBehind` bytes can be read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "workbench/data/cells/short_decimal.h"

namespace workbench::data {

// Where a cell stands in its batch's text.
class CellPlace {
 public:
  CellPlace() = default;
  CellPlace(std::size_t begin, std::size_t length)
      : begin_(static_cast<std::uint32_t>(begin)), length_(static_cast<std::uint32_t>(length)) {}

  std::size_t begin() const { return begin_; }
  std::size_t length() const { return length_ & ~(nullBit | textBit); }
  bool isNull() const { return (length_ & nullBit) != 0; }
  void makeNull() { length_ |= nullBit; }
  bool isText() const { return (length_ & textBit) != 0; }
  void makeText() { length_ |= textBit; }

 private:
  static constexpr std::uint32_t nullBit = std::uint32_t{1} << 31;
  static constexpr std::uint32_t textBit = std::uint32_t{1} << 30;  // no cell is that long

  std::uint32_t begin_ = 0;
  std::uint32_t length_ = 0;
};

// The cells of a column, from one record of a batch on. Valid as long as the batch is left as it is.
class ColumnCells {
 public:
  static constexpr bool arePadded = true;

  ColumnCells(const char* text, const CellPlace* first, std::size_t stride)
      : text_(text), first_(first), stride_(stride) {}

  std::string_view text(std::size_t record) const {
    const CellPlace& cell = first_[record * stride_];
    return {text_ + cell.begin(), cell.length()};
  }
  // It holds no value, whatever its column's type, though it has a text.
  bool isNull(std::size_t record) const { return first_[record * stride_].isNull(); }
  // It is a text, whatever it looks like. Never where the batch does not say so of the column.
  bool isText(std::size_t record) const { return first_[record * stride_].isText(); }

 private:
  const char* text_;
  const CellPlace* first_;
  std::size_t stride_;
};

class CellBatch {
 public:
  static constexpr std::size_t mostBytes = std::size_t{1} << 28;  // of a record

  std::size_t records() const { return records_; }
  std::size_t columns() const { return columns_; }
  ColumnCells column(std::size_t column, std::size_t firstRecord = 0) const {
    return {text_, places_.data() + firstRecord * columns_ + column, columns_};
  }
  std::string_view text(std::size_t record, std::size_t column) const { return this->column(column).text(record); }
  // Where a cell begins in the file, from 1. Takes as long as looking through the text before it.
  std::uint64_t lineOf(std::size_t record, std::size_t column) const;
  std::uint64_t bytes() const;  // of all cells
  // Whether the column holds a text that looks like a number and is none: its source says so, and perhaps of which
  // cells.
  bool isText(std::size_t column) const { return column < isText_.size() && isText_[column]; }

  // --- For those who fill it ---

  void clear();
  // Takes the scanner's text, which begins in that line, and gives room for the cells of so many records, to be filled
  // record by record. Requires: it is clear.
  CellPlace* share(const char* text, std::uint64_t firstLine, std::size_t columns, std::size_t records);
  void setRecords(std::size_t records) { records_ = records; }
  // Takes the scanner's text, the records of which stand in a line each. They begin one after the other with so many
  // cells, all null, and are taken when they end. Requires: it is clear.
  void shareLines(const char* text, std::size_t columns);
  CellPlace* beginLine(std::uint64_t line);
  // Gives all records one more cell, null, that which has begun too; tells where this one's cells are now.
  CellPlace* widenLines();
  // Copies a cell; to a batch that shares no text.
  void add(std::string_view text, bool isNull, std::uint64_t line);
  void endRecord() { ++records_; }
  void markText(std::size_t column);
  // Takes back the cells of a record that did not come to its end, and makes the others ready to be read.
  void finish(std::size_t columns);
  std::size_t ownBytes() const { return ownText_.size(); }

 private:
  const char* text_ = nullptr;
  std::size_t columns_ = 0;
  std::size_t records_ = 0;
  std::vector<CellPlace> places_;  // more perhaps than there are cells
  std::vector<char> ownText_;
  std::vector<std::uint64_t> lines_;        // of the cells, where the text is the batch's own
  std::vector<std::uint64_t> recordLines_;  // of the records, where each stands in one
  std::vector<bool> isText_;                // as far as there are such columns
  std::uint64_t firstLine_ = 1;             // of the text, where it is shared
};

// Line breaks of any kind.
std::uint64_t countLines(std::string_view text);

}  // namespace workbench::data
