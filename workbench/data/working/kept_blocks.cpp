#include "workbench/data/working/kept_blocks.h"

#include <algorithm>

namespace workbench::data {

CaseSpan SharedBlocks::next() {
  while (nextBlock_ < kept_->blocks().size()) {
    const CaseBlock& block = kept_->blocks()[nextBlock_++];
    // An iterator publishes addresses that could be written to; whoever asked for shared blocks has promised not to.
    if (block.cases() != 0) return {const_cast<OBS*>(block.begin()), block.cases(), block.caseSlots()};
  }
  return {};
}

CaseSpan CopiedBlocks::next() {
  const std::size_t stride = copies_.caseSlots();
  std::size_t copied = 0;
  while (copied < copies_.capacity() && nextBlock_ < kept_->blocks().size()) {
    const CaseBlock& block = kept_->blocks()[nextBlock_];
    const std::size_t count = std::min(copies_.capacity() - copied, block.cases() - nextCase_);
    copyCases(block.at(nextCase_), block.caseSlots(), copies_.at(copied), stride, count,
              std::min(block.caseSlots(), stride));
    copied += count;
    nextCase_ += count;
    if (nextCase_ == block.cases()) {
      ++nextBlock_;
      nextCase_ = 0;
    }
  }
  return {copies_.begin(), copied, stride};
}

}  // namespace workbench::data
