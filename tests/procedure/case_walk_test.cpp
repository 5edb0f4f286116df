// The case walk: pairing, counters, the flag variable.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/procedure/faked_run.h"
#include "tests/procedure/table_keys.h"
#include "workbench/runtime/journal.h"

namespace workbench::tests::case_walk_test {

const std::string byPosition = "/COMPDATASET=b /VARIABLES=ALL";
const std::string byId = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";

// "active compared notCompared | comparison compared notCompared"
std::string counts(const ProcedureRun& run) {
  const auto of = [&](const char* result, const char* side) {
    return run.cell(keys::matchedSummary, {result, "CD_Count", side});
  };
  std::string all;
  for (const char* side : {"CD_Active", "CD_Comparison"}) {
    all += (all.empty() ? "" : " | ") + of("CD_Cases", side) + ' ' + of("CD_CasesCompared", side) + ' ' +
           of("CD_CasesNotCompared", side);
  }
  return all;
}

std::string mismatched(const ProcedureRun& run) {
  return run.cell(keys::byCases, {"CD_CasesContainingMismatches", "CD_Count"});
}

TEST(CaseWalk, PairsByPositionWithoutCaseIdsAndFlagsTheLongerActiveDatasetsRest) {
  ProcedureRun run(dataset().numeric("x", {1, 2, 3, 4}), dataset().numeric("x", {1, 5}));
  run.run(byPosition);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.values("CasesCompare"), "0 1 -1 -1");
  EXPECT_EQ(counts(run), "4 2 2 | 2 2 0");
}

TEST(CaseWalk, LeavesNoFlagForTheLongerComparisonDatasetsRest) {
  ProcedureRun run(dataset().numeric("x", {1, 2}), dataset().numeric("x", {1, 5, 3, 4}));
  run.run(byPosition);
  EXPECT_EQ(run.values("CasesCompare"), "0 1");
  EXPECT_EQ(counts(run), "2 2 0 | 4 2 2");
}

TEST(CaseWalk, PairsByTheCaseIds) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 4, 5}).numeric("x", {10, 20, 40, 50}),
                   dataset().numeric("id", {2, 3, 4, 6}).numeric("x", {20, 30, 41, 60}));
  run.run(byId);
  EXPECT_EQ(run.values("CasesCompare"), "-1 0 1 -1");
  EXPECT_EQ(counts(run), "4 2 2 | 4 2 2");
  EXPECT_EQ(mismatched(run), "1");
}

TEST(CaseWalk, PairsCasesOfOneCaseIdInTheirOrder) {
  ProcedureRun run(dataset().numeric("id", {1, 1, 1, 2}).numeric("x", {10, 11, 12, 20}),
                   dataset().numeric("id", {1, 1, 2, 2}).numeric("x", {10, 19, 20, 21}));
  run.run(byId);
  EXPECT_EQ(run.values("CasesCompare"), "0 1 -1 0");
  EXPECT_EQ(counts(run), "4 3 1 | 4 3 1");
}

TEST(CaseWalk, FlagsACaseThatHasDifferencesInSeveralVariablesOnce) {
  ProcedureRun run(dataset().numeric("x", {1}).numeric("y", {1}).numeric("z", {1}),
                   dataset().numeric("x", {2}).numeric("y", {1}).numeric("z", {2}));
  run.run(byPosition);
  EXPECT_EQ(run.values("CasesCompare"), "1");
  EXPECT_EQ(mismatched(run), "1");
  EXPECT_EQ(run.cell(keys::byVariables, {"x", "CD_Count"}), "1");
  EXPECT_EQ(run.cell(keys::byVariables, {"y", "CD_Count"}), "0");
  EXPECT_EQ(run.cell(keys::byVariables, {"z", "CD_Count"}), "1");
}

TEST(CaseWalk, ComparesOnlyTheVariablesThatWereNamed) {
  ProcedureRun run(dataset().numeric("x", {1}).numeric("y", {1}), dataset().numeric("x", {1}).numeric("y", {2}));
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.values("CasesCompare"), "0");
}

