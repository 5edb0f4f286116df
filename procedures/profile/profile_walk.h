// The walk: reads both datasets once, side by side, and gathers what the tables show.
#pragma once

#include <cstdint>
#include <vector>

#include "procedures/profile/change_counts.h"
#include "procedures/profile/difference_statistics.h"
#include "procedures/profile/paired_cases.h"
#include "procedures/profile/variable_pairs.h"

namespace profile {

// What is known of one variable. Every pair of cases counts as one comparison of values.
struct VariableProfile {
  VariablePair variables;
  std::uint64_t different = 0;
  DifferenceStatistics differences;  // of a variable that has differences
  ChangeCounts changes;
};

struct Profile {
  std::vector<VariableProfile> variables;
  std::uint64_t pairs = 0;
  std::uint64_t differentPairs = 0;  // in at least one of the variables
  std::uint64_t onlyInActive = 0;
  std::uint64_t onlyInComparison = 0;
};

// False when a dataset is out of order or cannot be read; it has been reported.
bool walkCases(PairedCases& cases, Profile& profile);

}  // namespace profile
