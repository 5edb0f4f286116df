// RowPresence: which of some rows have a value, a bit per row, as DuckDB says it.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace workbench::data {

struct RowPresence {
  const std::uint64_t* bits = nullptr;  // null: all have one

  bool has(std::size_t row) const { return bits == nullptr || (bits[row / 64] >> (row % 64) & 1) != 0; }
  // Calls visit(first, count, areThere) for each stretch of rows that all have a value or all have none, in their
  // order.
  template <class Visit>
  void eachStretch(std::size_t firstRow, std::size_t rows, Visit visit) const {
    const std::size_t end = firstRow + rows;
    for (std::size_t row = firstRow; row < end;) {
      const bool areThere = has(row);
      const std::size_t stretchEnd = bits == nullptr ? end : std::min(end, endOfStretch(row, end, areThere));
      visit(row, stretchEnd - row, areThere);
      row = stretchEnd;
    }
  }

 private:
  // The next row that is not as this one, or one behind the last.
  std::size_t endOfStretch(std::size_t row, std::size_t end, bool areThere) const {
    while (row < end) {
      const std::uint64_t word = areThere ? ~bits[row / 64] : bits[row / 64];
      const std::uint64_t others = word >> (row % 64);
      if (others != 0) return row + static_cast<std::size_t>(std::countr_zero(others));
      row = (row / 64 + 1) * 64;
    }
    return end;
  }
};

}  // namespace workbench::data
