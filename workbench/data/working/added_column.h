// AddedColumn: the values of a variable that was added to a dataset, apart from its cases, in row order.
//
// Rows that nobody wrote are missing: the system-missing number, or blanks. Space is taken in chunks when a row of them
// is first written. Chunks for which the memory limit leaves no room lie in a spill file; of these only those that are
// being written are in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "host/data.h"
#include "workbench/data/working/memory_limit.h"
#include "workbench/data/working/spill_file.h"

namespace workbench::data {

class AddedColumn {
  struct Chunk {
    std::unique_ptr<OBS[]> values;  // null: they are in the spill file
    bool isToBeSpilled = false;     // there is no lasting room for it in memory
  };

 public:
  // Consecutive rows that are being written. Their space is there as long as it lives, so that taking their values over
  // cannot fail.
  class Room {
   public:
    Room() = default;  // for no row
    // Takes one row's value over: slots() slots. Requires: the row is one of these.
    void take(std::int64_t row, const OBS* value) noexcept;

   private:
    friend class AddedColumn;
    std::size_t slots_ = 0;
    unsigned shift_ = 0;
    std::size_t firstChunk_ = 0;
    std::vector<std::shared_ptr<Chunk>> chunks_;
  };

  // Of a variable of that width: 0 for a number, else a string's.
  explicit AddedColumn(std::int32_t width);

  std::size_t slots() const { return slots_; }
  // Copies the values of `count` rows into cases that lie `stride` slots apart, from the given first value on. Throws
  // ErrorText when spilled ones cannot be read.
  void layOver(std::int64_t firstRow, OBS* first, std::size_t count, std::size_t stride) const;
  // Throws ErrorText when chunks have to be spilled or read back and cannot be.
  Room makeRoom(std::int64_t firstRow, std::size_t count);

 private:
  std::size_t rowsPerChunk() const { return std::size_t{1} << shift_; }
  std::size_t chunkBytes() const { return rowsPerChunk() * slots_ * sizeof(OBS); }
  void fetch(std::size_t chunk);
  void spillUnused();

  std::size_t slots_;
  unsigned shift_;                              // a chunk holds two to the power of this rows
  OBS missing_;                                 // what every slot of an unwritten row holds
  std::vector<std::shared_ptr<Chunk>> chunks_;  // null: no row of it was written
  std::vector<std::size_t> fetched_;            // chunks to be spilled that are in memory for now
  MemoryShare share_;
  std::optional<SpillFile> file_;  // a chunk's place in it is that in the column
};

}  // namespace workbench::data
