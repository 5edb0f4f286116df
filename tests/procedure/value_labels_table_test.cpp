// The Value Labels Comparison table: which values it lists, and what stands beside them.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests::value_labels_table_test {

const std::string all = "/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=VALUELABELS";

DatasetBuilder::Change numbers(const std::vector<std::pair<double, std::string>>& labels) {
  return [=](data::Variable& variable) { variable.numberLabels = labels; };
}
DatasetBuilder::Change texts(const std::vector<std::pair<std::string, std::string>>& labels) {
  return [=](data::Variable& variable) { variable.textLabels = labels; };
}

TEST(ValueLabelsTable, PlacesTheVariablesTwiceAndLeavesTheValuesWhereTheHostPutsThem) {
  ProcedureRun run(dataset().numeric("x", {1}, numbers({{1, "one"}})), dataset().numeric("x", {1}));
  run.run(all);
  const output::Table* table = run.table(keys::valueLabels);
  EXPECT_EQ(shapeOf(table),
            "CD_Variable 2 (0,2,false,false) <x>\n"
            "CD_Value 2 (unplaced) x:1\n"
            "CD_Comparison 2 (1,1,true,false) [CD_Comparison true,2: CD_Active CD_Comparison CD_Mismatched]\n");
  EXPECT_EQ(exact(table->title), "CD_ValueLabelsCompTableName");
  EXPECT_EQ(exact(table->defaultTitle), "Value Labels Comparison");
  EXPECT_TRUE(table->flag);
  EXPECT_EQ(captionOf(table), "none");
  const int first = run.journalLine("Position(0, 1, false, false)", run.journalLine("CD_ValueLabelsCompTableName"));
  const int value = run.journalLine("Dimension(\"CD_Value\", 2)");
  const int second = run.journalLine("Position(0, 2, false, false)");
  EXPECT_LT(first, value);
  EXPECT_LT(value, second);
  EXPECT_EQ(run.journal()[static_cast<std::size_t>(first)].substr(0, 14),
            run.journal()[static_cast<std::size_t>(second)].substr(0, 14));
}

TEST(ValueLabelsTable, ListsTheValuesOfBothSidesInAscendingOrder) {
  ProcedureRun run(dataset().numeric("x", {1}, numbers({{-5, "a"}, {2, "b"}, {10, "same"}})),
                   dataset().numeric("x", {1}, numbers({{1.5, "c"}, {2, "B"}, {10, "same"}})));
  run.run(all);
  EXPECT_EQ(cellsOf(run.table(keys::valueLabels)),
            "<x>|x:-5|CD_Active = \"a\"\n"
            "<x>|x:-5|CD_Comparison = \".\"\n"
            "<x>|x:-5|CD_Mismatched = CD_Mismatch\n"
            "<x>|x:1.5|CD_Active = \".\"\n"
            "<x>|x:1.5|CD_Comparison = \"c\"\n"
            "<x>|x:1.5|CD_Mismatched = CD_Mismatch\n"
            "<x>|x:2|CD_Active = \"b\"\n"
            "<x>|x:2|CD_Comparison = \"B\"\n"
            "<x>|x:2|CD_Mismatched = CD_Mismatch\n"
            "<x>|x:10|CD_Active = \"same\"\n"
            "<x>|x:10|CD_Comparison = \"same\"\n"
            "<x>|x:10|CD_Mismatched = \"\"\n");
}

TEST(ValueLabelsTable, ListsNumbersThatAreOnlyNearlyTheSameSingly) {
  ProcedureRun run(dataset().numeric("x", {1}, numbers({{0.3, "a"}})),
                   dataset().numeric("x", {1}, numbers({{0.1 + 0.2, "a"}})));
  run.run(all);
  EXPECT_EQ(cellsOf(run.table(keys::valueLabels)),
            "<x>|x:0.3|CD_Active = \"a\"\n"
            "<x>|x:0.3|CD_Comparison = \".\"\n"
            "<x>|x:0.3|CD_Mismatched = CD_Mismatch\n"
            "<x>|x:0.30000000000000004|CD_Active = \".\"\n"
            "<x>|x:0.30000000000000004|CD_Comparison = \"a\"\n"
            "<x>|x:0.30000000000000004|CD_Mismatched = CD_Mismatch\n");
}

TEST(ValueLabelsTable, ListsTextsInTheOrderOfTheirBytes) {
  ProcedureRun run(dataset().text("t", 4, {"a"}, texts({{"Z", "upper"}, {"a", "lower"}, {"\xc3\xa9", "accent"}})),
                   dataset().text("t", 8, {"a"}, texts({{"A", "other"}, {"a", "lower"}})));
  run.run(all);
  EXPECT_EQ(cellsOf(run.table(keys::valueLabels)),
            "<t>|t:\"A\"|CD_Active = \".\"\n"
            "<t>|t:\"A\"|CD_Comparison = \"other\"\n"
            "<t>|t:\"A\"|CD_Mismatched = CD_Mismatch\n"
            "<t>|t:\"Z\"|CD_Active = \"upper\"\n"
            "<t>|t:\"Z\"|CD_Comparison = \".\"\n"
            "<t>|t:\"Z\"|CD_Mismatched = CD_Mismatch\n"
            "<t>|t:\"a\"|CD_Active = \"lower\"\n"
            "<t>|t:\"a\"|CD_Comparison = \"lower\"\n"
            "<t>|t:\"a\"|CD_Mismatched = \"\"\n"
            "<t>|t:\"\xc3\xa9\"|CD_Active = \"accent\"\n"
            "<t>|t:\"\xc3\xa9\"|CD_Comparison = \".\"\n"
            "<t>|t:\"\xc3\xa9\"|CD_Mismatched = CD_Mismatch\n");
}

