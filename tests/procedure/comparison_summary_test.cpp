// The Comparison Summary: the table before the comparison that says what is compared, and the one after it that counts.
#include <gtest/gtest.h>

#include "tests/data/working/fakes.h"
#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests::comparison_summary_test {

using data::testing::TemporaryFolder;
using Lines = std::vector<std::string>;

const std::string summary = "CD_CompSummaryTableName";

DatasetBuilder cases() { return dataset().numeric("x", {1, 2}).numeric("y", {1, 2}).numeric("z", {1, 2}); }
DatasetBuilder withRoles(std::int32_t filter, std::int32_t weight, const std::vector<std::int32_t>& split) {
  return cases().with([=](data::Dictionary& dictionary) {
    dictionary.filter = filter;
    dictionary.weight = weight;
    dictionary.split = split;
  });
}

const output::Text* cellText(const ProcedureRun& run, const std::string& row, std::int32_t column) {
  const output::Table* table = run.table(summary);
  for (std::size_t index = 0; index < table->cells.size(); ++index) {
    const auto at = table->at(index);
    const auto title = [&](std::size_t dimension) {
      return passed(table->dimensions[dimension].nodes[static_cast<std::size_t>(at[dimension])].title);
    };
    if (title(0) == row && title(1) == (column == 0 ? "CD_Active" : "CD_Comparison")) {
      return table->cells[index].content.get();
    }
  }
  return nullptr;
}

TEST(ComparisonSummary, DescribesTheTwoDatasetsInFiveRowsAndTwoColumns) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  const output::Table* table = run.table(summary);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(shapeOf(table),
            "CD_Information 2 (0,1,false,false) CD_Data_File CD_Dataset CD_Filter CD_Weight CD_SplitFile\n"
            "CD_Datasets 2 (1,1,false,false) CD_Active CD_Comparison\n");
  EXPECT_EQ(cellsOf(table),
            "CD_Data_File|CD_Active = \"\"\n"
            "CD_Data_File|CD_Comparison = \"\"\n"
            "CD_Dataset|CD_Active = \"a\"\n"
            "CD_Dataset|CD_Comparison = \"b\"\n"
            "CD_Filter|CD_Active = \"\"\n"
            "CD_Filter|CD_Comparison = \"\"\n"
            "CD_Weight|CD_Active = \"\"\n"
            "CD_Weight|CD_Comparison = \"\"\n"
            "CD_SplitFile|CD_Active = \"\"\n"
            "CD_SplitFile|CD_Comparison = \"\"\n");
  EXPECT_EQ(exact(table->title), summary);
  EXPECT_EQ(exact(table->defaultTitle), "Comparison Summary");
  EXPECT_TRUE(table->flag);
  EXPECT_EQ(table->minDataColumnWidth, 180);
  EXPECT_EQ(captionOf(table), "none");
}

TEST(ComparisonSummary, IsFinishedBeforeTheDictionariesAreCompared) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_LT(run.journalLine("~BpPivotTable#1"), run.journalLine("VRIX_Variable(x).GetFormatEx("));
}

TEST(ComparisonSummary, NamesTheDataFilesAndLeavesTheHandleOfAComparisonFileEmpty) {
  const TemporaryFolder folder;
  const std::string file = folder.write("b.csv", "x,y,z\n1,1,1\n");
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET='" + folder.file("./b.csv") + "' /VARIABLES=ALL");
  EXPECT_EQ(run.cell(summary, {"CD_Data_File", "CD_Active"}), "");
  EXPECT_EQ(run.cell(summary, {"CD_Data_File", "CD_Comparison"}), file);
  EXPECT_EQ(run.cell(summary, {"CD_Dataset", "CD_Active"}), "a");
  EXPECT_EQ(run.cell(summary, {"CD_Dataset", "CD_Comparison"}), "");
  ASSERT_NE(cellText(run, "CD_Data_File", 1), nullptr);
  EXPECT_EQ(exact(*cellText(run, "CD_Data_File", 1)), "\"" + file + "\"");  // text as it stands
}