TEST(CaseWalk, ComparesACaseIdsValuesInFullAlthoughOnlyTheActiveWidthPairs) {
  ProcedureRun run(dataset().text("id", 2, {"AB", "CD"}), dataset().text("id", 4, {"ABx", "CD"}));
  run.run("/COMPDATASET=b /VARIABLES=id /CASEID=id");
  EXPECT_EQ(run.values("CasesCompare"), "1 0");
  EXPECT_EQ(run.cell(keys::byVariables, {"id", "CD_Count"}), "1");
}

TEST(CaseWalk, FindsAllCasesAlikeAlthoughCasesWithoutPartnerLieBetweenThem) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 4}), dataset().numeric("id", {1, 3, 4}));
  run.run(byId);
  EXPECT_EQ(run.values("CasesCompare"), "0 -1 0");
  EXPECT_EQ(run.messages(), "4/1 All values in the tw...\n");
  EXPECT_EQ(run.table(keys::caseByCase), nullptr);
  EXPECT_EQ(counts(run), "3 2 1 | 3 2 1");
}

TEST(CaseWalk, DoesNotFindAllCasesAlikeWhenOneIsLeftOverAtTheEnd) {
  for (const bool inActive : {true, false}) {
    const DatasetBuilder longer = dataset().numeric("id", {1, 2, 3});
    const DatasetBuilder shorter = dataset().numeric("id", {1, 2});
    ProcedureRun run(inActive ? longer : shorter, inActive ? shorter : longer);
    run.run(byId);
    EXPECT_EQ(run.messages(), "");
    ASSERT_NE(run.table(keys::caseByCase), nullptr);
    EXPECT_EQ(run.table(keys::caseByCase)->cells.size(), 0U);
  }
}

TEST(CaseWalk, ShowsNoCaseTableForIdenticalDatasetsAlsoWhenItIsAskedFor) {
  const DatasetBuilder same = dataset().numeric("id", {1, 2, 3}).text("t", 5, {"a", "b", "c"});
  ProcedureRun run(same, same);
  run.run(byId + " /OUTPUT CASETABLE=YES");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.table(keys::caseByCase), nullptr);
  EXPECT_EQ(run.messages(), "4/1 All values in the tw...\n");
  EXPECT_EQ(run.values("CasesCompare"), "0 0 0");
}

TEST(CaseWalk, FindsTwoDatasetsWithoutCasesAlike) {
  ProcedureRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  run.run(byPosition);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(counts(run), "0 0 0 | 0 0 0");
  EXPECT_EQ(run.messages(), "4/1 All values in the tw...\n");
  EXPECT_EQ(run.notes(), "3: ||CasesCompare\n");
}

TEST(CaseWalk, LeavesAllCasesOverWhenOneDatasetHasNone) {
  ProcedureRun emptyActive(dataset().numeric("x", {}), dataset().numeric("x", {1, 2}));
  EXPECT_EQ(counts(emptyActive.run(byPosition)), "0 0 0 | 2 0 2");
  ProcedureRun emptyComparison(dataset().numeric("x", {1, 2}), dataset().numeric("x", {}));
  EXPECT_EQ(counts(emptyComparison.run(byPosition)), "2 0 2 | 0 0 0");
  EXPECT_EQ(emptyComparison.values("CasesCompare"), "-1 -1");
}

TEST(CaseWalk, CountsPairsAlsoWhenNoVariableCanBeCompared) {
  ProcedureRun run(dataset().numeric("x", {1, 2, 3}), dataset().numeric("y", {1, 2}));
  run.run(byPosition);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.messages(), "0/3 The variables do not match in t...\n");
  EXPECT_EQ(run.values("CasesCompare"), "0 0 -1");
  EXPECT_EQ(counts(run), "3 2 1 | 2 2 0");
}

TEST(CaseWalk, WritesNothingIntoTheActiveDatasetWithoutAFlagVariable) {
  ProcedureRun run(dataset().numeric("x", {1, 2, 3}), dataset().numeric("x", {1, 5}));
  run.run(byPosition + " /SAVE FLAGMISMATCHES=NO");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.values("CasesCompare"), "no variable");
  EXPECT_EQ(run.values("x"), "1 2 3");
  EXPECT_EQ(run.notes(), "");
}

TEST(CaseWalk, NotesTheFlagVariableByItsNameAsItStands) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}));
  run.run(byPosition + " /SAVE VARNAME=CD_Matched");
  EXPECT_EQ(
      run.journalLines({"AddNotesWithGroup("}),
      (std::vector<std::string>{
          "AddNotesWithGroup(3, BpString(\"\", false), BpString(\"\", false), BpString(\"CD_Matched\", false))"}));
}

