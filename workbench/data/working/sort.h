// Bringing the cases of a dataset into the order of some of its variables.
//
// Cases that are known or found to be in order stay where they are: looking costs no more than decoding the variables
// that they are sorted by. Those that are not are read, sorted and kept, in memory or spilled (case_sorter.h). What is
// found of the variables on the way, as keys of the cases, the dataset remembers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/working/dataset.h"
#include "workbench/data/working/key_findings.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

enum class SortPolicy {
  always,      // the cases are read once, sorted and kept, unless they are known to be in order
  whenNeeded,  // looks first whether they are in order; for cases that probably are
};

struct SortRequest {
  std::vector<std::string> by;
  std::vector<std::size_t> cutWidths;  // per variable how many bytes of a string count; empty or 0: all it has
  SortPolicy policy = SortPolicy::always;
};

struct SortResult {
  bool reordered = false;
  // Of a dataset that was not in order: the first two neighbours that lay the wrong way round.
  std::optional<std::pair<SortedRow, SortedRow>> firstOutOfOrder;
  std::int64_t cases = 0;
};

// Ascending and stable. Fails for a variable that is not there and for data that cannot be read or kept; the dataset is
// then as it was.
Outcome<SortResult> sortCases(Dataset& dataset, const SortRequest& request);

struct SortTask {
  Dataset& dataset;
  SortRequest request;
};

// Sorts two datasets at the same time, on two threads. Either may fail without the other.
std::array<Outcome<SortResult>, 2> sortBoth(const SortTask& first, const SortTask& second);

// What is to be known of the keys of each of two datasets, found at the same time, on two threads. What a sort has
// found is told again, in rows as they lay before it; a first variable that is known to increase strictly leaves
// nothing to find; otherwise the variables are read, of a dataset that is out of order up to where it shows. Either may
// fail, as sortCases does, without the other.
std::array<Outcome<KeyFindings>, 2> checkBoth(const SortTask& first, const SortTask& second);

}  // namespace workbench::data
