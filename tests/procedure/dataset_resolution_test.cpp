// Dataset resolution: which names a run refuses, how names are compared, and how the comparison dataset is opened.
#include <gtest/gtest.h>

#include "tests/data/working/fakes.h"
#include "tests/procedure/procedure_run.h"
#include "workbench/data/working/password_decoder.h"

namespace workbench::tests::dataset_resolution_test {

using data::testing::TemporaryFolder;
using Lines = std::vector<std::string>;

const std::string sameDataset =
    "2/3 The active dataset and the comparison dataset are the same dataset. No comparison was performed.\n";
const std::string matchNameTaken = "2/3 MATCHNAME cannot be one of ...\n";
const std::string mismatchNameTaken = "2/3 MISMATCHNAME cannot be one of ...\n";
const std::string sameOutputs = "2/3 The datasets for matched a...\n";

DatasetBuilder cases() { return dataset().numeric("x", {1, 2}); }
DatasetBuilder others() { return dataset().numeric("x", {1, 5}); }

class Resolution : public ::testing::Test {
 protected:
  // Runs over the open dataset b, with what stands behind SAVE.
  ProcedureRun& save(const std::string& keywords, const std::string& compared = "b") {
    return run_.run("/COMPDATASET=" + compared + " /VARIABLES=ALL /SAVE " + keywords);
  }
  std::string quoted(const std::string& name) const { return "'" + folder_.file(name) + "'"; }
  std::string comparisonFile() const { return "'" + folder_.write("b.csv", "x\n1\n5\n") + "'"; }

  // What every refusal has in common: nothing was compared, no table was opened, the flag variable is there already.
  void expectRefusedWith(const std::string& message) {
    EXPECT_EQ(run_.messages(), message);
    EXPECT_EQ(run_.outcome(), "completed");
    EXPECT_EQ(run_.tables(), "");
    EXPECT_EQ(run_.journalLine(".PivotTable("), -1);
    EXPECT_EQ(run_.journalLine("ServerDataManager"), -1);
    EXPECT_EQ(run_.journalLine("GetSystemFile("), -1);
    EXPECT_EQ(run_.values("CasesCompare"), ". .");
    EXPECT_EQ(run_.leftAlive(), "UserCaseFileSpec#1");
    const std::vector<std::string>& lines = run_.journal();
    for (auto line = lines.begin() + run_.journalLine("BpError(") + 1; line != lines.end(); ++line) {
      EXPECT_TRUE(line->starts_with("~")) << *line;  // all that follows is releasing
    }
  }

