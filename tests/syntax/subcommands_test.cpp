// COMPDATASET, VARIABLES and CASEID: the order in which subcommands are read, and what each puts into the options.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/syntax/parsed_command.h"

namespace compdatas {
namespace {

using Indexes = std::vector<std::int32_t>;

const std::string sameDataset =
    "2/3 The active dataset and the comparison dataset are the same dataset. No comparison was performed.\n";

// The calls in the journal that hold one of the texts, in order, one behind the other.
std::string calls(const ParsedCommand& parsed, const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& line : parsed.journal()) {
    const bool wanted = std::any_of(texts.begin(), texts.end(),
                                    [&](const std::string& text) { return line.find(text) != std::string::npos; });
    if (wanted) all += line + "\n";
  }
  return all;
}

std::string missing(const ParsedCommand& parsed) {
  std::string all;
  for (const VrixVarName& name : parsed.options().variablesNotInActive()) all += name.GetText() + " ";
  return all;
}

TEST(Subcommands, AreReadInAFixedOrderWhateverTheOrderOfTheCommand) {
  const ParsedCommand parsed("/OUTPUT CASETABLE=NO /SAVE VARNAME=m /CASEID=x /VARIABLES=ALL /COMPDATASET=b");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(calls(parsed, {"getSubComObj("}),
            "CommandSpec#1.getSubComObj(\"COMPDATASET\") -> SubComObj#1\n"
            "CommandSpec#1.getSubComObj(\"VARIABLES\") -> SubComObj#2\n"
            "CommandSpec#1.getSubComObj(\"CASEID\") -> SubComObj#3\n"
            "CommandSpec#1.getSubComObj(\"SAVE\") -> SubComObj#4\n"
            "CommandSpec#1.getSubComObj(\"OUTPUT\") -> SubComObj#5\n");
}

TEST(Subcommands, ThatAreNotGivenLeaveTheDefaults) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_TRUE(parsed.accepted());
  const CompareOptions& options = parsed.options();
  EXPECT_TRUE(options.flagMismatches());
  EXPECT_EQ(options.flagVarName(), "CasesCompare");
  EXPECT_FALSE(options.matchDataset());
  EXPECT_FALSE(options.mismatchDataset());
  EXPECT_EQ(options.matchName(), "MatchedCases");
  EXPECT_EQ(options.mismatchName(), "MismatchedCases");
  EXPECT_TRUE(options.varPropertiesNone());
  EXPECT_FALSE(options.varPropertiesAll());
  EXPECT_TRUE(options.varProperties().empty());
  EXPECT_TRUE(options.caseTable());
  EXPECT_EQ(options.tableLimit(), 100);
  EXPECT_FALSE(options.tableLimitNone());
  EXPECT_TRUE(options.caseIdVariables().empty());
  EXPECT_FALSE(options.spareFlag());
}

TEST(Subcommands, WithoutCompDatasetTheCommandIsIncompleteAndNothingElseIsRead) {
  const ParsedCommand parsed("/VARIABLES=ALL /SAVE VARNAME=m");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "2/2 Incomplete command. No dataset was specified.\n");
  EXPECT_EQ(calls(parsed, {"getSubComObj("}), "CommandSpec#1.getSubComObj(\"COMPDATASET\") -> null\n");
}

TEST(Subcommands, WithoutVariablesTheHostsErrorIsRaisedAfterCompDatasetWasRead) {
  const ParsedCommand parsed("/COMPDATASET=b /CASEID=x");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "7414 2 2\n");
  EXPECT_TRUE(parsed.options().compDataset().IsDataset());
  EXPECT_TRUE(parsed.options().caseIdVariables().empty());
}

TEST(Subcommands, ARefusedCompDatasetIsReportedBeforeVariablesAreMissed) {
  const ParsedCommand parsed("/COMPDATASET=none");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_TRUE(parsed.messages().starts_with("2/3 The dataset does not exist.")) << parsed.messages();
  EXPECT_EQ(parsed.messages().find("7414"), std::string::npos);
}

TEST(Subcommands, ARefusedSubcommandEndsTheReadingAndLeavesWhatWasFilled) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=x /CASEID=nothere /SAVE VARNAME=m /OUTPUT CASETABLE=NO");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "parser\n");
  EXPECT_EQ(parsed.options().compareVariables(), Indexes{0});
  EXPECT_TRUE(parsed.options().caseIdVariables().empty());
  EXPECT_EQ(parsed.options().flagVarName(), "CasesCompare");
  EXPECT_TRUE(parsed.options().caseTable());
  EXPECT_EQ(calls(parsed, {"getSubComObj(\"SAVE\")", "getSubComObj(\"OUTPUT\")"}), "");
}

