// The tables about cases, as they are to be: the three summaries and the Case By Case Comparison.
#pragma once

#include <string>

#include "tests/model/naive_walk.h"
#include "tests/model/options.h"
#include "tests/model/world.h"

namespace workbench::tests::model {

// Shown where cells have two values: which dataset is (1) and which is (2).
inline const std::string sidesCaption = "(1) is the Active Datset an...";

// Each as a text; filled, or left as it was opened.
std::string matchedSummary(const WalkedCases& walked, bool isFilled);
std::string mismatchedByCases(const WalkedCases& walked, bool isFilled);
std::string mismatchedByVariables(const World& world, const std::vector<ComparedVariable>& variables,
                                  const WalkedCases& walked, bool isFilled);
std::string caseByCase(const World& world, const Options& options, const std::vector<CaseIdPlace>& ids,
                       const std::vector<ComparedVariable>& variables, const WalkedCases& walked);

}  // namespace workbench::tests::model
