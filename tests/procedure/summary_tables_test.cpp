// The summary tables: Matched Summary, Mismatched By Cases, Mismatched By Variables.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests::summary_tables_test {

const std::string byId = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";
const std::string allEqual = "4/1 All values in the tw...\n";

// Of 5 active and 4 comparison cases 3 are compared, and 2 of these differ.
DatasetBuilder active() {
  return dataset().numeric("id", {1, 2, 3, 4, 5}).numeric("z", {1, 1, 1, 1, 1}).numeric("a", {1, 1, 1, 1, 1});
}
DatasetBuilder compared() {
  return dataset().numeric("id", {2, 3, 4, 9}).numeric("z", {1, 1, 2, 1}).numeric("a", {2, 1, 2, 2});
}

TEST(MatchedSummary, CountsTheCasesOfEachDatasetAndThoseThatWereCompared) {
  ProcedureRun run(active(), compared());
  run.run(byId);
  const output::Table* table = run.table(keys::matchedSummary);
  EXPECT_EQ(shapeOf(table),
            "CD_Results 2 (0,1,false,false) CD_Cases CD_CasesCompared CD_CasesNotCompared\n"
            "CD_Statistics 2 (0,1,false,false) CD_Count CD_Percent\n"
            "CD_Dataset 2 (1,2,true,false) [CD_Datasets true,2: CD_Active CD_Comparison]\n");
  EXPECT_EQ(cellsOf(table),
            "CD_Cases|CD_Count|CD_Active = 5\n"
            "CD_Cases|CD_Count|CD_Comparison = 4\n"
            "CD_CasesCompared|CD_Count|CD_Active = 3\n"
            "CD_CasesCompared|CD_Count|CD_Comparison = 3\n"
            "CD_CasesCompared|CD_Percent|CD_Active = 60%\n"
            "CD_CasesCompared|CD_Percent|CD_Comparison = 75%\n"
            "CD_CasesNotCompared|CD_Count|CD_Active = 2\n"
            "CD_CasesNotCompared|CD_Count|CD_Comparison = 1\n"
            "CD_CasesNotCompared|CD_Percent|CD_Active = 40%\n"
            "CD_CasesNotCompared|CD_Percent|CD_Comparison = 25%\n");
  EXPECT_EQ(captionOf(table), "none");
  EXPECT_FALSE(table->minDataColumnWidth);
}

TEST(MatchedSummary, TakesTheOnlyCaseForAHundredPercent) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {2}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.cell(keys::matchedSummary, {"CD_CasesCompared", "CD_Percent", "CD_Active"}), "100");
  EXPECT_EQ(run.cell(keys::byCases, {"CD_CasesContainingMismatches", "CD_Percent"}), "100");
  EXPECT_EQ(run.cell(keys::byVariables, {"x", "CD_Percent"}), "100");
}

TEST(MatchedSummary, ShowsZeroPercentOfADatasetWithoutCases) {
  ProcedureRun run(dataset().numeric("x", {1, 2}), dataset().numeric("x", {}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(cellsOf(run.table(keys::matchedSummary)),
            "CD_Cases|CD_Count|CD_Active = 2\n"
            "CD_Cases|CD_Count|CD_Comparison = 0\n"
            "CD_CasesCompared|CD_Count|CD_Active = 0\n"
            "CD_CasesCompared|CD_Count|CD_Comparison = 0\n"
            "CD_CasesCompared|CD_Percent|CD_Active = 0%\n"
            "CD_CasesCompared|CD_Percent|CD_Comparison = 0%\n"
            "CD_CasesNotCompared|CD_Count|CD_Active = 2\n"
            "CD_CasesNotCompared|CD_Count|CD_Comparison = 0\n"
            "CD_CasesNotCompared|CD_Percent|CD_Active = 100%\n"
            "CD_CasesNotCompared|CD_Percent|CD_Comparison = 0%\n");
}

TEST(MismatchedByCases, CountsThePairsThatHoldADifference) {
  ProcedureRun run(active(), compared());
  run.run(byId);
  const output::Table* table = run.table(keys::byCases);
  EXPECT_EQ(shapeOf(table),
            "CD_Results 2 (0,1,false,false) CD_CasesCompared CD_CasesContainingMismatches\n"
            "CD_Statistics 2 (0,1,false,false) CD_Count CD_Percent\n");
  EXPECT_EQ(cellsOf(table),
            "CD_CasesCompared|CD_Count = 3\n"
            "CD_CasesContainingMismatches|CD_Count = 2\n"
            "CD_CasesContainingMismatches|CD_Percent = 66.66666666666667%\n");
}

TEST(MismatchedByVariables, HasARowForEveryComparedVariableInTheOrderOfTheActiveDictionary) {
  ProcedureRun run(active(), compared());
  run.run(byId);
  const output::Table* table = run.table(keys::byVariables);
  EXPECT_EQ(table->minDataColumnWidth, 70);
  EXPECT_EQ(shapeOf(table),
            "CD_Variables 2 (0,1,false,false) <id> <z> <a>\n"
            "CD_Mismatched 2 (1,1,false,false) CD_Count CD_Percent^0\n");
  EXPECT_EQ(cellsOf(table),
            "<id>|CD_Count = 0\n"
            "<id>|CD_Percent = 0%\n"
            "<z>|CD_Count = 1\n"
            "<z>|CD_Percent = 33.333333333333336%\n"
            "<a>|CD_Count = 2\n"
            "<a>|CD_Percent = 66.66666666666667%\n");
  ASSERT_EQ(table->footnotes.size(), 1U);
  EXPECT_EQ(exact(table->footnotes[0]), "Based on ^1 cases compa...{3}");
}

TEST(MismatchedByVariables, LeavesOutWhatCouldNotBeCompared) {
  ProcedureRun run(dataset().numeric("id", {1}).numeric("gone", {1}).text("kind", 1, {"a"}).numeric("x", {1}),
                   dataset().numeric("id", {1}).numeric("kind", {1}).numeric("x", {2}));
  run.run(byId);
  EXPECT_EQ(run.categories(keys::byVariables, 0), "id x");
}

TEST(SummaryTables, SayOnceThatAllValuesMatchAndWithdrawTheTablesOfDifferences) {
  ProcedureRun run(active(), active());
  run.run(byId);
  EXPECT_EQ(run.messages(), allEqual);
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10) CD_MatchedSummaryTableName(10) CD_CompSummaryTableName(2)");
}

TEST(SummaryTables, StayAsOpenedWhenNothingDiffersButCasesAreLeftOver) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 3}), dataset().numeric("id", {1, 2}));
  run.run(byId);
  EXPECT_EQ(run.messages(), "");
  for (const std::string& key : {keys::byCases, keys::byVariables}) {
    ASSERT_NE(run.table(key), nullptr);
    EXPECT_EQ(shapeOf(run.table(key)), "");
    EXPECT_EQ(captionOf(run.table(key)), "none");
    EXPECT_TRUE(run.table(key)->footnotes.empty());
    EXPECT_FALSE(run.table(key)->minDataColumnWidth);
  }
  EXPECT_EQ(run.table(keys::matchedSummary)->cells.size(), 10U);
}

