// CaseRows: cases in memory that are found by their number, as many as the memory limit allows.
#pragma once

#include <cstddef>
#include <vector>

#include "workbench/data/case_block.h"
#include "workbench/data/working/memory_limit.h"

namespace workbench::data {

inline constexpr std::size_t casesFetchedAhead = 16;

class CaseRows {
 public:
  // `besideCase`: bytes that are taken for every case beside its own. `least`: bytes that may be taken whatever the
  // limit.
  explicit CaseRows(std::size_t caseSlots, std::size_t besideCase = 0, std::size_t least = 0);

  // Copies cases that lie `stride` slots apart, as many as there is room for, and gives their number. The first
  // caseSlots() slots of each are copied.
  std::size_t add(const OBS* cases, std::size_t count, std::size_t stride);
  // Forgets the cases and keeps the memory for others.
  void clear();
  // Gives back what is not used when nothing is added any more, and takes so much beside every case from now on.
  void settle(std::size_t besideCase);

  std::size_t caseSlots() const { return caseSlots_; }  // at least 1
  std::size_t size() const { return size_; }
  const OBS* at(std::size_t row) const { return blocks_[row >> shift_].at(row & mask_); }
  // Has the processor fetch a case that will be looked at soon: cases that follow one another in an order may lie
  // anywhere.
  void fetch(std::size_t row) const;
  std::size_t casesPerBlock() const { return mask_ + 1; }
  // Every block but the last one in use is full.
  const std::vector<CaseBlock>& blocks() const { return blocks_; }

 private:
  bool makeBlock();
  std::size_t bytesOf(std::size_t cases) const { return cases * (caseSlots_ * sizeof(OBS) + besideCase_); }

  std::size_t caseSlots_;
  std::size_t besideCase_;
  std::size_t least_;
  unsigned shift_ = 0;  // a block holds two to the power of this
  std::size_t mask_ = 0;
  std::size_t size_ = 0;
  std::vector<CaseBlock> blocks_;
  MemoryShare share_;
};

// Copies cases that lie at different distances. Of each case the first `slots` slots are copied.
void copyCases(const OBS* from, std::size_t fromStride, OBS* to, std::size_t toStride, std::size_t count,
               std::size_t slots);

}  // namespace workbench::data
