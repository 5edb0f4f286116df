// AddedColumn: the values of a variable that was added to a dataset, apart from its cases, in row order.
//
// Rows that nobody wrote are missing: the system-missing number, or blanks. Space is taken in chunks when a row of them
// is first written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/data.h"

namespace workbench::data {

class AddedColumn {
 public:
  // Of a variable of that width: 0 for a number, else a string's.
  explicit AddedColumn(std::int32_t width);

  std::size_t slots() const { return slots_; }
  // Copies the values of `count` rows into cases that lie `stride` slots apart, from the given first value on.
  void layOver(std::int64_t firstRow, OBS* first, std::size_t count, std::size_t stride) const;
  // Takes space for these rows, so that taking their values over cannot fail.
  void makeRoom(std::int64_t firstRow, std::size_t count);
  // Takes one row's value over: slots() slots. Requires: there is room for the row.
  void take(std::int64_t row, const OBS* value) noexcept;

 private:
  std::size_t slots_;
  OBS missing_;                                 // what every slot of an unwritten row holds
  std::vector<std::unique_ptr<OBS[]>> chunks_;  // null: no row of it was written
};

}  // namespace workbench::data
