// KeptCases: cases kept in memory, row by row, in blocks that nobody changes any more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "workbench/data/case_block.h"

namespace workbench::data {

class KeptCases {
 public:
  // Requires: all blocks have cases of that many slots.
  KeptCases(std::size_t caseSlots, std::vector<CaseBlock> blocks);

  std::size_t caseSlots() const { return caseSlots_; }
  std::int64_t cases() const { return cases_; }
  const std::vector<CaseBlock>& blocks() const { return blocks_; }

 private:
  std::size_t caseSlots_;
  std::vector<CaseBlock> blocks_;
  std::int64_t cases_ = 0;
};

// Gathers cases one by one or in runs. A block is as large as CaseBlock makes it; the last is cut to what it holds.
class CaseKeeper {
 public:
  explicit CaseKeeper(std::size_t caseSlots);

  // `count` cases that lie `stride` slots apart; the first caseSlots slots of each are copied.
  void add(const OBS* cases, std::size_t count, std::size_t stride);
  // Bytes kept so far.
  std::size_t bytes() const { return cases_ * caseSlots_ * sizeof(OBS); }
  // What was gathered. Nothing may be added afterwards.
  std::shared_ptr<const KeptCases> finish();

 private:
  std::size_t caseSlots_;
  std::size_t cases_ = 0;
  std::vector<CaseBlock> blocks_;
};

// Copies cases that lie at different distances. Of each case the first `slots` slots are copied.
void copyCases(const OBS* from, std::size_t fromStride, OBS* to, std::size_t toStride, std::size_t count,
               std::size_t slots);

}  // namespace workbench::data
