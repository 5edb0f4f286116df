// Two CSV files of the same cases with known differences.
//
//   a.csv, b.csv   a header and one line per case: the ID (unless there is no key), numbers n1, n2, ..., strings s1,
//   ...
//
// Some of each file's cases have no partner, some of the pairs differ in one or two variables, and some cells are empty
// on both sides. All these numbers are exact, so every answer to "what differs" can be held against the truth.
#pragma once

#include <nlohmann/json.hpp>

#include "bench/generator/plan.h"

namespace bench {

// Writes the files into the plan's folder. Gives the truth about them: pairs, differingPairs, onlyInFirst,
// onlyInSecond, and mismatches: in how many pairs each variable beside the ID differs. Throws std::runtime_error.
nlohmann::ordered_json writeDatasetPair(const Plan& plan);

}  // namespace bench
