// CaseSorter: sorts cases that are handed to it, however many they are.
//
// It gathers them in memory as far as the limit allows. Whenever that is used up, what was gathered is sorted and
// spilled as a run; the runs are merged when the sorted cases are read. The sort is stable.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "workbench/data/working/case_rows.h"
#include "workbench/data/working/case_run.h"
#include "workbench/data/working/kept_cases.h"
#include "workbench/data/working/key_findings.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

class CaseSorter {
 public:
  // Requires: a key at least. The collation in force, if one orders a key, does not change before finish(). The
  // declarations are those of the keys' missing values.
  CaseSorter(std::size_t caseSlots, std::vector<SortKey> keys, std::vector<MissingValues> declared = {});

  // Copies `count` cases that lie `stride` slots apart. Throws ErrorText when they have to be spilled and cannot be.
  void add(const OBS* cases, std::size_t count, std::size_t stride);
  // The cases in order. Nothing may be added afterwards. Throws ErrorText likewise.
  std::shared_ptr<const KeptCases> finish();
  // After finish(): the keys that are repeated, rows counted as the cases came. Nothing when cases had to be spilled:
  // no one has laid all of them side by side then.
  const std::optional<RepeatedKeys>& repeatedKeys() const { return repeated_; }

 private:
  // A run, and how many times its cases were merged.
  struct SpilledRun {
    CaseRun run;
    int merges;
  };

  std::vector<std::uint32_t> orderNotingRepeats();
  void noteRepeated(std::size_t place, std::span<const std::uint32_t> rows);
  void spillRows();
  void mergeLast(std::size_t count);

  std::vector<SortKey> keys_;
  MissingKeys missing_;
  std::optional<RepeatedKeys> repeated_;
  std::size_t placeOfLowest_ = 0;  // of the repeated keys, in the order
  CaseRows rows_;
  std::vector<SpilledRun> spilled_;  // in the order in which their cases came
};

}  // namespace workbench::data
