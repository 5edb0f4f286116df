#include "workbench/data/working/case_rows.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace workbench::data {
namespace {

// Numbers of rows are kept in 32 bits where there are many of them.
constexpr std::size_t mostRows = std::numeric_limits<std::uint32_t>::max();

}  // namespace

CaseRows::CaseRows(std::size_t caseSlots, std::size_t besideCase, std::size_t least)
    : caseSlots_(std::max<std::size_t>(caseSlots, 1)), besideCase_(besideCase), least_(least) {
  const std::size_t fitting = std::max<std::size_t>(bytesOfKeptBlock() / (caseSlots_ * sizeof(OBS)), 1);
  shift_ = static_cast<unsigned>(std::bit_width(fitting)) - 1;
  mask_ = (std::size_t{1} << shift_) - 1;
}

std::size_t CaseRows::add(const OBS* cases, std::size_t count, std::size_t stride) {
  std::size_t added = 0;
  while (added < count && size_ < mostRows) {
    if (size_ >> shift_ == blocks_.size() && !makeBlock()) break;
    CaseBlock& block = blocks_[size_ >> shift_];
    const std::size_t fitting = std::min(count - added, block.capacity() - block.cases());
    copyCases(cases + added * stride, stride, block.at(block.cases()), caseSlots_, fitting,
              std::min(caseSlots_, stride));
    block.setCases(block.cases() + fitting);
    size_ += fitting;
    added += fitting;
  }
  return added;
}

bool CaseRows::makeBlock() {
  const std::size_t bytes = bytesOf(mask_ + 1);
  if (!share_.tryTake(bytes)) {
    const bool isDueAnyway = least_ != 0 && (blocks_.empty() || share_.bytes() + bytes <= least_);
    if (!isDueAnyway) return false;
    share_.take(bytes);
  }
  blocks_.emplace_back(caseSlots_, mask_ + 1);
  return true;
}

void CaseRows::fetch(std::size_t row) const {
  constexpr std::size_t slotsPerLine = 8;
  constexpr std::size_t mostSlots = 4 * slotsPerLine;  // those behind it follow without being asked for
  const OBS* const soon = at(row);
  for (std::size_t slot = 0; slot < std::min(caseSlots_, mostSlots); slot += slotsPerLine) {
    __builtin_prefetch(soon + slot);
  }
}

void CaseRows::clear() {
  for (CaseBlock& block : blocks_) block.setCases(0);
  size_ = 0;
}

void CaseRows::settle(std::size_t besideCase) {
  const std::size_t used = (size_ + mask_) >> shift_;
  blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(used), blocks_.end());
  if (!blocks_.empty() && blocks_.back().cases() < blocks_.back().capacity()) {
    const CaseBlock& last = blocks_.back();
    CaseBlock cut(caseSlots_, last.cases());
    copyCases(last.begin(), caseSlots_, cut.begin(), caseSlots_, last.cases(), caseSlots_);
    cut.setCases(last.cases());
    blocks_.back() = std::move(cut);
  }
  besideCase_ = besideCase;
  if (share_.bytes() > bytesOf(size_)) share_.giveBack(share_.bytes() - bytesOf(size_));
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
