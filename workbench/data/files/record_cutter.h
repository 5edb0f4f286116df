// RecordCutter: cuts whole records out of a text between the marks of its structure.
#pragma once

#include <cstddef>
#include <cstdint>

#include "workbench/data/files/cell_batch.h"

namespace workbench::data {

// As long as nothing about a record is odd. Positions are those of the marks.
struct RecordCutter {
  const char* text;
  const std::uint32_t* mark;  // the next one
  const std::uint32_t* behindMarks;
  char delimiter;
  unsigned quote;       // beyond all bytes: there is none
  bool endsWithReturn;  // lines end with CR LF, else with LF
  std::size_t columns;
  CellPlace* place;       // the next one
  std::size_t begin = 0;  // of the next record
  std::uint64_t lines = 0;
  bool reachedEnd = false;
  bool hasNoQuotes = true;  // as far as it is known: which is the faster way

  // False when the record is odd, or not all there; nothing has happened then but that places were written to.
  bool cut() { return (hasNoQuotes && cutWithoutQuotes()) || cutWithQuotes(); }

 private:
  // False also when a field is quoted.
  bool cutWithoutQuotes() {
    if (static_cast<std::size_t>(behindMarks - mark) < columns) return false;
    std::size_t start = begin;
    for (std::size_t column = 0;; ++column) {
      const std::size_t end = mark[column];
      place[column] = {start, end - start};
      start = end + 1;
      if (column + 1 == columns) return endRecord(mark + columns, place + columns, start, 1);
      if (text[end] != delimiter) return false;
    }
  }

  bool cutWithQuotes() {
    const std::uint32_t* at = mark;
    CellPlace* cell = place;
    std::size_t start = begin;
    std::uint64_t breaks = 1;
    for (std::size_t column = 1;; ++column) {
      if (at == behindMarks) return stopAtEnd();
      std::size_t end = *at;
      if (isQuote(text[end])) {
        at = closingQuote(at, start, breaks);
        if (at == nullptr) return false;
        *cell++ = {start + 1, *at - start - 1};
        end = *at++ + 1;
        if (at == behindMarks) return stopAtEnd();
        if (*at != end) return false;
      } else {
        *cell++ = {start, end - start};
      }
      ++at;
      start = end + 1;
      if (column == columns) {
        hasNoQuotes = false;
        return endRecord(at, cell, start, breaks);
      }
      if (text[end] != delimiter) return false;
    }
  }

  // Takes the record when what stands before `start` is the end of a line.
  bool endRecord(const std::uint32_t* at, CellPlace* cell, std::size_t start, std::uint64_t breaks) {
    const char last = text[start - 1];
    if (endsWithReturn) {
      if (last != '\r') return false;
      if (at == behindMarks) return stopAtEnd();
      if (*at++ != start || text[start++] != '\n') return false;
    } else if (last != '\n') {
      return false;
    }
    mark = at;
    place = cell;
    begin = start;
    lines += breaks;
    return true;
  }

  bool isQuote(char byte) const { return static_cast<unsigned char>(byte) == quote; }

  bool stopAtEnd() {
    reachedEnd = true;
    return false;
  }

  // The mark of the quote that closes the field which begins there with one; null when there is none or it is doubled.
  const std::uint32_t* closingQuote(const std::uint32_t* at, std::size_t start, std::uint64_t& breaks) {
    if (*at != start) return nullptr;
    for (++at;; ++at) {
      if (at == behindMarks) {
        reachedEnd = true;
        return nullptr;
      }
      const char byte = text[*at];
      if (isQuote(byte)) return at;
      if (byte == '\0') return nullptr;
      const bool closesPair = byte == '\n' && text[*at - 1] == '\r';
      if ((byte == '\n' || byte == '\r') && !closesPair) ++breaks;
    }
  }
};

}  // namespace workbench::data
