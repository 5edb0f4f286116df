// The Dictionary Comparison table: its columns, its rows, its cells.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests::dictionary_table_test {

namespace enumerations = VRIX_Variable_Enumerations;

const std::string all = "/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=";
const std::string two = "\"(1) ^1\\n(2) ^2\"";

std::string cellsWith(const std::string& properties, const DatasetBuilder& active, const DatasetBuilder& compared) {
  ProcedureRun run(active, compared);
  run.run(all + properties);
  return cellsOf(run.table(keys::dictionary));
}

TEST(DictionaryTable, HasAColumnPerSelectedPropertyWithTheMeasurementLevelBehindTheAlignment) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}, [](data::Variable& x) { x.label = "X"; }));
  run.run(all + "ROLE MEASURE ALIGN COLUMNS MISSING VALUELABELS LABEL WIDTH");
  const output::Table* table = run.table(keys::dictionary);
  EXPECT_EQ(shapeOf(table),
            "CD_Variable 2 (0,1,false,false) <x>\n"
            "CD_Attributes 2 (1,1,false,false) CD_AttributeWidth CD_AttributeLabel CD_AttributeValueLabels "
            "CD_AttributeMissing CD_AttributeColumns CD_AttributeAlign CD_AttributeMeasure CD_AttributeRole\n");
  EXPECT_EQ(exact(table->title), "CD_DictCompTableName");
  EXPECT_EQ(exact(table->defaultTitle), "Dictionary Comparison");
  EXPECT_TRUE(table->flag);
  EXPECT_EQ(captionOf(table), "(1) is the Active Datset an...");
}

TEST(DictionaryTable, LeavesOutThePropertiesThatWereNotSelected) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}, [](data::Variable& x) { x.label = "X"; }));
  EXPECT_EQ(run.run(all + "LABEL ROLE").categories(keys::dictionary, 1), "CD_AttributeLabel CD_AttributeRole");
}

TEST(DictionaryTable, HasARowForEveryComparedVariableAlsoWhereAllAgrees) {
  ProcedureRun run(dataset().numeric("x", {1}).numeric("gone", {1}).numeric("y", {1}),
                   dataset().numeric("y", {1}, [](data::Variable& y) { y.label = "Y"; }).numeric("x", {1}));
  run.run(all + "LABEL COLUMNS");
  EXPECT_EQ(cellsOf(run.table(keys::dictionary)),
            "<x>|CD_AttributeLabel = \"\"\n"
            "<x>|CD_AttributeColumns = \"\"\n"
            "<y>|CD_AttributeLabel = " +
                two +
                "{\"\"|\"Y\"}\n"
                "<y>|CD_AttributeColumns = \"\"\n");
}

TEST(DictionaryTable, ListsVariablesAsTheActiveDatasetNamesThem) {
  ProcedureRun run(dataset().numeric("Age", {1}),
                   dataset().numeric("AGE", {1}, [](data::Variable& age) { age.label = "Years"; }));
  run.run(all + "LABEL");
  EXPECT_EQ(cellsOf(run.table(keys::dictionary)), "<Age>|CD_AttributeLabel = " + two + "{\"\"|\"Years\"}\n");
}

TEST(DictionaryTable, ShowsBothValuesOfEveryPropertyThatDiffers) {
  const auto left = [](data::Variable& x) {
    x.format = {FormatType::number, 8, 2};
    x.label = "Left";
    x.missing.code = 1;
    x.missing.values[0].number = 9;
    x.displayWidth = 10;
    x.alignment = enumerations::Alignment::left;
    x.level = enumerations::MeasurementLevel::nominal;
    x.role = enumerations::Role::input;
  };
  const auto right = [](data::Variable& x) {
    x.format = {FormatType::number, 12, 2};
    x.label = "Right";
    x.displayWidth = 20;
    x.alignment = enumerations::Alignment::right;
    x.level = enumerations::MeasurementLevel::unknown;
    x.role = enumerations::Role::recordID;
  };
  EXPECT_EQ(cellsWith("ALL", dataset().numeric("x", {1}, left), dataset().numeric("x", {1}, right)),
            "<x>|CD_AttributeWidth = " + two +
                "{8|12}\n"
                "<x>|CD_AttributeLabel = " +
                two +
                "{\"Left\"|\"Right\"}\n"
                "<x>|CD_AttributeValueLabels = \"\"\n"
                "<x>|CD_AttributeMissing = " +
                two +
                "{\"[%1:, ^1:]1\"{[x:9]}|\"\"{}}\n"
                "<x>|CD_AttributeColumns = " +
                two +
                "{10|20}\n"
                "<x>|CD_AttributeAlign = " +
                two +
                "{CD_Left|CD_Right}\n"
                "<x>|CD_AttributeMeasure = " +
                two +
                "{CD_Nominal|CD_Unknown}\n"
                "<x>|CD_AttributeRole = " +
                two + "{CD_InputRole|CD_RecordIDRole}\n");
}

