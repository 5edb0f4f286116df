// Bringing the cases of a dataset into the order of some of its variables.
//
// Looks first whether they are in order already: one pass, whose cases are kept up to a limit, so that an ordered
// dataset of ordinary size need not be decoded again for whatever comes next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "workbench/data/working/dataset.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

enum class SortPolicy {
  always,      // afterwards the cases are in order and kept in memory
  whenNeeded,  // cases that are in order stay where they are, or are kept as far as the limit allows
};

struct SortRequest {
  std::vector<std::string> by;
  std::vector<std::size_t> cutWidths;  // per variable how many bytes of a string count; empty or 0: all it has
  SortPolicy policy = SortPolicy::always;
  std::size_t keepBytes = std::size_t{256} << 20;  // how much is kept of a dataset that is found in order
};

// One row's place and its key values.
struct SortedRow {
  std::int64_t number = 0;                              // from 1
  std::vector<std::variant<double, std::string>> keys;  // texts as they were compared: cut, without trailing blanks
};

struct SortResult {
  bool reordered = false;
  // Of a dataset that was not in order: the first two neighbours that lay the wrong way round.
  std::optional<std::pair<SortedRow, SortedRow>> firstOutOfOrder;
  std::int64_t cases = 0;
};

// Ascending and stable. Fails for a variable that is not there and for data that cannot be read or kept.
Outcome<SortResult> sortCases(Dataset& dataset, const SortRequest& request);

}  // namespace workbench::data