TEST(ComparisonSummary, NamesTheFileOfAnActiveDatasetThatCameFromOne) {
  const TemporaryFolder folder;
  const auto file = data::openDataFile(folder.write("a.csv", "x,y,z\n1,1,1\n"), {});
  ASSERT_TRUE(file);
  ProcedureRun run(cases(), cases());
  ASSERT_TRUE(run.manager().open(std::make_shared<data::Dataset>(*file), "a"));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.cell(summary, {"CD_Data_File", "CD_Active"}), folder.file("a.csv"));
  EXPECT_EQ(run.cell(summary, {"CD_Data_File", "CD_Comparison"}), "");
  EXPECT_EQ(run.cell(summary, {"CD_Dataset", "CD_Active"}), "a");
}

TEST(ComparisonSummary, LeavesFilterWeightAndSplitOfTheComparisonDatasetAsTheyAre) {
  ProcedureRun run(cases(), withRoles(1, 0, {2, 0}));
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE MATCHDATASET=YES MATCHNAME=m");
  EXPECT_EQ(run.outcome(), "completed");
  const data::Dictionary& compared = run.manager().find("b")->dictionary();
  EXPECT_EQ(compared.filter, 1);
  EXPECT_EQ(compared.weight, 0);
  EXPECT_EQ(compared.split, (std::vector<std::int32_t>{2, 0}));
}

TEST(ComparisonSummary, HasNoCellForTheHandleOfAnActiveDatasetThatIsNotManaged) {
  ProcedureRun run;
  ASSERT_TRUE(run.manager().open(cases().build(), "b"));
  ASSERT_TRUE(run.manager().open(cases().build(), std::nullopt));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.cell(summary, {"CD_Dataset", "CD_Active"}), "-");
  EXPECT_EQ(run.cell(summary, {"CD_Dataset", "CD_Comparison"}), "b");
}

TEST(ComparisonSummary, GivesTheComparisonDatasetsHandleAsItWasOpenedNotAsItWasWritten) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=B /VARIABLES=ALL");
  EXPECT_EQ(run.cell(summary, {"CD_Dataset", "CD_Comparison"}), "b");
}