TEST(SummaryTables, AreNeitherFilledNorReportedWithoutTheCaseTable) {
  ProcedureRun run(active(), compared());
  run.run(byId + " /OUTPUT CASETABLE=NO");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10) CD_MatchedSummaryTableName(0) CD_CompSummaryTableName(2)");
  EXPECT_EQ(shapeOf(run.table(keys::matchedSummary)), "");
}

TEST(SummaryTables, SayThatAllValuesMatchAlsoWithoutTheCaseTable) {
  ProcedureRun run(active(), active());
  run.run(byId + " /OUTPUT CASETABLE=NO");
  EXPECT_EQ(run.messages(), allEqual);
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10) CD_MatchedSummaryTableName(0) CD_CompSummaryTableName(2)");
}

TEST(SummaryTables, SayNothingWithoutTheCaseTableWhenOnlyCasesAreLeftOver) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 3}), dataset().numeric("id", {1, 2}));
  run.run(byId + " /OUTPUT CASETABLE=NO");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.table(keys::byCases), nullptr);
  EXPECT_EQ(run.table(keys::byVariables), nullptr);
}

TEST(SummaryTables, AreOpenedWithTheirKeysAndDefaultTitlesToBeResolved) {
  ProcedureRun run(active(), compared());
  run.run(byId);
  const auto titles = [&](const std::string& key) {
    const output::Table* table = run.table(key);
    return exact(table->title) + '|' + exact(table->defaultTitle) + '|' + (table->flag ? "true" : "false");
  };
  EXPECT_EQ(titles(keys::matchedSummary), "CD_MatchedSummaryTableName|Matched Summary|true");
  EXPECT_EQ(titles(keys::byCases), "CD_MismatchedByCasesTableName|Mismatched By Cases|true");
  EXPECT_EQ(titles(keys::byVariables), "CD_MismatchedByVarsTableName|Mismatched By Variables|true");
  EXPECT_EQ(titles(keys::caseByCase), "CD_CaseByCaseComparisonTableName|Case By Case Comparison|true");
}

TEST(SummaryTables, AreWrittenAfterTheWalkHasReleasedAllItMade) {
  ProcedureRun run(active(), compared());
  run.run(byId);
  const int firstDimension = run.journalLine("Dimension(\"CD_Statistics\", 2)");
  EXPECT_GT(firstDimension, run.journalLine("~VRIX_InputCaseIterator#1"));
  EXPECT_GT(firstDimension, run.journalLine("Caption("));
}

TEST(SummaryTables, PlaceTheFootnoteBeforeTheRows) {
  ProcedureRun run(active(), compared());
  run.run(byId);
  const int note = run.journalLine(".Note(BpAnnotation#1)");
  const int dimension = run.journalLine("Dimension(\"CD_Variables\", 2)");
  EXPECT_GT(note, dimension);
  EXPECT_LT(note, run.journalLine("Category(BpVariable(\"id\", 2))", dimension));
  EXPECT_LT(run.journalLine("MinDataColumnWidth(70)"), dimension);
  EXPECT_EQ(run.journalLines({".Note("}).size(), 1U);
}

}  // namespace workbench::tests::summary_tables_test