TEST(ValueLabelsTable, ShowsVariablesAndValuesUnderTheActiveVariable) {
  ProcedureRun run(dataset().numeric("X", {1}).text("T", 1, {"a"}),
                   dataset().numeric("x", {1}, numbers({{1, "one"}})).text("t", 1, {"a"}, texts({{"a", "A"}})));
  run.run(all);
  EXPECT_EQ(shapeOf(run.table(keys::valueLabels)).substr(0, 72),
            "CD_Variable 2 (0,2,false,false) <X> <T>\nCD_Value 2 (unplaced) X:1 T:\"a\"\n");
}

TEST(ValueLabelsTable, MarksEveryValueOfAVariableThatHasLabelsOnOneSideOnly) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}, numbers({{1, "one"}, {2, "two"}})));
  run.run(all);
  EXPECT_EQ(cellsOf(run.table(keys::valueLabels)),
            "<x>|x:1|CD_Active = \".\"\n"
            "<x>|x:1|CD_Comparison = \"one\"\n"
            "<x>|x:1|CD_Mismatched = CD_Mismatch\n"
            "<x>|x:2|CD_Active = \".\"\n"
            "<x>|x:2|CD_Comparison = \"two\"\n"
            "<x>|x:2|CD_Mismatched = CD_Mismatch\n");
}

TEST(ValueLabelsTable, TellsLabelsThatReadLikeNoneFromNone) {
  // A label that is a point reads like an absent one, and is none.
  ProcedureRun run(dataset().numeric("x", {1}, numbers({{1, "."}, {2, ""}, {3, "x"}})),
                   dataset().numeric("x", {1}, numbers({{2, ""}})));
  run.run(all);
  EXPECT_EQ(run.cell(keys::valueLabels, {"x", "1", "CD_Mismatched"}), "CD_Mismatch");
  EXPECT_EQ(run.cell(keys::valueLabels, {"x", "2", "CD_Active"}), "");
  EXPECT_EQ(run.cell(keys::valueLabels, {"x", "2", "CD_Mismatched"}), "");
}

TEST(ValueLabelsTable, ListsVariableByVariableThoseThatDifferOnly) {
  ProcedureRun run(dataset()
                       .numeric("x", {1}, numbers({{1, "one"}}))
                       .numeric("same", {1}, numbers({{1, "one"}}))
                       .text("t", 1, {"a"}, texts({{"a", "A"}}))
                       .numeric("gone", {1}, numbers({{1, "one"}}))
                       .text("kind", 1, {"a"}, texts({{"a", "A"}})),
                   dataset()
                       .text("t", 1, {"a"})
                       .numeric("same", {1}, numbers({{1, "one"}}))
                       .numeric("x", {1}, numbers({{1, "uno"}}))
                       .numeric("kind", {1}, numbers({{1, "one"}})));
  run.run(all);
  EXPECT_EQ(cellsOf(run.table(keys::valueLabels)),
            "<x>|x:1|CD_Active = \"one\"\n"
            "<x>|x:1|CD_Comparison = \"uno\"\n"
            "<x>|x:1|CD_Mismatched = CD_Mismatch\n"
            "<t>|t:\"a\"|CD_Active = \"A\"\n"
            "<t>|t:\"a\"|CD_Comparison = \".\"\n"
            "<t>|t:\"a\"|CD_Mismatched = CD_Mismatch\n");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.table(keys::valueLabels, 1), nullptr);  // it is written once
}

TEST(ValueLabelsTable, ListsVariablesAndTheirValuesAsTheActiveDatasetHasThem) {
  ProcedureRun run(dataset().numeric("Age", {1}).text("Kind", 2, {"a"}),
                   dataset().numeric("AGE", {1}, numbers({{1, "one"}})).text("KIND", 2, {"a"}, texts({{"a", "A"}})));
  run.run(all);
  EXPECT_EQ(cellsOf(run.table(keys::valueLabels)),
            "<Age>|Age:1|CD_Active = \".\"\n"
            "<Age>|Age:1|CD_Comparison = \"one\"\n"
            "<Age>|Age:1|CD_Mismatched = CD_Mismatch\n"
            "<Kind>|Kind:\"a\"|CD_Active = \".\"\n"
            "<Kind>|Kind:\"a\"|CD_Comparison = \"A\"\n"
            "<Kind>|Kind:\"a\"|CD_Mismatched = CD_Mismatch\n");
}

TEST(ValueLabelsTable, ShowsTheLabelsOfOneValueUnderEachVariableThatHasIt) {
  ProcedureRun run(dataset().numeric("x", {1}, numbers({{1, "a"}})).numeric("y", {1}, numbers({{1, "b"}})),
                   dataset().numeric("x", {1}).numeric("y", {1}));
  run.run(all);
  EXPECT_EQ(run.cell(keys::valueLabels, {"x", "1", "CD_Active"}), "a");
  EXPECT_EQ(run.cell(keys::valueLabels, {"y", "1", "CD_Active"}), "b");
}

}  // namespace workbench::tests::value_labels_table_test
