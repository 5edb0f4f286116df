// The flag variable: when it is made, under which name, and as what.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"

namespace workbench::tests::flag_variable_test {

using Lines = std::vector<std::string>;

DatasetBuilder cases() { return dataset().numeric("x", {1, 2, 3}); }
DatasetBuilder filtered() {
  return dataset().numeric("x", {1, 2, 3}).numeric("chosen", {1, 0, 1}).with([](data::Dictionary& dictionary) {
    dictionary.filter = 1;
  });
}

// The calls that make the variable, the destruction of texts left out.
Lines makingOf(const ProcedureRun& run) {
  return run.journalLines({".SetUseFilter(", ".SetSplitEndCheck(", ".SetMaxObsAdded(", ".GoodVarName(",
                           ".MakeVariable(0, ", ".SetName(", ".SetFormat(", ".SetMeasurementLevel(",
                           "VrixServerErrorText", ".SetLabel(", ".AddValueLabel("});
}

TEST(FlagVariable, IsMadeByTheseCallsInThisOrder) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(makingOf(run),
            (Lines{"ProcedureDataSource#1.SetUseFilter(false)",
                   "ProcedureDataSource#1.SetSplitEndCheck(false)",
                   "ProcedureDataSource#1.SetMaxObsAdded(1)",
                   "ProcedureDataSource#1.GoodVarName(\"CasesCompare\") -> \"CasesCompare\"",
                   "ProcedureDataSource#1.MakeVariable(0, null) -> VRIX_Variable(Variable)",
                   "VRIX_Variable(Variable).SetName(\"CasesCompare\")",
                   "VRIX_Variable(CasesCompare).SetFormat(5, 1, 0)",
                   "VRIX_Variable(CasesCompare).SetMeasurementLevel(1)",
                   "VrixServerErrorText#1 = VrixServerErrorText(\"vrix.err\", 8023)",
                   "VrixServerErrorText#1.GetText()",
                   "VRIX_Variable(CasesCompare).SetLabel(\"Comparison with the other dataset\")",
                   "~VrixServerErrorText#1",
                   "VrixServerErrorText#2 = VrixServerErrorText(\"vrix.err\", 8020)",
                   "VrixServerErrorText#2.GetText()",
                   "VRIX_Variable(CasesCompare).AddValueLabel(1, \"Mismatched\")",
                   "~VrixServerErrorText#2",
                   "VrixServerErrorText#3 = VrixServerErrorText(\"vrix.err\", 8021)",
                   "VrixServerErrorText#3.GetText()",
                   "VRIX_Variable(CasesCompare).AddValueLabel(0, \"Matched\")",
                   "~VrixServerErrorText#3",
                   "VrixServerErrorText#4 = VrixServerErrorText(\"vrix.err\", 8022)",
                   "VrixServerErrorText#4.GetText()",
                   "VRIX_Variable(CasesCompare).AddValueLabel(-1, \"No partner in the comparison dataset\")",
                   "~VrixServerErrorText#4"}));
}

TEST(FlagVariable, StandsInTheActiveDatasetAsANominalNumberOfWidthOneWithALabelAndThreeValueLabels) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  const data::Dictionary& dictionary = run.active()->dictionary();
  ASSERT_EQ(dictionary.find("CasesCompare"), 1);
  const data::Variable& flag = dictionary.at(1);
  EXPECT_EQ(flag.width, 0);
  EXPECT_EQ(flag.format.type, FormatType::number);
  EXPECT_EQ(flag.format.width, 1);
  EXPECT_EQ(flag.format.decimals, 0);
  EXPECT_EQ(flag.level, VRIX_Variable_Enumerations::MeasurementLevel::nominal);
  EXPECT_EQ(flag.label, "Comparison with the other dataset");
  using Labels = std::vector<std::pair<double, std::string>>;
  EXPECT_EQ(flag.numberLabels,
            (Labels{{-1, "No partner in the comparison dataset"}, {0, "Matched"}, {1, "Mismatched"}}));
}

TEST(FlagVariable, IsLabelledInTheLanguageOfTheHostsCatalog) {
  ProcedureRun run(cases(), cases());
  run.language = "de";
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  const data::Variable& flag = run.active()->dictionary().at(1);
  EXPECT_EQ(flag.label, "Vergleich mit dem anderen Dataset");
  EXPECT_EQ(flag.numberLabels[0].second, "Ohne Gegenstück im Vergleichsdataset");
  EXPECT_EQ(flag.numberLabels[1].second, "Übereinstimmend");
  EXPECT_EQ(flag.numberLabels[2].second, "Abweichend");
}

