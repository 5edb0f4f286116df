// The ways in which kept cases are supplied: as they lie, or as private copies with room behind every case.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "workbench/data/working/block_supply.h"
#include "workbench/data/working/kept_cases.h"

namespace workbench::data {

// Publishes the kept blocks themselves. Requires: nobody writes to what it supplies; the cases have blocks.
class SharedBlocks final : public BlockSupply {
 public:
  explicit SharedBlocks(std::shared_ptr<const KeptCases> kept) : kept_(std::move(kept)) {}
  CaseSpan next() override;

 private:
  std::shared_ptr<const KeptCases> kept_;
  std::size_t nextBlock_ = 0;
};

// Publishes copies in one block of its own, whose cases lie `stride` slots apart. What stands behind the kept slots of
// a case is left as it is.
class CopiedBlocks final : public BlockSupply {
 public:
  CopiedBlocks(std::shared_ptr<const KeptCases> kept, std::size_t stride) : reader_(std::move(kept)), copies_(stride) {}
  CaseSpan next() override;

 private:
  KeptCaseReader reader_;
  CaseBlock copies_;
};

// All kept cases. What does not lie ready in blocks is made ready on a thread of the host, ahead of whoever takes it.
// The name of the data is for what may have to be said of them.
std::unique_ptr<BlockSupply> supplyKept(std::shared_ptr<const KeptCases> kept, std::size_t stride, CaseUse use,
                                        const std::string& nameOfData);

}  // namespace workbench::data
