#include "workbench/data/working/kept_cases.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

namespace workbench::data {

KeptCases::KeptCases(std::size_t caseSlots, std::vector<CaseBlock> blocks)
    : caseSlots_(caseSlots), blocks_(std::move(blocks)) {
  for (const CaseBlock& block : blocks_) cases_ += static_cast<std::int64_t>(block.cases());
}

CaseKeeper::CaseKeeper(std::size_t caseSlots) : caseSlots_(std::max<std::size_t>(caseSlots, 1)) {}

void CaseKeeper::add(const OBS* cases, std::size_t count, std::size_t stride) {
  const std::size_t slots = std::min(caseSlots_, stride);
  cases_ += count;
  while (count != 0) {
    if (blocks_.empty() || blocks_.back().cases() == blocks_.back().capacity()) blocks_.emplace_back(caseSlots_);
    CaseBlock& block = blocks_.back();
    const std::size_t fitting = std::min(count, block.capacity() - block.cases());
    copyCases(cases, stride, block.at(block.cases()), caseSlots_, fitting, slots);
    block.setCases(block.cases() + fitting);
    cases += fitting * stride;
    count -= fitting;
  }
}

std::shared_ptr<const KeptCases> CaseKeeper::finish() {
  if (!blocks_.empty() && blocks_.back().cases() < blocks_.back().capacity()) {
    const CaseBlock& last = blocks_.back();
    CaseBlock cut(caseSlots_, last.cases());
    copyCases(last.begin(), caseSlots_, cut.begin(), caseSlots_, last.cases(), caseSlots_);
    cut.setCases(last.cases());
    blocks_.back() = std::move(cut);
  }
  return std::make_shared<const KeptCases>(caseSlots_, std::exchange(blocks_, {}));
}

void copyCases(const OBS* from, std::size_t fromStride, OBS* to, std::size_t toStride, std::size_t count,
               std::size_t slots) {
  if (fromStride == toStride && slots == toStride) {
    std::memcpy(to, from, count * slots * sizeof(OBS));
    return;
  }
  for (std::size_t index = 0; index < count; ++index, from += fromStride, to += toStride) {
    std::memcpy(to, from, slots * sizeof(OBS));
  }
}

}  // namespace workbench::data
