// The run of one command: its stages in their order, and what each way out does and leaves behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "tests/procedure/procedure_run.h"

namespace workbench::tests::run_sequence_test {

using data::testing::TemporaryFolder;
using Lines = std::vector<std::string>;

DatasetBuilder threeCases() { return dataset().numeric("id", {1, 2, 3}).numeric("x", {1, 2, 3}); }
DatasetBuilder threeOthers() { return dataset().numeric("id", {1, 2, 3}).numeric("x", {1, 2, 4}); }
DatasetBuilder unsorted() { return dataset().numeric("id", {3, 2, 1}).numeric("x", {1, 2, 3}); }

const std::string plainCommand = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";

// What is destroyed behind the first line with that text, texts left out.
Lines destroyedAfter(const ProcedureRun& run, const std::string& text) {
  static const Lines texts = {"~BpString", "~BpNumber", "~BpVariable", "~BpDataValue", "~BpComposite"};
  Lines found;
  const int first = run.journalLine(text);
  if (first < 0) return {"no line with " + text};
  for (auto line = run.journal().begin() + first + 1; line != run.journal().end(); ++line) {
    const bool isText =
        std::any_of(texts.begin(), texts.end(), [&](const std::string& type) { return line->starts_with(type); });
    if (line->starts_with("~") && !isText) found.push_back(*line);
  }
  return found;
}

// The end of every run: the parser object, the active dataset, the tokens, the output.
Lines thenTheLastObjects(Lines first) {
  for (const char* last : {"~VarSpecObj#2", "~VarSpecObj#1", "~CommandDescriptor#1", "~ProcedureDataSource#1",
                           "~VRIX_TokenSequence#1", "~BpProcedure#1"}) {
    first.emplace_back(last);
  }
  return first;
}

TEST(RunSequence, OpensTheOutputTheTokensAndTheActiveDatasetBeforeTheOptionsAndTheParser) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand);
  const Lines first(run.journal().begin(), run.journal().begin() + 8);
  EXPECT_EQ(first,
            (Lines{"# COMPARE DATASETS", "BpProcedure#1 = BpProcedure(\"Compare Datasets\", 7)",
                   "VRIX_TokenSequence#1 = VRIX_TokenSequence(true)", "ProcedureDataSource#1 = ProcedureDataSource()",
                   "UserCaseFileSpec#1 = UserCaseFileSpec()",
                   "CommandDescriptor#1 = CommandDescriptor(\"COMPARE DATASETS\", \"Compare Datasets\")",
                   "VarSpecObj#1 = VarSpecObj(\"\", \"VARIABLES\", CommandDescriptor#1, ProcedureDataSource#1, false)",
                   "VarSpecObj#2 = VarSpecObj(\"\", \"CASEID\", CommandDescriptor#1, ProcedureDataSource#1, false)"}));
}

TEST(RunSequence, PassesThroughAllStagesInOrder) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand + " /OUTPUT VARPROPERTIES=LABEL");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.missingInOrder({
                "getCommandSpecifications() -> 0",
                "~CommandSpec#1",
                "pvGetCmnGlb()",           // a pending error?
                ".MakeVariable(0, null)",  // the flag variable
                "UserCaseFileSpec#2 = UserCaseFileSpec()",
                "UserCaseFileSpec#3 = UserCaseFileSpec()",
                "HostAdapter.GetActiveDataset()",  // the same dataset?
                "ServerDataManager::GetInstance()",
                "ServerDataManager.GetDataSet(\"b\")",                                    // looked up
                "SvrDMInputDataSource#1 = SvrDMInputDataSource(SvrDMDataset(b), false)",  // and opened
                "SvrDMInputDataSource#1.GetHandle()",
                "*SvrDMInputDataSource#1",
                "ProcedureDataSource#1.FindVarIndex(\"CasesCompare\", 0)",  // the comparer is made
                "VRIX_DataSource#1.FindVarIndex(\"id\", 0)",                // case ID validation
                "BpPivotTable#1 = BpProcedure#1.PivotTable(",
                "~BpPivotTable#1",                          // what is compared
                "VRIXMBstricmp_A(\"LABEL\", \"MEASURE\")",  // variable matching
                "BpPivotTable#2 = BpProcedure#1.PivotTable(",
                "BpPivotTable#5 = BpProcedure#1.PivotTable(",
                "VRIX_DataSource#1.CreateCaseIterator(0)",
                "~VRIX_InputCaseIterator#1",  // the walk
                "BpPivotTable#2.Dimension(",
                "BpPivotTable#3.Dimension(",
                "BpPivotTable#4.MinDataColumnWidth(",
                "BpPivotTable#6 = BpProcedure#1.PivotTable(",
                "~BpPivotTable#6",  // the case counts
            }),
            "");
  EXPECT_EQ(run.tables(),
            "CD_CompSummaryTableName(10) CD_MatchedSummaryTableName(10) CD_MismatchedByCasesTableName(3) "
            "CD_MismatchedByVarsTableName(4) CD_CaseByCaseComparisonTableName(4) CD_CompSummaryTableName(2)");
}