TEST(ComparisonSummary, ShowsFilterAndWeightOfBothDatasetsAsVariablesWithNameAndLabel) {
  ProcedureRun run(withRoles(0, 2, {}), withRoles(1, 0, {}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.cell(summary, {"CD_Filter", "CD_Active"}), "x");
  EXPECT_EQ(run.cell(summary, {"CD_Filter", "CD_Comparison"}), "y");
  EXPECT_EQ(run.cell(summary, {"CD_Weight", "CD_Active"}), "z");
  EXPECT_EQ(run.cell(summary, {"CD_Weight", "CD_Comparison"}), "x");
  EXPECT_EQ(run.journalLines({".Cell(BpVariable("}).size(), 4U);
  EXPECT_EQ(run.journalLines({".Cell(BpVariable(\"x\", 2))"}).size(), 2U);
}

TEST(ComparisonSummary, AsksTheActiveViewForFilterWeightAndSplit) {
  ProcedureRun run(withRoles(0, 2, {1}), withRoles(1, 0, {2, 0}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.journalLines({"GetFileSpecExt()", "GetFilterVarIndex()", "GetWeightVarIndex()", "GetNSplitVars()",
                              "GetSplitVarIndex("}),
            (Lines{"ProcedureDataSource#1.GetFileSpecExt() -> \"\"", "VRIX_DataSource#1.GetFileSpecExt() -> \"\"",
                   "ProcedureDataSource#1.GetFilterVarIndex() -> 0", "VRIX_DataSource#1.GetFilterVarIndex() -> 1",
                   "ProcedureDataSource#1.GetWeightVarIndex() -> 2", "VRIX_DataSource#1.GetWeightVarIndex() -> 0",
                   "ProcedureDataSource#1.GetNSplitVars() -> 1", "ProcedureDataSource#1.GetSplitVarIndex(0) -> 1",
                   "VRIX_DataSource#1.GetNSplitVars() -> 2", "VRIX_DataSource#1.GetSplitVarIndex(0) -> 2",
                   "VRIX_DataSource#1.GetSplitVarIndex(1) -> 0"}));
}

TEST(ComparisonSummary, ListsTheSplitVariablesInTheirOrderInOneCell) {
  ProcedureRun run(withRoles(-1, -1, {2, 0, 1}), withRoles(-1, -1, {1}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.cell(summary, {"CD_SplitFile", "CD_Active"}), "[%1:, ^1:]1{[z|x|y]}");
  EXPECT_EQ(run.cell(summary, {"CD_SplitFile", "CD_Comparison"}), "[%1:, ^1:]1{[y]}");
  ASSERT_NE(cellText(run, "CD_SplitFile", 0), nullptr);
  EXPECT_FALSE(std::get<output::CompositeText>(cellText(run, "CD_SplitFile", 0)->held).translate);
  EXPECT_EQ(run.journalLines({"BpComposite#1"}),
            (Lines{"BpComposite#1 = BpComposite(\"[%1:, ^1:]1\", false)", "BpComposite#1.Sublist()",
                   "BpComposite#1.Add(BpVariable(\"z\", 2))", "BpComposite#1.Add(BpVariable(\"x\", 2))",
                   "BpComposite#1.Add(BpVariable(\"y\", 2))", "BpComposite#1.EndSublist()", "BpComposite#1.Finish()",
                   "~BpComposite#1"}));
}

TEST(ComparisonSummary, CountsTheCasesReadInASecondTableBehindAllOthers) {
  ProcedureRun run(dataset().numeric("x", {1, 2, 3}), dataset().numeric("x", {1, 2}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  const output::Table* table = run.table(summary, 1);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(exact(table->title), summary);
  EXPECT_EQ(exact(table->defaultTitle), "CD_CompSummaryTemplateName");
  EXPECT_TRUE(table->flag);
  EXPECT_EQ(table->minDataColumnWidth, std::nullopt);
  EXPECT_EQ(shapeOf(table),
            "CD_Information 2 (unplaced) CD_Cases\n"
            "CD_Datasets 2 (1,1,false,false) CD_Active CD_Comparison\n");
  EXPECT_EQ(cellsOf(table), "CD_Cases|CD_Active = 3\nCD_Cases|CD_Comparison = 2\n");
  EXPECT_TRUE(run.tables().ends_with(" CD_CompSummaryTableName(2)"));
}

TEST(ComparisonSummary, ShowsNoNumberForADatasetWithoutCases) {
  ProcedureRun active(dataset().numeric("x", {}), dataset().numeric("x", {1, 2}));
  active.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(active.cell(summary, {"CD_Cases", "CD_Active"}, 1), "-");
  EXPECT_EQ(active.cell(summary, {"CD_Cases", "CD_Comparison"}, 1), "2");

  ProcedureRun compared(dataset().numeric("x", {1}), dataset().numeric("x", {}));
  compared.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(compared.cell(summary, {"CD_Cases", "CD_Active"}, 1), "1");
  EXPECT_EQ(compared.cell(summary, {"CD_Cases", "CD_Comparison"}, 1), "-");

  ProcedureRun neither(dataset().numeric("x", {}), dataset().numeric("x", {}));
  neither.run("/COMPDATASET=b /VARIABLES=ALL");
  ASSERT_NE(neither.table(summary, 1), nullptr);
  EXPECT_EQ(cellsOf(neither.table(summary, 1)), "");
}

}  // namespace workbench::tests::comparison_summary_test
