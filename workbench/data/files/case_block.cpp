#include "workbench/data/case_block.h"

#include <algorithm>

namespace workbench::data {

CaseBlock::CaseBlock(std::size_t caseSlots, std::size_t mostCases) : caseSlots_(std::max<std::size_t>(caseSlots, 1)) {
  capacity_ = std::max<std::size_t>(blockBytes / sizeof(OBS) / caseSlots_, 1);
  if (mostCases != 0) capacity_ = std::min(capacity_, mostCases);
  slots_ = std::make_unique_for_overwrite<OBS[]>(capacity_ * caseSlots_);
}

}  // namespace workbench::data