TEST(CompDataset, TakesAWordAsAnOpenDataset) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_TRUE(parsed.options().compDataset().IsDataset());
  EXPECT_EQ(parsed.options().compDataset().DocumentationString(), "b");
  EXPECT_NE(calls(parsed, {"Init("}).find("Init(\"b\", false, false) -> true"), std::string::npos);
}

TEST(CompDataset, TakesAQuotedStringAsADataFile) {
  const ParsedCommand parsed("/COMPDATASET='/dev/null' /VARIABLES=ALL");
  EXPECT_TRUE(parsed.options().compDataset().IsFile());
  EXPECT_NE(calls(parsed, {"Init("}).find("Init(\"/dev/null\", true, false) -> true"), std::string::npos);
}

TEST(CompDataset, WithoutExactlyOneValueDoesNotExistAndReadsNoPassword) {
  for (const char* command : {"/COMPDATASET /VARIABLES=ALL", "/COMPDATASET=b a PASSWORD='x' /VARIABLES=ALL",
                              "/COMPDATASET PASSWORD='x' /VARIABLES=ALL"}) {
    const ParsedCommand parsed(command);
    EXPECT_FALSE(parsed.accepted()) << command;
    EXPECT_EQ(parsed.messages(), "2/3 The dataset does not exist.\n") << command;
    EXPECT_EQ(parsed.options().compDatasetPassword(), "") << command;
    EXPECT_EQ(calls(parsed, {"Init(", "getLiteral("}), "") << command;
  }
}

TEST(CompDataset, ThatIsTheWorkingFileIsRefusedBeforeSaveAndOutputAreRead) {
  const ParsedCommand parsed("/COMPDATASET=* /VARIABLES=ALL /SAVE VARNAME=m /OUTPUT CASETABLE=NO");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), sameDataset);
  EXPECT_EQ(calls(parsed, {"getSubComObj("}), "CommandSpec#1.getSubComObj(\"COMPDATASET\") -> SubComObj#1\n");
}

TEST(CompDataset, ThatIsTheWorkingFileInQuotesIsAFileOfThatName) {
  const ParsedCommand parsed("/COMPDATASET='*' /VARIABLES=ALL");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "2/3 The data file * does not exist or cannot be reached.\n");
}

TEST(CompDataset, IsAskedForTheWorkingFileOnlyWhenItExists) {
  EXPECT_EQ(calls(ParsedCommand("/COMPDATASET=none /VARIABLES=ALL"), {"IsWorkingFile"}), "");
  EXPECT_EQ(calls(ParsedCommand("/COMPDATASET=b /VARIABLES=ALL"), {"IsWorkingFile"}),
            "UserCaseFileSpec#1.IsWorkingFile() -> false\n");
}

TEST(CompDataset, KeepsThePasswordOfADataFile) {
  const ParsedCommand parsed("/COMPDATASET='/dev/null' PASSWORD='s' /VARIABLES=ALL");
  EXPECT_EQ(parsed.options().compDatasetPassword(), "s");
  const ParsedCommand empty("/COMPDATASET='/dev/null' PASSWORD='' /VARIABLES=ALL");
  EXPECT_TRUE(empty.accepted());
  EXPECT_EQ(empty.options().compDatasetPassword(), "");
}

TEST(CompDataset, PassesOverThePasswordOfAnOpenDatasetWithoutAWord) {
  const ParsedCommand parsed("/COMPDATASET=b PASSWORD='s' /VARIABLES=ALL");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "");
  EXPECT_EQ(parsed.options().compDatasetPassword(), "");
  EXPECT_EQ(calls(parsed, {"getLiteral("}), "");
}

TEST(CompDataset, ReadsThePasswordAlsoAfterTheFileWasRefused) {
  const ParsedCommand parsed("/COMPDATASET='none.csv' PASSWORD='s' /VARIABLES=ALL");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.options().compDatasetPassword(), "s");
}

struct VariableList {
  const char* written;
  bool accepted;
  Indexes variables;
  const char* missing;
};
void PrintTo(const VariableList& list, std::ostream* out) { *out << list.written; }
class Variables : public ::testing::TestWithParam<VariableList> {};

