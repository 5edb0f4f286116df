// The summary tables over counters that are set by hand: what no small dataset leads to.
#include "tables/summary_tables.h"

#include <gtest/gtest.h>

#include "tests/engine/engine_run.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests {
namespace {

// The cells of the three tables, one table after the other; "withdrawn" for one that was taken out.
std::vector<std::string> written(EngineRun& run) {
  const auto open = [&](const char* key) {
    return run.procedure().PivotTable(BpString(key, true), BpString(key, true), true);
  };
  {
    BpPivotTable matched = open("Matched");
    BpPivotTable byCases = open("ByCases");
    BpPivotTable byVariables = open("ByVariables");
    compdatas::WriteSummaryTables(run.comparer(), matched, byCases, byVariables);
  }
  std::vector<std::string> all;
  for (const output::Item& item : run.command().items) {
    const auto* table = std::get_if<std::unique_ptr<output::Table>>(&item);
    if (table != nullptr) all.push_back((*table)->destroyed ? "withdrawn" : cellsOf(table->get()));
  }
  return all;
}

compdatas::VariablePair comparedPair(std::uint64_t mismatchCount) {
  compdatas::VariablePair pair;
  pair.activeIndex = 0;
  pair.compared = true;
  pair.mismatchCount = mismatchCount;
  return pair;
}

TEST(SummaryTablesByHand, ShowCountsBeyondThirtyTwoBits) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  compdatas::DatasetComparer& comparer = run.comparer();
  comparer.readers[0].casesRead = 8000000000;
  comparer.readers[1].casesRead = 5000000000;
  comparer.casesCompared = 4000000000;
  comparer.readers[0].mismatchedCases = comparer.readers[1].mismatchedCases = 3000000000;
  comparer.variablePairs = {comparedPair(1000000000)};
  EXPECT_EQ(written(run), (std::vector<std::string>{"CD_Cases|CD_Count|CD_Active = 8000000000\n"
                                                    "CD_Cases|CD_Count|CD_Comparison = 5000000000\n"
                                                    "CD_CasesCompared|CD_Count|CD_Active = 4000000000\n"
                                                    "CD_CasesCompared|CD_Count|CD_Comparison = 4000000000\n"
                                                    "CD_CasesCompared|CD_Percent|CD_Active = 50%\n"
                                                    "CD_CasesCompared|CD_Percent|CD_Comparison = 80%\n"
                                                    "CD_CasesNotCompared|CD_Count|CD_Active = 4000000000\n"
                                                    "CD_CasesNotCompared|CD_Count|CD_Comparison = 1000000000\n"
                                                    "CD_CasesNotCompared|CD_Percent|CD_Active = 50%\n"
                                                    "CD_CasesNotCompared|CD_Percent|CD_Comparison = 20%\n",
                                                    "CD_CasesCompared|CD_Count = 4000000000\n"
                                                    "CD_CasesContainingMismatches|CD_Count = 3000000000\n"
                                                    "CD_CasesContainingMismatches|CD_Percent = 75%\n",
                                                    "<x>|CD_Count = 1000000000\n"
                                                    "<x>|CD_Percent = 25%\n"}));
}

TEST(SummaryTablesByHand, CountTheActiveSidesDifferingCasesAndTakeTheShareOfTheComparisonSides) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  compdatas::DatasetComparer& comparer = run.comparer();
  comparer.casesCompared = comparer.readers[0].casesRead = comparer.readers[1].casesRead = 4;
  comparer.readers[0].mismatchedCases = 1;
  comparer.readers[1].mismatchedCases = 3;
  EXPECT_EQ(written(run).at(1),
            "CD_CasesCompared|CD_Count = 4\n"
            "CD_CasesContainingMismatches|CD_Count = 1\n"
            "CD_CasesContainingMismatches|CD_Percent = 75%\n");
}

TEST(SummaryTablesByHand, ShowZeroPercentOfNoComparedCase) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  compdatas::DatasetComparer& comparer = run.comparer();
  comparer.readers[0].mismatchedCases = comparer.readers[1].mismatchedCases = 2;
  comparer.variablePairs = {comparedPair(2)};
  const std::vector<std::string> tables = written(run);
  EXPECT_EQ(tables.at(1),
            "CD_CasesCompared|CD_Count = 0\n"
            "CD_CasesContainingMismatches|CD_Count = 2\n"
            "CD_CasesContainingMismatches|CD_Percent = 0%\n");
  EXPECT_EQ(tables.at(2), "<x>|CD_Count = 2\n<x>|CD_Percent = 0%\n");
}

TEST(SummaryTablesByHand, AreWithdrawnWhenAllValuesMatchWhateverTheCounters) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  run.comparer().casesAllMatch = true;
  run.comparer().readers[0].mismatchedCases = 2;
  const std::vector<std::string> tables = written(run);
  EXPECT_NE(tables.at(0), "withdrawn");
  EXPECT_EQ(tables.at(1), "withdrawn");
  EXPECT_EQ(tables.at(2), "withdrawn");
  EXPECT_EQ(run.messages(), "4/1 All values in the tw...\n");
}

TEST(SummaryTablesByHand, GoByTheActiveSideWhetherAnyCaseDiffers) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  run.comparer().readers[1].mismatchedCases = 2;
  EXPECT_EQ(written(run).at(1), "");
  EXPECT_EQ(run.messages(), "");
}

}  // namespace
}  // namespace workbench::tests
