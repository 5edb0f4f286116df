// DifferenceStatistics: what is known of the differences of one numeric variable, comparison minus active.
//
// Only pairs in which both values are valid have a difference. Values that count as equal have none, whatever their
// last digits: they go into the means as 0.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "procedures/profile/exact_sum.h"
#include "procedures/profile/paired_cases.h"

namespace profile {

struct DifferenceStatistics {
  std::uint64_t pairs = 0;      // both values are valid
  std::uint64_t different = 0;  // of these, those that differ
  std::uint64_t missingInActive = 0;
  std::uint64_t missingInComparison = 0;
  std::uint64_t missingInBoth = 0;

  DifferenceSum sum;
  DifferenceSum absoluteSum;
  double largest = 0;            // the first of those with the greatest magnitude; infinite beyond all doubles
  std::uint64_t largestRow = 0;  // the active row where it stands
  std::vector<CaseIdValue> largestCaseIds;  // the case IDs there

  void addMissing(bool inActive, bool inComparison) {
    ++(inActive && inComparison ? missingInBoth : (inActive ? missingInActive : missingInComparison));
  }
  // Two valid values that differ in a pair of cases.
  void addDifference(double active, double comparison, const PairedCases& cases) {
    ++pairs;
    ++different;
    sum.add(active, comparison, 1);
    absoluteSum.add(active, comparison, comparison < active ? -1 : 1);
    const double difference = comparison - active;
    if (different > 1 && std::fabs(difference) <= std::fabs(largest)) return;
    largest = difference;
    largestRow = cases.row(activeSide);
    largestCaseIds = cases.idValues();
  }
  void addEqual() { ++pairs; }

  // Over all pairs. Requires: pairs > 0.
  double mean() const { return sum.mean(pairs); }
  double meanAbsolute() const { return absoluteSum.mean(pairs); }
};

}  // namespace profile
