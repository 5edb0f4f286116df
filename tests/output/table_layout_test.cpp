#include "workbench/output/table_layout.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/output/samples.h"

namespace workbench::output {
namespace {

// The headers as "text@row,column" with "+rows,columns" where a header covers more than one.
std::string described(const std::vector<HeaderCell>& headers) {
  std::string all;
  for (const HeaderCell& header : headers) {
    if (!all.empty()) all += "; ";
    all += fmt::format("{}@{},{}", header.text, header.row, header.column);
    if (header.rowSpan > 1 || header.columnSpan > 1) all += fmt::format("+{},{}", header.rowSpan, header.columnSpan);
  }
  return all;
}

TableLayout onlyLayout(const RunningCommand& command) {
  std::vector<TableLayout> layouts = layoutsOf(command.table(), english());
  EXPECT_EQ(layouts.size(), 1U);
  return std::move(layouts.at(0));
}

class Layout : public testing::Test {
 protected:
  RunningCommand command_;
  BpProcedure procedure_{"Test", 1};
};

TEST_F(Layout, NestsRowsAndLeavesOutCombinationsWithoutACell) {
  openMatchedSummary(procedure_);
  const TableLayout layout = onlyLayout(command_);
  EXPECT_EQ(described(layout.rowHeaders),
            "Cases@0,0; Count@0,1; Cases Compared@1,0+2,1; Count@1,1; Percent@2,1; Cases Not Compared@3,0+2,1; "
            "Count@3,1; Percent@4,1");
  EXPECT_EQ(described(layout.columnHeaders), "Datasets@0,0+1,2; Active@1,0; Comparison@1,1");
  EXPECT_EQ(described(layout.corner), "Results@0,0+2,1; Statistics@0,1+2,1");
  EXPECT_EQ(layout.rows, 5);
  EXPECT_EQ(layout.columns, 2);
  EXPECT_EQ(layout.cellsOf(2).size(), 2U);
}

TEST_F(Layout, StretchesACategoryOverTheLevelsOfTheGroupsBesideIt) {
  openCaseTable(procedure_, 1, 1);
  const TableLayout layout = onlyLayout(command_);
  EXPECT_EQ(described(layout.columnHeaders),
            "Case ID@0,0; Row@0,1+1,2; income1 (Income of the household)@0,3+2,1; id@1,0; Active@1,1; "
            "Comparison@1,2");
  EXPECT_TRUE(layout.corner.empty());
  EXPECT_EQ(described(layout.rowHeaders), "0@0,0");
}

TEST_F(Layout, PutsADimensionThatWasNeverPlacedInnermostInTheRows) {
  openValueLabels(procedure_);
  const TableLayout layout = onlyLayout(command_);
  EXPECT_EQ(described(layout.corner), "Variable@0,0+2,1; Value@0,1+2,1");
  EXPECT_EQ(layout.rows, 5);
}

TEST_F(Layout, KeepsCategoriesWithoutACellWhereOneDimensionStandsAlone) {
  openDictionary(procedure_);
  const TableLayout layout = onlyLayout(command_);
  EXPECT_EQ(layout.columns, 5);
  EXPECT_EQ(layout.headerRows, 4);
  EXPECT_EQ(described(layout.columnHeaders).substr(0, 21), "Attributes@0,0+1,5; W");
}

TEST_F(Layout, MakesOneGridPerCombinationOfTheLayers) {
  openLayers(procedure_);
  const std::vector<TableLayout> layouts = layoutsOf(command_.table(), english());
  ASSERT_EQ(layouts.size(), 2U);
  EXPECT_EQ(layouts[1].layers, std::vector<std::string>{"Sex: Male"});
  EXPECT_EQ(layouts[1].columns, 1);
  EXPECT_EQ(layouts[1].rows, 2);
}

TEST_F(Layout, IsNoneForATableWithoutACell) {
  BpPivotTable table = procedure_.PivotTable(key("Empty"), plain("Empty"), true);
  table.Dimension(plain("rows"), BpSort::asMade).Category(plain("a"));
  EXPECT_TRUE(layoutsOf(command_.table(), english()).empty());
}

TEST_F(Layout, TakesTheDefaultTitleWhereTheKeyHasNoWording) {
  BpPivotTable unknown = procedure_.PivotTable(key("A key that nobody knows"), plain("Default"), true);
  BpPivotTable known = procedure_.PivotTable(key("CD_DictCompTableName"), plain("Default"), true);
  EXPECT_EQ(headingOf(command_.table(0), english()), "Default");
  EXPECT_EQ(headingOf(command_.table(1), english()), "Dictionary Comparison");
}

TEST(FootnoteMarks, AreLettersAndGoOnWithTwo) {
  EXPECT_EQ(footnoteMark(0), "a");
  EXPECT_EQ(footnoteMark(25), "z");
  EXPECT_EQ(footnoteMark(26), "aa");
  EXPECT_EQ(footnoteMark(701), "zz");
  EXPECT_EQ(footnoteMark(702), "aaa");
}

}  // namespace
}  // namespace workbench::output
