// The comparer as it is made, and the counters that the walk leaves in it.
#include "engine/dataset_comparer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>

#include "tests/engine/engine_run.h"

namespace workbench::tests {
namespace {

using compdatas::DatasetComparer;
using compdatas::DictionaryState;

// "compared steps tail | active read matched mismatched | comparison ..."
std::string counters(const DatasetComparer& comparer) {
  std::string all = std::to_string(comparer.casesCompared) + ' ' + std::to_string(comparer.caseSteps) + ' ' +
                    std::to_string(comparer.unpairedTail);
  for (const compdatas::CaseReader& reader : comparer.readers) {
    all += " | " + std::to_string(reader.casesRead) + ' ' + std::to_string(reader.matchedCases) + ' ' +
           std::to_string(reader.mismatchedCases);
  }
  return all;
}

DatasetBuilder cases(const std::vector<double>& ids, const std::vector<double>& values) {
  return dataset().numeric("id", ids).numeric("x", values);
}

TEST(DatasetComparerObject, StartsWithNothingComparedAndNothingSelected) {
  EngineRun run(cases({1}, {1}), cases({1}, {1}));
  const DatasetComparer& comparer = run.comparer();
  EXPECT_EQ(counters(comparer), "0 0 0 | 0 0 0 | 0 0 0");
  EXPECT_EQ(comparer.dictionaryState, DictionaryState::differences);
  EXPECT_TRUE(comparer.initialized);
  EXPECT_FALSE(comparer.casesAllMatch);
  EXPECT_TRUE(std::none_of(comparer.propertyOn.begin(), comparer.propertyOn.end(), [](bool on) { return on; }));
  EXPECT_EQ(comparer.readers[0].lastPosition, -3);
  EXPECT_EQ(comparer.readers[1].lastPosition, -3);
  EXPECT_TRUE(comparer.variablePairs.empty());
  EXPECT_TRUE(comparer.caseIdKeys.empty());
  EXPECT_TRUE(comparer.attributeNameSet.empty());
  EXPECT_TRUE(comparer.attributeNames.empty());
}

TEST(DatasetComparerObject, LooksTheFlagVariableUpByItsName) {
  EngineRun named(cases({1}, {1}), cases({1}, {1}));
  named.flagName = "X";
  EXPECT_EQ(named.comparer().flagVarIndex, 1);
  EXPECT_EQ(named.comparer().flagVarName, "X");
  EngineRun unnamed(cases({1}, {1}), cases({1}, {1}));
  EXPECT_EQ(unnamed.comparer().flagVarIndex, -1);
  EngineRun unknown(cases({1}, {1}), cases({1}, {1}));
  unknown.flagName = "nobody";
  EXPECT_EQ(unknown.comparer().flagVarIndex, -1);
}

TEST(DatasetComparerObject, RefersToWhatItIsGivenAndKeepsTheFlagVariablesNameItself) {
  EngineRun run(cases({1}, {1}), cases({1}, {1}));
  const UserCaseFileSpec matched;
  const UserCaseFileSpec mismatched;
  std::string name = "x";
  const DatasetComparer comparer(run.options, run.procedure(), run.activeSource(), &run.compareSource(), name, matched,
                                 mismatched);
  name = "changed";
  EXPECT_EQ(comparer.flagVarName, "x");
  static_assert(std::is_same_v<decltype(comparer.options), const compdatas::CompareOptions&>, "which are only read");
  EXPECT_EQ(&comparer.options, &run.options);
  EXPECT_EQ(&comparer.procedure, &run.procedure());
  EXPECT_EQ(&comparer.activeSource, &run.activeSource());
  EXPECT_EQ(comparer.compareSource, &run.compareSource());
  EXPECT_EQ(&comparer.matchedSpec, &matched);
  EXPECT_EQ(&comparer.mismatchedSpec, &mismatched);
}

TEST(WalkCounters, StartAtZeroWithEveryWalk) {
  EngineRun run(cases({1, 2, 3}, {1, 1, 1}), cases({1, 2}, {1, 2}));
  DatasetComparer& comparer = run.compare({"x"}).comparer();
  comparer.casesCompared = comparer.caseSteps = comparer.unpairedTail = 50;
  comparer.casesAllMatch = true;
  for (compdatas::CaseReader& reader : comparer.readers) {
    reader.casesRead = reader.matchedCases = reader.mismatchedCases = 50;
  }
  ASSERT_TRUE(run.walk());
  EXPECT_EQ(counters(comparer), "2 3 1 | 3 1 1 | 2 1 1");
  EXPECT_FALSE(comparer.casesAllMatch);
}

TEST(WalkCounters, CountAStepForEveryPairAndEveryCaseWithoutPartner) {
  EngineRun run(cases({1, 2, 4, 6, 7}, {1, 1, 1, 1, 1}), cases({1, 3, 4, 5}, {1, 1, 2, 1}));
  ASSERT_TRUE(run.compare({"x"}).pairBy({"id"}).walk());
  // Pairs 1 and 4; 2, 3 and 5 inside the walk; 6 and 7 left over.
  EXPECT_EQ(counters(run.comparer()), "2 7 2 | 5 1 1 | 4 1 1");
  EXPECT_FALSE(run.comparer().casesAllMatch);
}

TEST(WalkCounters, CountOnlyCasesBehindTheOtherDatasetsEndAsLeftOver) {
  EngineRun run(cases({1, 2, 9}, {1, 1, 1}), cases({1, 3, 4, 9}, {1, 1, 1, 1}));
  ASSERT_TRUE(run.compare({"x"}).pairBy({"id"}).walk());
  EXPECT_EQ(counters(run.comparer()), "2 5 0 | 3 2 0 | 4 2 0");
  EXPECT_TRUE(run.comparer().casesAllMatch);
}

TEST(WalkCounters, CountTheComparisonDatasetsLeftoversToo) {
  EngineRun run(cases({1}, {1}), cases({1, 3, 4, 9}, {1, 1, 1, 1}));
  ASSERT_TRUE(run.compare({"x"}).pairBy({"id"}).walk());
  EXPECT_EQ(counters(run.comparer()), "1 4 3 | 1 1 0 | 4 1 0");
  EXPECT_FALSE(run.comparer().casesAllMatch);
}

TEST(WalkCounters, DoNotMatchWhenAPairDiffersAlthoughNothingIsLeftOver) {
  EngineRun run(cases({1, 2}, {1, 1}), cases({1, 2}, {1, 2}));
  ASSERT_TRUE(run.compare({"x"}).walk());
  EXPECT_EQ(counters(run.comparer()), "2 2 0 | 2 1 1 | 2 1 1");
  EXPECT_FALSE(run.comparer().casesAllMatch);
}

TEST(WalkCounters, KeepTheValuesReachedWhenADatasetIsOutOfOrder) {
  EngineRun run(cases({1, 2, 5, 4}, {1, 1, 1, 1}), cases({1, 2, 5, 6}, {1, 2, 1, 1}));
  EXPECT_FALSE(run.compare({"x"}).pairBy({"id"}).walk());
  EXPECT_EQ(run.messages().substr(run.messages().find("2/3")), "2/3 The active dataset is not sort...\n");
  // The case out of order has been read, and the comparison case that goes with it.
  EXPECT_EQ(counters(run.comparer()), "3 3 0 | 4 2 1 | 4 2 1");
  EXPECT_EQ(run.comparer().variablePairs[1].mismatchCount, 1U);
  EXPECT_FALSE(run.comparer().casesAllMatch);
}

TEST(WalkCounters, HoldNoIteratorAfterTheWalk) {
  EngineRun run(cases({1}, {1}), cases({1}, {1}));
  ASSERT_TRUE(run.compare({"x"}).walk());
  EXPECT_EQ(run.comparer().readers[0].iterator, nullptr);
  EXPECT_EQ(run.comparer().readers[1].iterator, nullptr);
}

TEST(WalkCounters, AreUntouchedWithoutAComparisonSource) {
  EngineRun run(cases({1}, {1}), cases({1}, {1}));
  run.withoutComparison = true;
  EXPECT_FALSE(run.compare({"x"}).walk());
  EXPECT_EQ(counters(run.comparer()), "0 0 0 | 0 0 0 | 0 0 0");
}

}  // namespace
}  // namespace workbench::tests
