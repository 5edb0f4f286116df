#include "workbench/data/working/kept_blocks.h"

#include "workbench/data/working/prefetched_blocks.h"

namespace workbench::data {

CaseSpan SharedBlocks::next() {
  const std::vector<CaseBlock>& blocks = *kept_->blocks();
  while (nextBlock_ < blocks.size()) {
    const CaseBlock& block = blocks[nextBlock_++];
    // An iterator publishes addresses that could be written to; whoever asked for shared blocks has promised not to.
    if (block.cases() != 0) return {const_cast<OBS*>(block.begin()), block.cases(), block.caseSlots()};
  }
  return {};
}

CaseSpan CopiedBlocks::next() {
  reader_.fill(copies_);
  return {copies_.begin(), copies_.cases(), copies_.caseSlots()};
}

std::unique_ptr<BlockSupply> supplyKept(std::shared_ptr<const KeptCases> kept, std::size_t stride, CaseUse use,
                                        const std::string& nameOfData) {
  const bool isReady = kept->blocks() != nullptr;
  if (isReady && use == CaseUse::onlyRead && stride == kept->caseSlots()) {
    return std::make_unique<SharedBlocks>(std::move(kept));
  }
  if (isReady) return std::make_unique<CopiedBlocks>(std::move(kept), stride);
  return std::make_unique<PrefetchedBlocks>(std::make_unique<KeptCaseReader>(std::move(kept)), stride, nameOfData);
}

}  // namespace workbench::data