TEST(FlagVariable, IsMadeOnEveryRunThatDoesNotSwitchItOff) {
  for (const char* save : {"", " /SAVE", " /SAVE VARNAME=CasesCompare", " /SAVE FLAGMISMATCHES=YES",
                           " /SAVE MATCHDATASET=NO", " /OUTPUT CASETABLE=NO"}) {
    ProcedureRun run(cases(), cases());
    run.run(std::string("/COMPDATASET=b /VARIABLES=ALL") + save);
    EXPECT_EQ(run.values("CasesCompare"), "0 0 0") << save;
    EXPECT_EQ(run.notes(), "3: ||CasesCompare\n") << save;
  }
}

TEST(FlagVariable, IsNeitherMadeNorLookedForNorNotedWhenItIsSwitchedOff) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE FLAGMISMATCHES=NO");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(makingOf(run), Lines());
  EXPECT_EQ(run.active()->dictionary().size(), 1);
  EXPECT_EQ(run.notes(), "");
  EXPECT_EQ(run.journalLine("ProcedureDataSource#1.FindVarIndex(\"\""), -1);
}

TEST(FlagVariable, IgnoresItsNameWhenItIsSwitchedOff) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE FLAGMISMATCHES=NO VARNAME=mark");
  EXPECT_EQ(run.active()->dictionary().size(), 1);
}

TEST(FlagVariable, HasTheNameThatSaveGives) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE VARNAME=mark");
  EXPECT_EQ(run.values("mark"), "0 0 0");
  EXPECT_EQ(run.notes(), "3: ||mark\n");
}

TEST(FlagVariable, IsNotedByItsNameAsItStandsAlsoWhenThatReadsLikeAKey) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE VARNAME=CD_Matched");
  EXPECT_EQ(run.notes(), "3: ||CD_Matched\n");
  const output::Note* note = nullptr;
  for (const output::Item& item : run.command().items) {
    if (std::holds_alternative<output::Note>(item)) note = &std::get<output::Note>(item);
  }
  ASSERT_NE(note, nullptr);
  EXPECT_FALSE(std::get<output::StringText>(note->texts[2].held).translate);
}

TEST(FlagVariable, HasTheDefaultNameWhenTheGivenOneIsEmpty) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE VARNAME=''");
  EXPECT_EQ(run.values("CasesCompare"), "0 0 0");
}

TEST(FlagVariable, HasTheNameThatTheHostMakesOfATakenOne) {
  ProcedureRun run(dataset().numeric("x", {1, 2}).numeric("CASESCOMPARE", {7, 8}), cases());
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.values("CASESCOMPARE"), "7 8");
  EXPECT_EQ(run.values("CasesCompare_1"), "0 0");
  EXPECT_EQ(run.notes(), "3: ||CasesCompare_1\n");
  EXPECT_NE(run.journalLine("ProcedureDataSource#1.FindVarIndex(\"CasesCompare_1\", 0) -> 2"), -1);
}

TEST(FlagVariable, MakesTheRunReadTheCasesThatTheFilterLeavesOut) {
  ProcedureRun run(filtered(), cases());
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.values("CasesCompare"), "0 0 0");
  EXPECT_EQ(run.cell("CD_CompSummaryTableName", {"CD_Cases", "CD_Active"}, 1), "3");
}

TEST(FlagVariable, LeavesTheActiveDatasetsFilterInForceWhenItIsSwitchedOff) {
  ProcedureRun run(filtered(), cases());
  run.run("/COMPDATASET=b /VARIABLES=x /SAVE FLAGMISMATCHES=NO");
  EXPECT_EQ(run.cell("CD_CompSummaryTableName", {"CD_Cases", "CD_Active"}, 1), "2");
  EXPECT_EQ(run.cell("CD_CompSummaryTableName", {"CD_Cases", "CD_Comparison"}, 1), "3");
}

TEST(FlagVariable, DoesNotTouchTheComparisonDatasetsFilterWhichIsNeverApplied) {
  ProcedureRun run(cases(), filtered());
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.cell("CD_CompSummaryTableName", {"CD_Cases", "CD_Comparison"}, 1), "3");
  EXPECT_EQ(run.journalLine("VRIX_DataSource#1.SetUseFilter"), -1);
}

}  // namespace workbench::tests::flag_variable_test
