// Messages: how the procedure issues them, and the codes and texts of those that end a command.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"

namespace workbench::tests::messages_test {

using Lines = std::vector<std::string>;

DatasetBuilder cases() { return dataset().numeric("x", {1, 2}); }

// A command that is refused, what it says, and whether the flag variable was made before.
struct Refusal {
  const char* name;
  std::string command;
  std::string message;
  bool madeFlagVariable;
};
void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }
class EveryRefusal : public ::testing::TestWithParam<Refusal> {};

TEST_P(EveryRefusal, IsReportedOnceWithItsCodesAndEndsTheCommandWithoutATable) {
  const Refusal& refusal = GetParam();
  ProcedureRun run(cases(), cases());
  run.run(refusal.command);
  EXPECT_EQ(run.messages(), refusal.message);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.notes(), "");
  EXPECT_EQ(run.values("CasesCompare"), refusal.madeFlagVariable ? ". ." : "no variable");
  for (const std::string& line : run.journalLines({" = BpString("})) EXPECT_TRUE(line.ends_with(", true)")) << line;
}

const std::string sameDataset =
    "2/3 The active dataset and the comparison dataset are the same dataset. No comparison was performed.\n";
const std::string plainCommand = "/COMPDATASET=b /VARIABLES=ALL ";

INSTANTIATE_TEST_SUITE_P(
    Of, EveryRefusal,
    ::testing::Values(
        Refusal{"NoCompDataset", "/VARIABLES=ALL", "2/2 Incomplete command. No dataset was specified.\n", false},
        Refusal{"CompDatasetWithoutAValue", "/COMPDATASET /VARIABLES=ALL", "2/3 The dataset does not exist.\n", false},
        Refusal{"CompDatasetWithTwoValues", "/COMPDATASET=b a /VARIABLES=ALL", "2/3 The dataset does not exist.\n",
                false},
        Refusal{"CompDatasetNotOpen", "/COMPDATASET=c /VARIABLES=ALL",
                "2/3 The dataset does not exist. No open dataset has the name c; open it first, or put the name of a "
                "data file in quotes.\n",
                false},
        Refusal{"CompDataFileNotThere", "/COMPDATASET='none.csv' /VARIABLES=ALL",
                "2/3 The data file none.csv does not exist or cannot be reached.\n", false},
        Refusal{"WorkingFile", "/COMPDATASET=* /VARIABLES=ALL", sameDataset, false},
        Refusal{"NoVariables", "/COMPDATASET=b", "7414 2 2\n", false},
        Refusal{"ActiveDataset", "/COMPDATASET=A /VARIABLES=ALL", sameDataset, true},
        Refusal{"MatchNameOfAnInput", plainCommand + "/SAVE MATCHDATASET=YES MATCHNAME=B",
                "2/3 MATCHNAME cannot be one of ...\n", true},
        Refusal{"MismatchNameOfAnInput", plainCommand + "/SAVE MISMATCHDATASET=YES MISMATCHNAME=A",
                "2/3 MISMATCHNAME cannot be one of ...\n", true},
        Refusal{"OneDatasetForBoth",
                plainCommand + "/SAVE MATCHDATASET=YES MATCHNAME=o MISMATCHDATASET=YES MISMATCHNAME=O",
                "2/3 The datasets for matched a...\n", true},
        Refusal{"OneFileForBoth",
                plainCommand + "/SAVE MATCHDATASET=YES MATCHNAME='o.csv' MISMATCHDATASET=YES MISMATCHNAME='o.csv'",
                "2/3 The datasets for matched a...\n", true},
        Refusal{"MatchedToTheWorkingFile", plainCommand + "/SAVE MATCHDATASET=YES MATCHNAME='*'",
                "2/3 Cases cannot be saved to the working file; name a data file or a dataset.\n", true},
        Refusal{"MismatchedToTheWorkingFile", plainCommand + "/SAVE MISMATCHDATASET=YES MISMATCHNAME='*'",
                "2/3 Cases cannot be saved to the working file; name a data file or a dataset.\n", true},
        Refusal{"MatchPasswordTooShort", plainCommand + "/SAVE MATCHDATASET=YES MATCHNAME='o.csv' MATCHPASS=''",
                "2/3 MATCHPASS password too short.\n", false},
        Refusal{"MismatchPasswordTooShort",
                plainCommand + "/SAVE MISMATCHDATASET=YES MISMATCHNAME='o.csv' MISMATCHPASS=''",
                "2/3 MISMATCHPASS password too short.\n", false},
        Refusal{"UnknownProperty", plainCommand + "/OUTPUT VARPROPERTIES=LABEL ALL", "", false}),
    [](const auto& refusal) { return std::string(refusal.param.name); });

TEST(Messages, AreMadeAsTextsToBeTranslatedIssuedAndDestroyed) {
  ProcedureRun refused(cases(), cases());
  refused.run(plainCommand + "/SAVE MATCHDATASET=YES MATCHNAME=B");
  const std::string key = "\"MATCHNAME cannot be one of ...\"";
  EXPECT_EQ(refused.journalLines({"BpString", "BpError"}),
            (Lines{"BpString#1 = BpString(" + key + ", true)", "BpError(" + key + ", 2, 3)", "~BpString#1"}));
}

TEST(Messages, GiveTheHostsOwnTextsToBeTranslatedAsWell) {
  ProcedureRun refused(cases(), cases());
  refused.run("/COMPDATASET='none.csv' /VARIABLES=ALL");
  const std::string text = "\"The data file none.csv does not exist or cannot be reached.\"";
  EXPECT_EQ(refused.journalLines({".ErrorText()", "BpString", "BpError"}),
            (Lines{"UserCaseFileSpec#1.ErrorText() -> " + text, "BpString#1 = BpString(" + text + ", true)",
                   "BpError(" + text + ", 2, 3)", "~BpString#1"}));
}

TEST(Messages, TheMissingVariablesAreANumberedErrorOfTheHost) {
  ProcedureRun refused(cases(), cases());
  refused.run("/COMPDATASET=b");
  EXPECT_EQ(refused.journalLines({"BACKENDERROR", "BpError", "getSubComObj("}),
            (Lines{"CommandSpec#1.getSubComObj(\"COMPDATASET\") -> SubComObj#1",
                   "CommandSpec#1.getSubComObj(\"VARIABLES\") -> null", "BACKENDERROR(7414, 2, 2)"}));
}

TEST(Messages, OnlyAFailedLookUpIsToldInADiagnosticLine) {
  ProcedureRun completed(cases(), cases());
  completed.run(plainCommand);
  EXPECT_EQ(completed.journalLine("BP_ToFront"), -1);
}

}  // namespace workbench::tests::messages_test
