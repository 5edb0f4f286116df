// CaseSorter: sorts cases that are handed to it, however many they are.
//
// It gathers them in memory as far as the limit allows. Whenever that is used up, what was gathered is sorted and
// spilled as a run; the runs are merged when the sorted cases are read. The sort is stable.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "workbench/data/working/case_rows.h"
#include "workbench/data/working/case_run.h"
#include "workbench/data/working/kept_cases.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

class CaseSorter {
 public:
  // Requires: a key at least. The collation in force, if one orders a key, does not change before finish().
  CaseSorter(std::size_t caseSlots, std::vector<SortKey> keys);

  // Copies `count` cases that lie `stride` slots apart. Throws ErrorText when they have to be spilled and cannot be.
  void add(const OBS* cases, std::size_t count, std::size_t stride);
  // The cases in order. Nothing may be added afterwards. Throws ErrorText likewise.
  std::shared_ptr<const KeptCases> finish();

 private:
  // A run, and how many times its cases were merged.
  struct SpilledRun {
    CaseRun run;
    int merges;
  };

  void spillRows();
  void mergeLast(std::size_t count);

  std::vector<SortKey> keys_;
  CaseRows rows_;
  std::vector<SpilledRun> spilled_;  // in the order in which their cases came
};

}  // namespace workbench::data
