// The Case By Case Comparison table: its layout, its limit, its caption, and when it is shown at all.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests::case_table_test {

const std::string byPosition = "/COMPDATASET=b /VARIABLES=ALL";
const std::string byId = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";
const std::string sides = "(1) is the Active Datset an...";
const std::string emptyShape =
    "CD_Cases 2 (1,1,true,false) [CD_CaseID true,2:] [CD_Row true,2:]\nCD_Results 2 (0,1,true,true)\n";

// So many cases, each with a difference in x.
DatasetBuilder numbered(int cases, double value) {
  std::vector<double> ids;
  for (int id = 1; id <= cases; ++id) ids.push_back(id);
  return dataset().numeric("id", ids).numeric("x", std::vector<double>(ids.size(), value));
}

std::string shown(const ProcedureRun& run) { return run.categories(keys::caseByCase, 1); }

std::string upTo(int number) {
  std::string all;
  for (int shownCase = 0; shownCase < number; ++shownCase) {
    all += (shownCase == 0 ? "" : " ") + std::to_string(shownCase);
  }
  return all;
}

TEST(CaseTable, HasACategoryPerCaseIdTwoRowNumbersAndEveryOtherComparedVariable) {
  ProcedureRun run(
      dataset().text("town", 6, {"Ghent", "Mons"}).numeric("x", {1, 2}).numeric("wave", {1, 1}).numeric("only", {0, 0}),
      dataset().numeric("wave", {1, 1}).numeric("x", {1, 3}).text("town", 6, {"Ghent", "Mons"}));
  run.run(byPosition + " /CASEID=wave town");
  const output::Table* table = run.table(keys::caseByCase);
  EXPECT_EQ(shapeOf(table),
            "CD_Cases 2 (1,1,true,false) [CD_CaseID true,2: \"wave\" \"town\"] [CD_Row true,2: CD_Active CD_Compare] "
            "<x>\n"
            "CD_Results 2 (0,1,true,true) 0\n");
  EXPECT_EQ(cellsOf(table),
            "\"wave\"|0 = wave:1\n"
            "\"town\"|0 = town:\"Mons\"\n"
            "CD_Active|0 = 2\n"
            "CD_Compare|0 = 2\n"
            "<x>|0 = \"(1) ^1\\n(2) ^2\"{x:2|x:3}\n");
  EXPECT_EQ(captionOf(table), sides);
}

TEST(CaseTable, ShowsAnEmptyCellForAVariableThatAgrees) {
  ProcedureRun run(dataset().numeric("x", {1}).numeric("y", {2}).text("t", 2, {"a"}),
                   dataset().numeric("x", {1}).numeric("y", {5}).text("t", 4, {"abcd"}));
  run.run(byPosition);
  EXPECT_EQ(cellsOf(run.table(keys::caseByCase)),
            "CD_Active|0 = 1\n"
            "CD_Compare|0 = 1\n"
            "<x>|0 = \"\"\n"
            "<y>|0 = \"(1) ^1\\n(2) ^2\"{y:2|y:5}\n"
            "<t>|0 = \"(1) ^1\\n(2) ^2\"{t:\"a\"|t:\"abcd\"}\n");
}

TEST(CaseTable, ShowsTheValueOfTheActiveKeyAndOfEachSidesOwnVariable) {
  // The value of each side carries its own variable: its name, its print format.
  ProcedureRun run(dataset().text("ID", 2, {"AB"}).numeric("X", {1}),
                   dataset().text("id", 4, {"AB"}).numeric("x", {2}, [](data::Variable& x) { x.format.decimals = 2; }));
  run.run(byId);
  const output::Table* table = run.table(keys::caseByCase);
  EXPECT_EQ(cellsOf(table),
            "\"ID\"|0 = ID:\"AB\"\n"
            "CD_Active|0 = 1\n"
            "CD_Compare|0 = 1\n"
            "<X>|0 = \"(1) ^1\\n(2) ^2\"{X:1|x:2}\n");
  const auto& values = std::get<output::CompositeText>(table->cells[3].content->held);
  EXPECT_EQ(std::get<output::ValueText>(values.items[0].held).variable->decimals, 0);
  EXPECT_EQ(std::get<output::ValueText>(values.items[1].held).variable->decimals, 2);
}

