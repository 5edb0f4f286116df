// BlockSupply: the cases of a dataset, block by block, wherever they come from.
#pragma once

#include <cstddef>

#include "host/data.h"

namespace workbench::data {

// What is done with the cases that are read.
enum class CaseUse { onlyRead, mayBeWritten };

// Consecutive cases that lie caseSlots slots apart. None: there are no more.
struct CaseSpan {
  OBS* cases = nullptr;
  std::size_t count = 0;
  std::size_t caseSlots = 1;

  explicit operator bool() const { return count != 0; }
};

class BlockSupply {
 public:
  virtual ~BlockSupply() = default;

  // The next cases, valid until the next call. Throws ErrorText when they cannot be read.
  virtual CaseSpan next() = 0;
};

}  // namespace workbench::data