TEST(RunSequence, OpensEveryTableFromItsKeyAndItsDefaultTitleWithTheFlagSet) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand);
  const std::string opened = " = BpProcedure#1.PivotTable(";
  EXPECT_EQ(
      run.journalLines({".PivotTable("}),
      (Lines{"BpPivotTable#1" + opened + "\"CD_CompSummaryTableName\", \"Comparison Summary\", true)",
             "BpPivotTable#2" + opened + "\"CD_MatchedSummaryTableName\", \"Matched Summary\", true)",
             "BpPivotTable#3" + opened + "\"CD_MismatchedByCasesTableName\", \"Mismatched By Cases\", true)",
             "BpPivotTable#4" + opened + "\"CD_MismatchedByVarsTableName\", \"Mismatched By Variables\", true)",
             "BpPivotTable#5" + opened + "\"CD_CaseByCaseComparisonTableName\", \"Case By Case Comparison\", true)",
             "BpPivotTable#6" + opened + "\"CD_CompSummaryTableName\", \"CD_CompSummaryTemplateName\", true)"}));
}

TEST(RunSequence, ClosesTheComparisonDatasetThenFinishesTheTablesTheLastOpenedFirst) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand);
  EXPECT_EQ(destroyedAfter(run, "BpPivotTable#6 = "),
            thenTheLastObjects({"~BpPivotTable#6", "~SvrDMInputDataSource#1", "~VRIX_DataSource#1", "~BpPivotTable#5",
                                "~BpPivotTable#4", "~BpPivotTable#3", "~BpPivotTable#2", "~UserCaseFileSpec#3",
                                "~UserCaseFileSpec#2"}));
  EXPECT_EQ(run.journal().back(), "~BpProcedure#1");
}

TEST(RunSequence, ClosesTheComparisonDataFileBeforeItFinishesTheTables) {
  const TemporaryFolder folder;
  const std::string file = folder.write("b.csv", "id,x\n1,1\n2,2\n3,4\n");
  ProcedureRun run(threeCases(), threeOthers());
  run.run("/COMPDATASET='" + file + "' /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(destroyedAfter(run, "BpPivotTable#6 = "),
            thenTheLastObjects({"~BpPivotTable#6", "~VRIX_DataSource#1", "~BpPivotTable#5", "~BpPivotTable#4",
                                "~BpPivotTable#3", "~BpPivotTable#2", "~UserCaseFileSpec#3", "~UserCaseFileSpec#2"}));
}

TEST(RunSequence, ACommandThatCannotBeParsedEndsBeforeAnythingIsLookedAt) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand + " /NOSUCH=1");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_TRUE(run.messages().starts_with("parser: ")) << run.messages();
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.values("CasesCompare"), "no variable");
  EXPECT_EQ(destroyedAfter(run, "getCommandSpecifications() -> 1"),
            thenTheLastObjects({"~ParserMessage#1", "~UniversalParser#1", "~CommandSpec#1"}));
  EXPECT_EQ(run.journalLine("pvGetCmnGlb"), -1);
}

TEST(RunSequence, APendingErrorAfterAGoodParseEndsTheRunSilently) {
  ProcedureRun run(threeCases(), threeOthers());
  run.beforeCall = [] { pvGetCmnGlb()->pendingError = 1; };
  run.run(plainCommand);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.values("CasesCompare"), "no variable");
  const int parsed = run.journalLine("~CommandSpec#1");
  const int looked = run.journalLine("pvGetCmnGlb()", parsed);
  ASSERT_GT(looked, parsed);
  const Lines rest(run.journal().begin() + looked + 1, run.journal().end());
  EXPECT_EQ(rest, thenTheLastObjects({}));
}

TEST(RunSequence, ANegativePendingErrorEndsTheRunAsWell) {
  ProcedureRun run(threeCases(), threeOthers());
  run.beforeCall = [] { pvGetCmnGlb()->pendingError = -7; };
  run.run(plainCommand);
  EXPECT_EQ(run.journalLine("MakeVariable"), -1);
  EXPECT_EQ(run.tables() + run.messages(), "");
}