TEST(DictionaryTable, ShowsAMissingLabelAsAnEmptyText) {
  EXPECT_EQ(cellsWith("LABEL", dataset().numeric("x", {1}, [](data::Variable& x) { x.label = "X"; }),
                      dataset().numeric("x", {1})),
            "<x>|CD_AttributeLabel = " + two + "{\"X\"|\"\"}\n");
}

TEST(DictionaryTable, MarksDifferingValueLabelsWithOneFootnote) {
  const auto labelled = [](data::Variable& x) { x.numberLabels = {{1, "one"}}; };
  ProcedureRun run(dataset().numeric("x", {1}, labelled).numeric("y", {1}).numeric("z", {1}, labelled),
                   dataset().numeric("x", {1}).numeric("y", {1}).numeric("z", {1}));
  run.run(all + "VALUELABELS");
  const output::Table* table = run.table(keys::dictionary);
  EXPECT_EQ(cellsOf(table),
            "<x>|CD_AttributeValueLabels = CD_Mismatch^0\n"
            "<y>|CD_AttributeValueLabels = \"\"\n"
            "<z>|CD_AttributeValueLabels = CD_Mismatch^0\n");
  ASSERT_EQ(table->footnotes.size(), 1U);
  EXPECT_EQ(exact(table->footnotes[0]), "See the Value Labels Com...");
  EXPECT_NE(run.table(keys::valueLabels), nullptr);
}

TEST(DictionaryTable, IsFollowedByNoValueLabelsTableWhenTheLabelsAgreeOrWereNotSelected) {
  const auto labelled = [](data::Variable& x) { x.numberLabels = {{1, "one"}}; };
  const auto alsoNamed = [](data::Variable& x) {
    x.numberLabels = {{1, "one"}};
    x.label = "X";
  };
  ProcedureRun agreeing(dataset().numeric("x", {1}, labelled), dataset().numeric("x", {1}, alsoNamed));
  agreeing.run(all + "ALL");
  EXPECT_NE(agreeing.table(keys::dictionary), nullptr);
  EXPECT_EQ(agreeing.table(keys::valueLabels), nullptr);
  EXPECT_TRUE(agreeing.table(keys::dictionary)->footnotes.empty());
  ProcedureRun notSelected(dataset().numeric("x", {1}), dataset().numeric("x", {1}, alsoNamed));
  notSelected.run(all + "LABEL");
  EXPECT_EQ(notSelected.table(keys::valueLabels), nullptr);
}

