// What tests of sorting and of keys ask for.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "workbench/data/working/sort.h"

namespace workbench::data::testing {

inline SortRequest by(std::vector<std::string> names, SortPolicy policy = SortPolicy::whenNeeded) {
  SortRequest request;
  request.by = std::move(names);
  request.policy = policy;
  return request;
}

inline SortRequest alwaysBy(std::vector<std::string> names) { return by(std::move(names), SortPolicy::always); }

// Of one dataset.
inline Outcome<KeyFindings> keysOf(Dataset& dataset, const SortRequest& request) {
  return checkBoth({dataset, request}, {dataset, request}).front();
}

}  // namespace workbench::data::testing
