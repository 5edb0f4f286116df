#include "procedures/profile/profile_walk.h"

#include <string_view>

#include "procedures/profile/messages.h"
#include "procedures/profile/value_equality.h"

namespace profile {

namespace {

using Step = PairedCases::Step;

bool refuseOrder(const char* key, std::uint64_t row) {
  BpComposite text(key, true);
  text.Add(BpNumber(static_cast<double>(row), BpProcedure::Count()));
  text.Finish();
  refuse(text);
  return false;
}

// True when the values differ.
bool takeTexts(VariableProfile& profile, const OBS* active, const OBS* comparison) {
  const std::string_view from(active->text, profile.variables.width[activeSide]);
  const std::string_view to(comparison->text, profile.variables.width[comparisonSide]);
  if (textsEqual(from, to)) return false;
  profile.changes.add(from, to);
  return true;
}

bool takeNumbers(VariableProfile& profile, double active, double comparison, const PairedCases& cases) {
  const VariablePair& variables = profile.variables;
  const bool isEqual = numbersEqual(active, comparison, variables.nearCounts);
  if (!isEqual) profile.changes.add(active, comparison);
  if (variables.unit == DifferenceUnit::none) return !isEqual;

  const bool isMissing = variables.missing[activeSide].has(active);
  const bool isOtherMissing = variables.missing[comparisonSide].has(comparison);
  if (isMissing || isOtherMissing) {
    profile.differences.addMissing(isMissing, isOtherMissing);
  } else if (isEqual) {
    profile.differences.addEqual();
  } else {
    profile.differences.addDifference(active, comparison, cases);
  }
  return !isEqual;
}

void takePair(const PairedCases& cases, Profile& profile) {
  ++profile.pairs;
  bool isDifferent = false;
  for (VariableProfile& variable : profile.variables) {
    const OBS* active = cases.cases(activeSide).GetObsPointer(variable.variables.index[activeSide]);
    const OBS* comparison = cases.cases(comparisonSide).GetObsPointer(variable.variables.index[comparisonSide]);
    const bool differs = variable.variables.isText ? takeTexts(variable, active, comparison)
                                                   : takeNumbers(variable, active->number, comparison->number, cases);
    if (!differs) continue;
    ++variable.different;
    isDifferent = true;
  }
  if (isDifferent) ++profile.differentPairs;
}

}  // namespace

bool walkCases(PairedCases& cases, Profile& profile) {
  if (!cases.canRead()) {
    refuse("The cases of the two datasets cannot be read.");
    return false;
  }
  while (true) {
    switch (cases.next()) {
      case Step::pair:
        takePair(cases, profile);
        break;
      case Step::activeOnly:
        ++profile.onlyInActive;
        break;
      case Step::comparisonOnly:
        ++profile.onlyInComparison;
        break;
      case Step::activeOutOfOrder:
        return refuseOrder(
            "The active dataset is not in ascending order of the case IDs: row ^1 belongs before the "
            "row above it. Sort it first.",
            cases.row(activeSide));
      case Step::comparisonOutOfOrder:
        return refuseOrder(
            "The comparison dataset is not in ascending order of the case IDs: row ^1 belongs before "
            "the row above it. Sort it first.",
            cases.row(comparisonSide));
      case Step::ended:
        return true;
    }
  }
}

}  // namespace profile