TEST(RunSequence, ARefusalOfTheNamesReleasesTheOutputsAndDefinesTheFlagVariableAllTheSame) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run("/COMPDATASET=a /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.messages(),
            "2/3 The active dataset and the comparison dataset are the same dataset. No comparison was performed.\n");
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.values("CasesCompare"), ". . .");
  EXPECT_EQ(destroyedAfter(run, "BpError("), thenTheLastObjects({"~UserCaseFileSpec#3", "~UserCaseFileSpec#2"}));
  EXPECT_EQ(run.journalLine("ServerDataManager"), -1);
}

TEST(RunSequence, RefusedCaseIdsEndTheRunBeforeAnyTableAndLeaveTheComparisonDatasetOpen) {
  ProcedureRun run(threeCases(), dataset().numeric("key", {1, 2, 3}).numeric("x", {1, 2, 3}));
  run.run(plainCommand);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.messages(),
            "2/3 The comparison cannot be performed because the case ID variables do not match in the two datasets.\n");
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.journalLine(".PivotTable("), -1);
  EXPECT_EQ(run.values("CasesCompare"), ". . .");
  EXPECT_EQ(destroyedAfter(run, "BpError("), thenTheLastObjects({"~UserCaseFileSpec#3", "~UserCaseFileSpec#2"}));
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1 SvrDMInputDataSource#1 VRIX_DataSource#1");
}

TEST(RunSequence, RefusedCaseIdsLeaveTheComparisonDataFileOpenToo) {
  const TemporaryFolder folder;
  const std::string file = folder.write("b.csv", "key,x\n1,1\n");
  ProcedureRun run(threeCases(), threeOthers());
  run.run("/COMPDATASET='" + file + "' /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1 VRIX_DataSource#1");
}

TEST(RunSequence, AFailedWalkTakesTheFourTablesOutClosesTheComparisonAndLeavesByVrixGoToCaller) {
  ProcedureRun run(unsorted(), threeOthers());
  run.run(plainCommand);
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "2/3 The active dataset is not sort...\n");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.journalLine("CD_CompSummaryTemplateName"), -1);
  EXPECT_EQ(destroyedAfter(run, "The active dataset is not sort..."),
            thenTheLastObjects({"~VRIX_InputCaseIterator#2", "~VRIX_InputCaseIterator#1", "~SvrDMInputDataSource#1",
                                "~VRIX_DataSource#1", "~BpPivotTable#5", "~BpPivotTable#4", "~BpPivotTable#3",
                                "~BpPivotTable#2", "~UserCaseFileSpec#3", "~UserCaseFileSpec#2"}));
  EXPECT_EQ(run.missingInOrder({"~VRIX_InputCaseIterator#1", "BpPivotTable#2.Destroy()", "BpPivotTable#3.Destroy()",
                                "BpPivotTable#4.Destroy()", "BpPivotTable#5.Destroy()", "~SvrDMInputDataSource#1"}),
            "");
}

TEST(RunSequence, AFailedWalkKeepsTheDictionaryTablesThatWereShownBefore) {
  const auto labelled = [](const char* label) { return [label](data::Variable& variable) { variable.label = label; }; };
  ProcedureRun run(dataset().numeric("id", {2, 1}).numeric("x", {1, 2}, labelled("One")),
                   dataset().numeric("id", {1, 2}).numeric("x", {1, 2}, labelled("Two")));
  run.run(plainCommand + " /OUTPUT VARPROPERTIES=LABEL");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10) CD_DictCompTableName(2)");
}

TEST(RunSequence, NoOptionSkipsAStage) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand + " /SAVE FLAGMISMATCHES=NO /OUTPUT VARPROPERTIES=NONE CASETABLE=NO");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.missingInOrder({"BpPivotTable#1 = ",                      // the first summary
                                "VRIX_Variable(x).GetAttributes()",       // the dictionaries are looked at
                                "CD_CaseByCaseComparisonTableName",       // the case table is opened
                                "VRIX_DataSource#1.CreateCaseIterator(",  // the walk fills it
                                "BpPivotTable#5.Destroy()",               // and takes it out
                                "BpPivotTable#6 = "}),
            "");
}

TEST(RunSequence, ASecondRunOfTheSameCommandKnowsNothingOfTheFirst) {
  ProcedureRun run(threeCases(), threeOthers());
  run.run(plainCommand + " /OUTPUT TABLELIMIT=NONE VARPROPERTIES=ALL");
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.journalLine("CD_CaseID"), run.journalLine("BpDimension#3.Group(\"CD_CaseID\"") - 1);
  EXPECT_EQ(run.categories("CD_MismatchedByVarsTableName", 0), "x");
  EXPECT_EQ(run.values("CasesCompare_1"), "0 0 1");
}

}  // namespace workbench::tests::run_sequence_test