  TemporaryFolder folder_;
  ProcedureRun run_{cases(), others()};
};

TEST_F(Resolution, RefusesTheActiveDatasetUnderItsOwnName) {
  run_.run("/COMPDATASET=a /VARIABLES=ALL");
  expectRefusedWith(sameDataset);
}

TEST_F(Resolution, RefusesTheActiveDatasetUnderItsNameInAnotherCase) {
  run_.run("/COMPDATASET=A /VARIABLES=ALL");
  expectRefusedWith(sameDataset);
  EXPECT_EQ(run_.missingInOrder({"UserCaseFileSpec#1.IsDataset() -> true",
                                 "UserCaseFileSpec#1.DocumentationString() -> \"A\"", "GetAdapter()",
                                 "HostAdapter.GetActiveDataset() -> SvrDMDataset(a)",
                                 "SvrDMDataset(a).GetHandle() -> \"a\"", "VRIXMBstricmp_A(\"A\", \"a\") -> 0"}),
            "");
}

TEST_F(Resolution, RefusesTheSameDatasetWithoutAFlagVariableWhenNoneIsAskedFor) {
  save("FLAGMISMATCHES=NO", "A");
  EXPECT_EQ(run_.messages(), sameDataset);
  EXPECT_EQ(run_.values("CasesCompare"), "no variable");
}

TEST_F(Resolution, ComparesNamesWithoutRegardToTheCaseOfAnyLetter) {
  ProcedureRun run;
  ASSERT_TRUE(run.manager().open(others().build(), "b"));
  ASSERT_TRUE(run.manager().open(cases().build(), "\u00e9t\u00e9"));
  run.run("/COMPDATASET=\u00c9T\u00c9 /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), sameDataset);
}

TEST_F(Resolution, DoesNotAskForTheActiveDatasetWhenTheComparisonIsADataFile) {
  run_.run("/COMPDATASET=" + comparisonFile() + " /VARIABLES=ALL");
  EXPECT_EQ(run_.outcome(), "completed");
  EXPECT_GT(run_.journalLine("GetAdapter()"), run_.journalLine("BpPivotTable#1"));
  EXPECT_EQ(run_.journalLine("VRIXMBstricmp_A(\"b.csv\""), -1);
}

TEST_F(Resolution, DoesNotCheckForTheSameDatasetWhenTheActiveOneIsNotManaged) {
  ProcedureRun run;
  ASSERT_TRUE(run.manager().open(others().build(), "b"));
  ASSERT_TRUE(run.manager().open(cases().build(), std::nullopt));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.missingInOrder({"HostAdapter.GetActiveDataset() -> null", "ServerDataManager::GetInstance()"}), "");
  EXPECT_EQ(run.journalLine("VRIXMBstricmp_A(\"b\", \"\")"), -1);
}

TEST_F(Resolution, GivesTheOutputsTheirNamesAsTheyStandAndTheSharedEncryptionFlag) {
  save("MATCHDATASET=YES MATCHNAME=" + quoted("m.csv") + " MISMATCHDATASET=YES MISMATCHNAME=others");
  EXPECT_EQ(run_.outcome(), "completed");
  EXPECT_EQ(run_.journalLines({"UserCaseFileSpec#2.Init(", "UserCaseFileSpec#3.Init("}),
            (Lines{"UserCaseFileSpec#2.Init(\"" + folder_.file("m.csv") + "\", false, true, '', false) -> true",
                   "UserCaseFileSpec#3.Init(\"others\", false, true, '', false) -> true"}));
}

TEST_F(Resolution, HandsEachOutputItsPasswordAndBothTheEncryptionFlag) {
  std::vector<std::string> passwords;
  data::setPasswordDecoder([&](std::string_view encoded) {
    passwords.emplace_back(encoded);
    return Outcome<Secret>(Secret(std::string("plain")));
  });
  const std::string outputs = "MATCHDATASET=YES MATCHNAME=" + quoted("m.csv.pgp") +
                              " MATCHPASS='first' MISMATCHDATASET=YES MISMATCHNAME=" + quoted("u.csv.pgp") +
                              " MISMATCHPASS='second'";
  save(outputs + " ENCRYPTEDPW=YES");
  data::setPasswordDecoder({});
  EXPECT_EQ(passwords, (Lines{"first", "second"}));
  EXPECT_EQ(
      run_.journalLines({".pgp\", false, true, "}),
      (Lines{"UserCaseFileSpec#2.Init(\"" + folder_.file("m.csv.pgp") + "\", false, true, '***', true) -> true",
             "UserCaseFileSpec#3.Init(\"" + folder_.file("u.csv.pgp") + "\", false, true, '***', true) -> true"}));

  save(outputs + " ENCRYPTEDPW=NO");
  EXPECT_EQ(run_.journalLines({"'***', false) -> true"}).size(), 2U);
}

TEST_F(Resolution, InitialisesNoOutputThatWasNotAskedFor) {
  save("MATCHDATASET=NO MISMATCHNAME=others");
  EXPECT_EQ(run_.journalLine("UserCaseFileSpec#2.Init("), -1);
  EXPECT_EQ(run_.journalLine("UserCaseFileSpec#3.Init("), -1);
  EXPECT_EQ(run_.outcome(), "completed");
}

TEST_F(Resolution, ReportsWhyTheMatchedCasesCannotBeWrittenInTheHostsWords) {
  save("MATCHDATASET=YES MATCHNAME=" + quoted("none/m.csv") +
       " MISMATCHDATASET=YES MISMATCHNAME=" + quoted("none/u.csv"));
  const std::string error = "The data file " + folder_.file("none/m.csv") +
                            " cannot be written because there is no folder " + folder_.file("none") + ".";
  expectRefusedWith("2/3 " + error + "\n");
  EXPECT_EQ(run_.missingInOrder({"UserCaseFileSpec#2.Init(", "UserCaseFileSpec#2.ErrorText() -> \"" + error,
                                 "BpString#1 = BpString(\"" + error + "\", true)", "BpError(\"" + error + "\", 2, 3)",
                                 "~BpString#1"}),
            "");
  EXPECT_EQ(run_.journalLine("UserCaseFileSpec#3.Init("), -1);
}

TEST_F(Resolution, ReportsWhyTheMismatchedCasesCannotBeWrittenInTheHostsWords) {
  save("MISMATCHDATASET=YES MISMATCHNAME=" + quoted("none/u.csv"));
  expectRefusedWith("2/3 The data file " + folder_.file("none/u.csv") +
                    " cannot be written because there is no folder " + folder_.file("none") + ".\n");
  EXPECT_NE(run_.journalLine("UserCaseFileSpec#3.ErrorText()"), -1);
}

TEST_F(Resolution, RefusesMatchedCasesNamedLikeTheActiveDatasetInAnyCase) {
  save("MATCHDATASET=YES MATCHNAME=A");
  expectRefusedWith(matchNameTaken);
}

TEST_F(Resolution, RefusesMatchedCasesNamedLikeTheComparisonDatasetInAnyCase) {
  save("MATCHDATASET=YES MATCHNAME=B");
  expectRefusedWith(matchNameTaken);
  EXPECT_EQ(run_.missingInOrder({"UserCaseFileSpec#2.IsDataset() -> true", "VRIXMBstricmp_A(\"B\", \"a\") -> 1",
                                 "VRIXMBstricmp_A(\"B\", \"b\") -> 0", "BpError("}),
            "");
}

TEST_F(Resolution, RefusesMismatchedCasesNamedLikeTheActiveDatasetInAnyCase) {
  save("MISMATCHDATASET=YES MISMATCHNAME=A");
  expectRefusedWith(mismatchNameTaken);
  EXPECT_EQ(run_.journalLine("VRIXMBstricmp_A(\"A\", \"b\")"), -1);  // the first equality ends it
}

TEST_F(Resolution, RefusesMismatchedCasesNamedLikeTheComparisonDatasetInAnyCase) {
  save("MATCHDATASET=YES MATCHNAME=good MISMATCHDATASET=YES MISMATCHNAME=B");
  expectRefusedWith(mismatchNameTaken);
  EXPECT_EQ(run_.journalLine("VRIXMBstricmp_A(\"B\", \"good\")"), -1);
}

TEST_F(Resolution, RefusesMismatchedCasesNamedLikeTheMatchedOnesInAnyCase) {
  save("MATCHDATASET=YES MATCHNAME=kept MISMATCHDATASET=YES MISMATCHNAME=KEPT");
  expectRefusedWith(sameOutputs);
  EXPECT_EQ(run_.missingInOrder({"VRIXMBstricmp_A(\"KEPT\", \"a\")", "VRIXMBstricmp_A(\"KEPT\", \"b\")",
                                 "VRIXMBstricmp_A(\"KEPT\", \"kept\") -> 0"}),
            "");
}

TEST_F(Resolution, RefusesOneDataFileForBothOutputs) {
  save("MATCHDATASET=YES MATCHNAME=" + quoted("o.csv") + " MISMATCHDATASET=YES MISMATCHNAME=" + quoted("./o.csv"));
  expectRefusedWith(sameOutputs);
  EXPECT_NE(run_.journalLine("VRIXMBstrcmp_A(\"" + folder_.file("o.csv") + "\", \"" + folder_.file("o.csv") + "\")"),
            -1);
}

TEST_F(Resolution, RefusesOneDataFileForBothOutputsWhicheverIsWrittenTheLongerWay) {
  save("MATCHDATASET=YES MATCHNAME=" + quoted("./o.csv") + " MISMATCHDATASET=YES MISMATCHNAME=" + quoted("o.csv"));
  expectRefusedWith(sameOutputs);
}

TEST_F(Resolution, AcceptsDataFilesForTheOutputsWhosePathsDifferOnlyInCase) {
  save("MATCHDATASET=YES MATCHNAME=" + quoted("o.csv") + " MISMATCHDATASET=YES MISMATCHNAME=" + quoted("O.csv"));
  EXPECT_EQ(run_.outcome(), "completed");
  EXPECT_EQ(run_.messages(), "");
  EXPECT_EQ(folder_.listing(), "O.csv O.schema.json o.csv o.schema.json");
}

TEST_F(Resolution, AcceptsADatasetAndADataFileOfTheSameNameForTheOutputs) {
  save("MATCHDATASET=YES MATCHNAME=o MISMATCHDATASET=YES MISMATCHNAME=" + quoted("o.csv"));
  EXPECT_EQ(run_.outcome(), "completed");
  EXPECT_EQ(run_.journalLine("VRIXMBstrcmp_A(\"" + folder_.file("o.csv")), -1);
}

TEST_F(Resolution, HoldsNoMatchedDataFileAgainstTheComparisonFile) {
  const std::string file = comparisonFile();
  save("MATCHDATASET=YES MATCHNAME=" + file, file);
  // The checks passed; what then stands against it is the host's own refusal when the output is opened.
  EXPECT_EQ(run_.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run_.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_GT(run_.journalLine("BpError("), run_.journalLine("UserOutputCaseFile"));
  EXPECT_EQ(run_.messages().find("MATCHNAME cannot"), std::string::npos);
}

TEST_F(Resolution, HoldsOutputNamesAgainstEmptyNamesOnlyWhenTheComparisonIsADataFile) {
  save("MATCHDATASET=YES MATCHNAME=a MISMATCHDATASET=YES MISMATCHNAME=b", comparisonFile());
  EXPECT_EQ(run_.missingInOrder({"VRIXMBstricmp_A(\"a\", \"\")", "VRIXMBstricmp_A(\"a\", \"\")",
                                 "VRIXMBstricmp_A(\"b\", \"\")", "VRIXMBstricmp_A(\"b\", \"\")",
                                 "VRIXMBstricmp_A(\"b\", \"a\")", "ServerDataManager::GetInstance()"}),
            "");
  EXPECT_EQ(run_.messages().find("cannot be one of"), std::string::npos);
}

TEST_F(Resolution, HoldsTheOutputsAgainstEachOtherAlsoWhenTheComparisonIsADataFile) {
  save("MATCHDATASET=YES MATCHNAME=o MISMATCHDATASET=YES MISMATCHNAME=O", comparisonFile());
  expectRefusedWith(sameOutputs);
}

TEST_F(Resolution, KnowsTheComparisonNameAlsoWhenTheActiveDatasetIsNotManaged) {
  ProcedureRun run;
  ASSERT_TRUE(run.manager().open(others().build(), "b"));
  ASSERT_TRUE(run.manager().open(cases().build(), std::nullopt));
  run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE MATCHDATASET=YES MATCHNAME=B");
  EXPECT_EQ(run.messages(), matchNameTaken);
  EXPECT_NE(run.journalLine("VRIXMBstricmp_A(\"B\", \"\")"), -1);
}

TEST_F(Resolution, OpensADataFileWithItsPasswordForReadingAndWithoutAMonitor) {
  const std::string file = comparisonFile();
  run_.run("/COMPDATASET=" + file + " PASSWORD='open sesame' /VARIABLES=ALL");
  EXPECT_EQ(run_.journalLines({"GetSystemFile("}).size(), 1U);
  EXPECT_NE(run_.journalLine("SystemFileDataSource.GetSystemFile(\"" + file.substr(1, file.size() - 2) +
                             "\", '***', true, null)"),
            -1);
  run_.run("/COMPDATASET=" + file + " /VARIABLES=ALL");
  EXPECT_NE(run_.journalLine("GetSystemFile(\"" + file.substr(1, file.size() - 2) + "\", '', true, null)"), -1);
  EXPECT_EQ(run_.journalLine("ServerDataManager.GetDataSet("), -1);
}

TEST_F(Resolution, ReportsADataFileThatCannotBeOpenedInTheHostsWordsAsASevereError) {
  const std::string file = folder_.write("b.csv", "x,x\n\"1,2\n");
  run_.run("/COMPDATASET='" + file + "' /VARIABLES=ALL");
  ASSERT_NE(run_.journalLine("GetSystemFile("), -1);
  const std::string messages = run_.messages();
  EXPECT_TRUE(messages.starts_with("2/4 " + file + ", line 2: The quote that opens here")) << messages;
  EXPECT_EQ(messages.find('\n'), messages.size() - 1) << messages;
  EXPECT_EQ(run_.outcome(), "completed");
  EXPECT_EQ(run_.tables(), "");
  EXPECT_EQ(run_.values("CasesCompare"), ". .");
  EXPECT_EQ(run_.leftAlive(), "UserCaseFileSpec#1");
}

}  // namespace workbench::tests::dataset_resolution_test
