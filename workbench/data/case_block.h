// CaseBlock: a run of consecutive cases, row by row, in one piece of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/data.h"

namespace workbench::data {

inline constexpr std::size_t blockBytes = std::size_t{1} << 20;

class CaseBlock {
 public:
  // Room for as many cases of that many slots as fit into blockBytes, and for one at least; or for exactly
  // `mostCases`, when that is not 0 and fewer.
  explicit CaseBlock(std::size_t caseSlots, std::size_t mostCases = 0);

  OBS* begin() { return slots_.get(); }
  const OBS* begin() const { return slots_.get(); }
  OBS* at(std::size_t index) { return slots_.get() + index * caseSlots_; }
  const OBS* at(std::size_t index) const { return slots_.get() + index * caseSlots_; }

  std::size_t caseSlots() const { return caseSlots_; }  // the distance from case to case; at least 1
  std::size_t capacity() const { return capacity_; }    // in cases
  std::size_t cases() const { return cases_; }
  void setCases(std::size_t cases) { cases_ = cases; }

 private:
  std::unique_ptr<OBS[]> slots_;  // not initialised
  std::size_t caseSlots_;
  std::size_t capacity_;
  std::size_t cases_ = 0;
};

}  // namespace workbench::data