TEST(CaseTable, ShowsTextsAsFarAsEachSidesVariableIsWide) {
  // What lies behind the third byte of the slot is no part of the value.
  ProcedureRun run(dataset().text("wide", 12, {"twelve bytes"}).text("t", 3, {"abcX"}),
                   dataset().text("wide", 20, {"twenty bytes or more"}).text("t", 5, {"abcdeX"}));
  run.run(byPosition);
  EXPECT_EQ(cellsOf(run.table(keys::caseByCase)),
            "CD_Active|0 = 1\n"
            "CD_Compare|0 = 1\n"
            "<wide>|0 = \"(1) ^1\\n(2) ^2\"{wide:\"twelve bytes\"|wide:\"twenty bytes or more\"}\n"
            "<t>|0 = \"(1) ^1\\n(2) ^2\"{t:\"abc\"|t:\"abcde\"}\n");
}

TEST(CaseTable, NumbersTheShownCasesFromZeroAndTellsTheirRowsInEachDataset) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 3, 5, 6}).numeric("x", {1, 1, 1, 1, 1}),
                   dataset().numeric("id", {2, 3, 4, 5, 6}).numeric("x", {2, 1, 1, 2, 2}));
  run.run(byId);
  EXPECT_EQ(shown(run), "0 1 2");
  const auto at = [&](const char* what, const char* shownCase) {
    return run.cell(keys::caseByCase, {what, shownCase});
  };
  EXPECT_EQ(at("id", "0") + ' ' + at("CD_Active", "0") + ' ' + at("CD_Compare", "0"), "2 2 1");
  EXPECT_EQ(at("id", "1") + ' ' + at("CD_Active", "1") + ' ' + at("CD_Compare", "1"), "5 4 4");
  EXPECT_EQ(at("id", "2") + ' ' + at("CD_Active", "2") + ' ' + at("CD_Compare", "2"), "6 5 5");
}

TEST(CaseTable, ShowsADifferingCaseIdByItsActiveValueOnly) {
  ProcedureRun run(dataset().text("id", 2, {"AB"}), dataset().text("id", 4, {"ABx"}));
  run.run("/COMPDATASET=b /VARIABLES=id /CASEID=id");
  EXPECT_EQ(cellsOf(run.table(keys::caseByCase)), "\"id\"|0 = id:\"AB\"\nCD_Active|0 = 1\nCD_Compare|0 = 1\n");
}

TEST(CaseTable, ShowsAHundredCasesUnlessToldOtherwise) {
  ProcedureRun run(numbered(150, 1), numbered(150, 2));
  run.run(byId);
  EXPECT_EQ(shown(run), upTo(100));
  EXPECT_EQ(captionOf(run.table(keys::caseByCase)), "\"^1\\n^2\"{" + sides + "|Displaying the first ...{100|150}}");
  EXPECT_EQ(run.cell(keys::byCases, {"CD_CasesContainingMismatches", "CD_Count"}), "150");
}

TEST(CaseTable, SaysWhatItsLimitIsWhenThatIsReachedToTheCase) {
  for (const int cases : {2, 3, 4}) {
    ProcedureRun run(numbered(cases, 1), numbered(cases, 2));
    run.run(byId + " /OUTPUT TABLELIMIT=3");
    EXPECT_EQ(shown(run), upTo(std::min(cases, 3)));
    EXPECT_EQ(
        captionOf(run.table(keys::caseByCase)),
        cases < 3 ? sides : "\"^1\\n^2\"{" + sides + "|Displaying the first ...{3|" + std::to_string(cases) + "}}");
  }
}

TEST(CaseTable, NamesInItsCaptionHowManyCasesDifferNotHowManyWereCompared) {
  ProcedureRun run(dataset().numeric("id", {1, 2, 3, 4, 5}).numeric("x", {1, 1, 1, 1, 1}),
                   dataset().numeric("id", {1, 2, 3, 4, 5}).numeric("x", {2, 1, 2, 1, 2}));
  run.run(byId + " /OUTPUT TABLELIMIT=2");
  EXPECT_EQ(captionOf(run.table(keys::caseByCase)), "\"^1\\n^2\"{" + sides + "|Displaying the first ...{2|3}}");
}

