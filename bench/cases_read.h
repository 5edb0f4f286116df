// One pass over all cases of a data file, in blocks, as the host reads them.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>

#include "workbench/data/data_file.h"

namespace bench {

// Gives how many they are.
inline std::int64_t casesRead(const workbench::data::DataFile& file) {
  const std::unique_ptr<workbench::data::CaseReader> reader = file.openReader();
  workbench::data::CaseBlock block(workbench::data::CaseLayout(file.dictionary()).caseSlots);
  std::int64_t cases = 0;
  do {
    reader->fill(block);
    benchmark::DoNotOptimize(block.begin());
    cases += static_cast<std::int64_t>(block.cases());
  } while (block.cases() != 0);
  return cases;
}

}  // namespace bench