TEST_P(Variables, AreValidatedWithoutTheNamesThatTheActiveDatasetLacks) {
  const VariableList& list = GetParam();
  const ParsedCommand parsed(std::string("/COMPDATASET=b /VARIABLES=") + list.written);
  EXPECT_EQ(parsed.accepted(), list.accepted) << list.written;
  EXPECT_EQ(parsed.options().compareVariables(), list.variables) << list.written;
  EXPECT_EQ(missing(parsed), list.missing) << list.written;
  EXPECT_EQ(parsed.messages(), list.accepted ? "" : "parser\n") << list.written;
  EXPECT_EQ(calls(parsed, {"getSubComObj(\"CASEID\")"}).empty(), !list.accepted) << list.written;
}

INSTANTIATE_TEST_SUITE_P(
    Of, Variables,
    ::testing::Values(VariableList{"x q z", true, {0, 2}, "q "}, VariableList{"ALL", true, {0, 1, 2, 3}, ""},
                      VariableList{"all", true, {0, 1, 2, 3}, ""}, VariableList{"x TO z", true, {0, 1, 2}, ""},
                      VariableList{"x to z", true, {0, 1, 2}, ""}, VariableList{"z x", true, {2, 0}, ""},
                      VariableList{"TOWN X", true, {3, 0}, ""}, VariableList{"q", true, {}, "q "},
                      VariableList{"q r q", true, {}, "q r q "}, VariableList{"'x' 'no name'", true, {0}, "no name "},
                      VariableList{"q TO z", false, {}, "q "}, VariableList{"x TO q", false, {}, "q "},
                      VariableList{"z TO x", false, {}, ""}, VariableList{"x x", false, {}, ""},
                      VariableList{"x ALL", false, {}, ""}, VariableList{"ALL q", true, {0, 1, 2, 3}, "q "},
                      VariableList{"TO", false, {}, ""}));

TEST(Variables, AreHeldAgainstTheTwoKeywordsThenLookedUpThenValidatedWithTheRepeatOptionZero) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=all q x");
  EXPECT_EQ(calls(parsed, {"VRIXMBstricmp_A", "FindVarIndex", "ValidateVariables", "GetValidVarList"}),
            "VRIXMBstricmp_A(\"all\", \"TO\") -> -1\n"
            "VRIXMBstricmp_A(\"all\", \"ALL\") -> 0\n"
            "VRIXMBstricmp_A(\"q\", \"TO\") -> -1\n"
            "VRIXMBstricmp_A(\"q\", \"ALL\") -> 1\n"
            "ProcedureDataSource#1.FindVarIndex(\"q\", 0) -> -1\n"
            "VRIXMBstricmp_A(\"x\", \"TO\") -> 1\n"
            "VRIXMBstricmp_A(\"x\", \"ALL\") -> 1\n"
            "ProcedureDataSource#1.FindVarIndex(\"x\", 0) -> 0\n"
            "VarSpecObj#1.ValidateVariables(2 tokens, 0) -> false\n");
}

TEST(Variables, WithoutAListAreAcceptedAndEmpty) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_TRUE(parsed.options().compareVariables().empty());
  EXPECT_EQ(calls(parsed, {"ValidateVariables"}), "");
}

TEST(CaseId, HasAValidationOfItsOwnAndTheUsersOrder) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=ALL /CASEID=z x");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.options().caseIdVariables(), (Indexes{2, 0}));
  EXPECT_NE(calls(parsed, {"VarSpecObj#2."}).find("VarSpecObj#2.ValidateVariables(2 tokens, 0) -> true"),
            std::string::npos);
}

TEST(CaseId, RefusesNamesThatTheActiveDatasetLacksAndRepeatedOnes) {
  for (const char* list : {"q", "x q", "x x", "z TO x"}) {
    const ParsedCommand parsed(std::string("/COMPDATASET=b /VARIABLES=ALL /CASEID=") + list);
    EXPECT_FALSE(parsed.accepted()) << list;
    EXPECT_EQ(parsed.messages(), "parser\n") << list;
    EXPECT_TRUE(parsed.options().caseIdVariables().empty()) << list;
  }
}

TEST(CaseId, WithoutAListIsAcceptedAndTheSubcommandsBehindItAreRead) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=ALL /CASEID /SAVE VARNAME=m");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_TRUE(parsed.options().caseIdVariables().empty());
  EXPECT_EQ(parsed.options().flagVarName(), "m");
}

}  // namespace
}  // namespace compdatas
