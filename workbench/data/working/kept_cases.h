// KeptCases: cases that are kept apart from their file, in memory as far as the limit allows, beyond it in spill files.
//
// They consist of runs, which either follow one another or are each in order and merged whenever they are read. Nobody
// changes them any more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/data/case_block.h"
#include "workbench/data/case_reader.h"
#include "workbench/data/working/case_rows.h"
#include "workbench/data/working/case_run.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

class KeptCases {
 public:
  // Runs that follow one another. Requires: all have cases of that many slots.
  KeptCases(std::size_t caseSlots, std::vector<CaseRun> runs);
  // Runs that are each in the order of the keys. Of cases with equal keys those of an earlier run come first. Requires:
  // no collation orders a key, for it may be another one when the cases are read.
  KeptCases(std::size_t caseSlots, std::vector<CaseRun> runs, std::vector<SortKey> keys);

  std::size_t caseSlots() const { return caseSlots_; }
  std::int64_t cases() const { return cases_; }
  // The blocks in which all cases lie in their order; null when they do not, or not in memory.
  const std::vector<CaseBlock>* blocks() const;

 private:
  friend class KeptCaseReader;

  std::size_t caseSlots_;
  std::vector<CaseRun> runs_;
  std::vector<SortKey> keys_;  // empty: nothing is to be merged
  std::int64_t cases_ = 0;
};

// One pass over kept cases, however they lie.
class KeptCaseReader final : public CaseReader {
 public:
  explicit KeptCaseReader(std::shared_ptr<const KeptCases> kept);
  ~KeptCaseReader() override;

  std::optional<std::int64_t> caseCount() const override { return kept_->cases(); }
  void fill(CaseBlock& block) override;

 private:
  const OBS* next();

  std::shared_ptr<const KeptCases> kept_;
  std::unique_ptr<class RunMerge> merge_;  // of runs that are merged
  std::optional<RunCursor> cursor_;        // of runs that follow one another
  std::size_t nextRun_ = 0;
};

// Gathers cases one by one or in runs of any length.
class CaseKeeper {
 public:
  explicit CaseKeeper(std::size_t caseSlots);

  // `count` cases that lie `stride` slots apart; the first caseSlots slots of each are copied. Throws ErrorText when
  // they have to be spilled and cannot be.
  void add(const OBS* cases, std::size_t count, std::size_t stride);
  // What was gathered. Nothing may be added afterwards. Throws ErrorText likewise.
  std::shared_ptr<const KeptCases> finish();

 private:
  CaseRows rows_;
  std::optional<RunWriter> spilled_;  // what comes once the memory is used up
};

}  // namespace workbench::data