TEST(DictionaryTable, HasAColumnForEveryAttributeNameInTheirOrderWhoeverCarriesThem) {
  const auto with = [](const std::vector<std::pair<std::string, std::vector<std::string>>>& attributes) {
    return [=](data::Variable& variable) {
      for (const auto& [name, values] : attributes) variable.attributes.Add(name, values);
    };
  };
  ProcedureRun run(dataset()
                       .numeric("x", {1}, with({{"Unit", {"EUR"}}, {"$Host", {"1"}}, {"Source", {"Q1", "Q2"}}}))
                       .numeric("y", {1})
                       .numeric("gone", {1}, with({{"Hidden", {"1"}}})),
                   dataset()
                       .numeric("x", {1}, with({{"Unit", {"EUR"}}, {"Source", {"Q1, Q3"}}}))
                       .numeric("y", {1}, with({{"Age", {"9"}}, {"unit", {""}}})));
  run.run(all + "ATTRIBUTES");
  const output::Table* table = run.table(keys::dictionary);
  EXPECT_EQ(shapeOf(table),
            "CD_Variable 2 (0,1,false,false) <x> <y>\n"
            "CD_Attributes 2 (1,1,false,false) [ID true,2: [CD_AttributeCustom true,2: \"Age\" \"Source\" \"Unit\" "
            "\"unit\"]]\n");
  EXPECT_EQ(cellsOf(table),
            "<x>|\"Source\" = " + two +
                "{\"Q1, Q2\"|\"Q1, Q3\"}\n"
                "<x>|\"Unit\" = \"\"\n"
                "<y>|\"Age\" = " +
                two +
                "{\"\"|\"9\"}\n"
                "<y>|\"unit\" = \"\"\n");  // an empty value reads like none
}

TEST(DictionaryTable, ShowsAnAttributeOfTheActiveVariableAlone) {
  EXPECT_EQ(cellsWith("ATTRIBUTES",
                      dataset().numeric("x", {1}, [](data::Variable& x) { x.attributes.Add("Unit", {"EUR", "USD"}); }),
                      dataset().numeric("x", {1})),
            "<x>|\"Unit\" = " + two + "{\"EUR, USD\"|\"\"}\n");
}

TEST(DictionaryTable, TellsAttributeValuesThatDifferInCase) {
  const auto with = [](const std::string& unit) {
    return [=](data::Variable& x) { x.attributes.Add("Unit", {unit}); };
  };
  EXPECT_EQ(cellsWith("ATTRIBUTES", dataset().numeric("x", {1}, with("EUR")), dataset().numeric("x", {1}, with("eur"))),
            "<x>|\"Unit\" = " + two + "{\"EUR\"|\"eur\"}\n");
}

TEST(DictionaryTable, HasNoColumnForAttributesThatWereNotSelected) {
  const auto with = [](data::Variable& x) {
    x.attributes.Add("Unit", {"EUR"});
    x.label = "X";
  };
  ProcedureRun run(dataset().numeric("x", {1}, with), dataset().numeric("x", {1}));
  run.run(all + "LABEL");
  EXPECT_EQ(run.categories(keys::dictionary, 1), "CD_AttributeLabel");
}

TEST(DictionaryTable, IsOpenedWithoutAColumnOrRowWhenNothingIsExamined) {
  // No variable was named, so none differs; but none agrees either, and that is what keeps the table away.
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}));
  run.run("/COMPDATASET=b /VARIABLES /OUTPUT VARPROPERTIES=ALL");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(shapeOf(run.table(keys::dictionary)),
            "CD_Variable 2 (0,1,false,false)\nCD_Attributes 2 (1,1,false,false)\n");
  EXPECT_EQ(run.table(keys::valueLabels), nullptr);
  EXPECT_EQ(run.messages(), "4/1 All values in the tw...\n");
}

TEST(DictionaryTable, HasNoRowForTheFlagVariable) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}, [](data::Variable& x) { x.label = "X"; }));
  EXPECT_EQ(run.run(all + "ALL").categories(keys::dictionary, 0), "x");
}

TEST(DictionaryTable, StandsBeforeTheTablesOfCases) {
  const auto labelled = [](data::Variable& x) { x.numberLabels = {{1, "one"}}; };
  ProcedureRun run(dataset().numeric("x", {1}, labelled), dataset().numeric("x", {2}));
  run.run(all + "ALL");
  EXPECT_EQ(run.tables(),
            "CD_CompSummaryTableName(10) CD_DictCompTableName(8) CD_ValueLabelsCompTableName(3) "
            "CD_MatchedSummaryTableName(10) CD_MismatchedByCasesTableName(3) CD_MismatchedByVarsTableName(2) "
            "CD_CaseByCaseComparisonTableName(3) CD_CompSummaryTableName(2)");
}

}  // namespace workbench::tests::dictionary_table_test