TEST(CaseTable, ShowsOneCaseWithALimitOfOne) {
  ProcedureRun run(numbered(3, 1), numbered(3, 2));
  run.run(byId + " /OUTPUT TABLELIMIT=1");
  EXPECT_EQ(shown(run), "0");
}

TEST(CaseTable, ShowsEveryCaseWithoutALimitAndNamesNoneInItsCaption) {
  ProcedureRun run(numbered(130, 1), numbered(130, 2));
  run.run(byId + " /OUTPUT TABLELIMIT=NONE");
  EXPECT_EQ(shown(run), upTo(130));
  EXPECT_EQ(captionOf(run.table(keys::caseByCase)), sides);
}

TEST(CaseTable, CountsAndFlagsCasesBeyondItsLimit) {
  ProcedureRun run(numbered(4, 1), numbered(4, 2));
  run.run(byId + " /OUTPUT TABLELIMIT=2");
  EXPECT_EQ(run.values("CasesCompare"), "1 1 1 1");
  EXPECT_EQ(run.cell(keys::byVariables, {"x", "CD_Count"}), "4");
}

TEST(CaseTable, StaysEmptyWithItsCaptionWhenOnlyCasesAreLeftOver) {
  ProcedureRun run(numbered(3, 1), numbered(2, 1));
  run.run(byId);
  EXPECT_EQ(shapeOf(run.table(keys::caseByCase)), emptyShape);
  EXPECT_EQ(captionOf(run.table(keys::caseByCase)), sides);
}

TEST(CaseTable, IsFilledAndThenTakenOutWhenItIsNotWanted) {
  ProcedureRun run(numbered(3, 1), numbered(3, 2));
  run.run(byId + " /OUTPUT CASETABLE=NO");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.table(keys::caseByCase), nullptr);
  EXPECT_EQ(run.values("CasesCompare"), "1 1 1");
}

TEST(CaseTable, IsMadeBeforeTheFirstCaseIsReadAndGetsItsCaptionWhenAllElseIsReleased) {
  ProcedureRun run(numbered(2, 1), numbered(2, 2));
  run.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME=agreed");
  const int dimension = run.journalLine("Dimension(\"CD_Cases\", 2)");
  EXPECT_GT(dimension, run.journalLine("CommitDictionary"));
  EXPECT_GT(run.journalLine("Dimension(\"CD_Results\", 2)", dimension), dimension);
  EXPECT_LT(run.journalLine("Dimension(\"CD_Results\", 2)", dimension), run.journalLine("NextCase"));
  const int caption = run.journalLine("BpPivotTable#5.Caption(\"(1) is the Active Datset an...\")");
  EXPECT_GT(caption, run.journalLine("~UserOutputCaseFile#1"));
}

TEST(CaseTable, IsTakenOutAfterItsCaptionWhenAllCasesMatch) {
  ProcedureRun run(numbered(2, 1), numbered(2, 1));
  run.run(byId);
  const int caption = run.journalLine("BpPivotTable#5.Caption(");
  ASSERT_GE(caption, 0);
  EXPECT_GT(run.journalLine("BpPivotTable#5.Destroy()"), caption);
}

TEST(CaseTable, ShowsMissingAndBlankValuesAsTheyAre) {
  ProcedureRun run(dataset().numeric("x", {missing}).text("t", 3, {""}),
                   dataset().numeric("x", {0}).text("t", 3, {"a"}));
  run.run(byPosition);
  EXPECT_EQ(cellsOf(run.table(keys::caseByCase)),
            "CD_Active|0 = 1\n"
            "CD_Compare|0 = 1\n"
            "<x>|0 = \"(1) ^1\\n(2) ^2\"{x:.|x:0}\n"
            "<t>|0 = \"(1) ^1\\n(2) ^2\"{t:\"\"|t:\"a\"}\n");
}

}  // namespace workbench::tests::case_table_test
