// The two tables named Comparison Summary, as they are to be.
#pragma once

#include <string>

#include "tests/model/naive_walk.h"
#include "tests/model/options.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

// Before the comparison: what is compared.
std::string comparisonSummary(const World& world, const Options& options);
// After it: how many cases were read.
std::string caseCounts(const WalkedCases& walked);

}  // namespace workbench::tests::model
