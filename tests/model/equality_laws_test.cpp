// Laws about equality: a dataset and itself, two datasets and the same two exchanged.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/model/law_samples.h"
#include "tests/model/messages.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"
#include "tests/model/run_facts.h"

namespace workbench::tests::model::equality_laws_test {

constexpr int usualPairs = 1000;

// Premises: every missing-value code is one that is known (a code such as -1 is different even from itself); the cases
// are in the order of the case IDs, of which there are two at most (behind a blank text between two others the third
// would be held against the case before); there is no filter, as one would be applied to one side only.
Sample aDatasetAndItself() {
  Dataset dataset = lawDataset();
  for (Variable& variable : dataset.variables) {
    if (variable.missing.code == -1 || variable.missing.code < -3 || variable.missing.code > 3)
      variable.missing.code = 0;
  }
  Sample sample{worldOf(dataset, dataset), {}};
  const std::vector<std::string> ids = anyIds(sample.world, 2);
  sortByIds(sample.world, ids);
  sample.command = comparingAll(ids);
  return sample;
}

TEST(Law, ADatasetEqualsItself) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aDatasetAndItself);
    const ObservedRun observed(sample.world, sample.command);
    const RunFacts facts = factsOf(observed);
    const std::size_t cases = sample.world.active.cases.size();
    RC_ASSERT(facts.outcome == "completed");
    RC_ASSERT(facts.messages == (std::vector<std::string>{messageLine(4, 1, say::allAttributesMatch),
                                                          messageLine(4, 1, say::allValuesMatch)}));
    RC_ASSERT(facts.flagged(0) == cases);
    RC_ASSERT(facts.pairs == cases);
    RC_ASSERT(facts.activeRead == cases);
    RC_ASSERT(facts.comparedRead == cases);
    RC_ASSERT(observed.run().table("CD_DictCompTableName") == nullptr);
    RC_ASSERT(observed.run().table("CD_MismatchedByVarsTableName") == nullptr);
    RC_ASSERT(observed.run().table("CD_CaseByCaseComparisonTableName") == nullptr);
  });
}

// Premises: the same variables with equal widths and types of format on both sides (case IDs are cut to the active
// width, and the active format says which numbers may be near); both in the order of the case IDs, two at most; no
// filter; no -0.0 among the case IDs (of the two zeros the comparison dataset's counts as the lower one, whichever
// it is).
Sample aPairThatCanBeExchanged() {
  const Dataset active = lawDataset();
  Dataset compared = likenessOf(active, Variables::same);
  for (Variable& variable : compared.variables) {
    if (oneIn(3)) variable = withOtherProperty(variable);
  }
  Sample sample{worldOf(active, compared), {}};
  const std::vector<std::string> ids = anyIds(sample.world, 2);
  withoutMinusZero(sample.world.active, ids);
  withoutMinusZero(sample.world.compared, ids);
  sortByIds(sample.world, ids);
  sample.command = comparingAll(ids);
  return sample;
}

TEST(Law, ExchangingTheSidesMirrorsTheCounts) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aPairThatCanBeExchanged);
    const ObservedRun observed(sample.world, sample.command);
    const ObservedRun mirrored(worldOf(sample.world.compared, sample.world.active), sample.command);
    const RunFacts one = factsOf(observed);
    const RunFacts other = factsOf(mirrored);
    RC_ASSERT(one.outcome == "completed");
    RC_ASSERT(other.outcome == "completed");
    RC_ASSERT(one.activeRead == other.comparedRead);
    RC_ASSERT(one.comparedRead == other.activeRead);
    RC_ASSERT(one.pairs == other.pairs);
    RC_ASSERT(one.mismatched == other.mismatched);
    RC_ASSERT(one.byVariable == other.byVariable);
    RC_ASSERT(one.flagged(0) == other.flagged(0));
    RC_ASSERT(one.flagged(1) == other.flagged(1));
    RC_ASSERT(one.flagged(-1) == other.comparedRead - other.pairs);
    RC_ASSERT(other.flagged(-1) == one.comparedRead - one.pairs);
    RC_ASSERT(one.messages == other.messages);
    RC_ASSERT(differingProperties(observed) == differingProperties(mirrored));
    RC_TAG(one.mismatched > 0 ? "values differ" : one.pairs == one.activeRead ? "nothing differs" : "partners missing");
  });
}

}  // namespace workbench::tests::model::equality_laws_test
