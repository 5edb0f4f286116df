// RunMerge: the cases of several runs, each in the order of the keys, as one sequence in that order.
//
// Of cases with equal keys those of an earlier run come first, so that a merge of runs that were sorted stably is a
// stable sort of all of them. What it reads ahead is bytesOfMerge() at most, as long as that is a case for every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "workbench/data/working/case_run.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

class RunMerge {
 public:
  // The runs outlive the merge, and the collation does not change if one orders a key. Throws ErrorText.
  RunMerge(std::span<const CaseRun> runs, std::vector<SortKey> keys);

  // The next case, valid until the next call; null when there is none any more. Throws ErrorText.
  const OBS* next();

 private:
  struct Head {
    RunCursor cursor;
    std::uint64_t prefix = 0;  // of the case that the cursor stands on
    std::string collatedKey;   // of the same; empty without a collation
  };

  void look(Head& head) const;
  bool isBefore(std::size_t left, std::size_t right) const;
  void play(std::size_t run);

  std::vector<SortKey> keys_;
  bool isCollated_;
  bool prefixDecides_;
  std::vector<Head> heads_;  // one per run
  // A tree of comparisons over the heads: [0] is the run whose case comes next, every other place holds the loser of
  // its comparison, so that a step compares only along one branch.
  std::vector<std::size_t> losers_;
  bool hasBegun_ = false;
};

}  // namespace workbench::data