TEST(CaseWalk, NeverWritesAFlagVariableThatIsTheFirstVariable) {
  const DatasetBuilder active = dataset().numeric("spare", {7, 7, 7, 7}).numeric("x", {1, 2, 3, 4});
  const DatasetBuilder compared = dataset().numeric("x", {1, 5, 3});
  FakedRun first(active, compared);
  first.activeSource.placeOfAdded = 0;
  first.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(first.outcome(), "completed");
  EXPECT_EQ(first.values("CasesCompare"), ". . . .");
  EXPECT_EQ(first.notes(), "");
  EXPECT_EQ(mismatched(first), "1");

  FakedRun second(dataset().numeric("x", {1, 2, 3, 4}).numeric("spare", {7, 7, 7, 7}), compared);
  second.activeSource.placeOfAdded = 1;
  second.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(second.values("CasesCompare"), "0 1 0 -1");
  EXPECT_EQ(second.notes(), "3: ||CasesCompare\n");
}

TEST(CaseWalk, ReadsTheFirstCasesActiveFirstAndThePairAfterAPairComparisonFirst) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 4, 6}), dataset().numeric("id", {1, 3, 4, 7, 8}));
  run.run(byId);
  // The comparison iterator was made first, so it is the first one.
  const std::string active = "VRIX_InputCaseIterator#2.NextCase() -> true";
  const std::string activeEnd = "VRIX_InputCaseIterator#2.NextCase() -> false";
  const std::string compared = "VRIX_InputCaseIterator#1.NextCase() -> true";
  const std::string comparedEnd = "VRIX_InputCaseIterator#1.NextCase() -> false";
  EXPECT_EQ(run.journalLines({".NextCase()"}), (std::vector<std::string>{active, compared,  // 1 and 1
                                                                         compared, active,  // 3 and 2
                                                                         active,            // 4, for 2 has no partner
                                                                         compared,          // 4, for 3 has none
                                                                         compared, active,  // 7 and 6
                                                                         activeEnd,         // 6 has no partner
                                                                         compared,          // 8 is left over, as 7 was
                                                                         comparedEnd}));
}

TEST(CaseWalk, ReadsTheActiveDatasetWithItsFilterOnlyWhenNoFlagIsWritten) {
  const DatasetBuilder active =
      dataset().numeric("use", {1, 0, 1}).numeric("x", {1, 2, 3}).with([](data::Dictionary& dictionary) {
        dictionary.filter = 0;
      });
  const DatasetBuilder compared = dataset().numeric("x", {1, 3});
  ProcedureRun filtered(active, compared);
  filtered.run("/COMPDATASET=b /VARIABLES=x /SAVE FLAGMISMATCHES=NO");
  EXPECT_EQ(counts(filtered), "2 2 0 | 2 2 0");
  EXPECT_EQ(filtered.messages(), "4/1 All values in the tw...\n");
  ProcedureRun flagged(active, compared);
  flagged.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(flagged.values("CasesCompare"), "0 1 -1");
}

TEST(CaseWalk, GivesTheSameResultWhenCasesComeInLargeBlocks) {
  std::vector<double> ids;
  std::vector<double> other;
  for (int id = 0; id < 300000; ++id) {
    ids.push_back(id);
    if (id % 3 != 0) other.push_back(id);
  }
  std::vector<double> values(ids.size(), 5);
  std::vector<double> otherValues(other.size(), 5);
  otherValues[7] = 6;
  ProcedureRun run(dataset().numeric("id", ids).numeric("x", values),
                   dataset().numeric("id", other).numeric("x", otherValues));
  run.beforeCall = [] { journal().sendTo({}); };
  run.run(byId);
  EXPECT_EQ(counts(run), "300000 200000 100000 | 200000 200000 0");
  EXPECT_EQ(mismatched(run), "1");
  const std::string flags = run.values("CasesCompare");
  EXPECT_EQ(flags.substr(0, 38), "-1 0 0 -1 0 0 -1 0 0 -1 0 1 -1 0 0 -1 ");
  EXPECT_EQ(std::count(flags.begin(), flags.end(), '-'), 100000);
}

}  // namespace workbench::tests::case_walk_test
