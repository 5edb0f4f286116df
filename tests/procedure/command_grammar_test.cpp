// The grammar that the procedure hands to the host's parser, and what the parser makes of commands under it.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"

namespace workbench::tests::command_grammar_test {

using Lines = std::vector<std::string>;

DatasetBuilder cases() { return dataset().numeric("x", {1, 2}); }

// What the descriptors were told, each line without the number of its object; destructions left out.
Lines grammarOf(const ProcedureRun& run) {
  Lines found;
  for (const std::string& line : run.journalLines({"ParamDescriptor", "SubComDescriptor"})) {
    if (line.starts_with("~")) continue;
    const std::size_t made = line.find(" = ");
    found.push_back(made == std::string::npos ? line.substr(line.find('.') + 1) : line.substr(made + 3));
  }
  return found;
}

TEST(CommandGrammar, HasFiveSubcommandsWithSaveAddedBeforeAndAfterItLearnsEncryptedPw) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(grammarOf(run), (Lines{"SubComDescriptor(\"COMPDATASET\", 3, false, false)",
                                   "setExportParamDesc(2, false)",
                                   "ParamDescriptor(\"PASSWORD\", 4, false, true, 0)",
                                   "addParamDescriptor(ParamDescriptor#1)",
                                   "addSubComDescriptor(SubComDescriptor#1)",
                                   "SubComDescriptor(\"VARIABLES\", 3, false, false)",
                                   "setExportParamDesc(2, false)",
                                   "addSubComDescriptor(SubComDescriptor#2)",
                                   "SubComDescriptor(\"CASEID\", 3, false, false)",
                                   "setExportParamDesc(2, false)",
                                   "addSubComDescriptor(SubComDescriptor#3)",
                                   "SubComDescriptor(\"SAVE\", 1, false, false)",
                                   "ParamDescriptor(\"FLAGMISMATCHES\", 3, false, true, 0)",
                                   "addStringValue(\"YES\")",
                                   "addStringValue(\"NO\")",
                                   "addParamDescriptor(ParamDescriptor#2)",
                                   "ParamDescriptor(\"VARNAME\", 3, false, true, 0)",
                                   "addParamDescriptor(ParamDescriptor#3)",
                                   "ParamDescriptor(\"MATCHDATASET\", 3, false, true, 0)",
                                   "addStringValue(\"YES\")",
                                   "addStringValue(\"NO\")",
                                   "addParamDescriptor(ParamDescriptor#4)",
                                   "ParamDescriptor(\"MATCHNAME\", 2, false, true, 0)",
                                   "addParamDescriptor(ParamDescriptor#5)",
                                   "ParamDescriptor(\"MATCHPASS\", 4, false, true, 0)",
                                   "addStringValue(\"NONE\")",
                                   "addParamDescriptor(ParamDescriptor#6)",
                                   "ParamDescriptor(\"MISMATCHDATASET\", 3, false, true, 0)",
                                   "addStringValue(\"YES\")",
                                   "addStringValue(\"NO\")",
                                   "addParamDescriptor(ParamDescriptor#7)",
                                   "ParamDescriptor(\"MISMATCHNAME\", 2, false, true, 0)",
                                   "addParamDescriptor(ParamDescriptor#8)",
                                   "ParamDescriptor(\"MISMATCHPASS\", 4, false, true, 0)",
                                   "addStringValue(\"NONE\")",
                                   "addParamDescriptor(ParamDescriptor#9)",
                                   "addSubComDescriptor(SubComDescriptor#4)",
                                   "ParamDescriptor(\"ENCRYPTEDPW\", 3, false, true, 0)",
                                   "addStringValue(\"YES\")",
                                   "addStringValue(\"NO\")",
                                   "addParamDescriptor(ParamDescriptor#10)",
                                   "addSubComDescriptor(SubComDescriptor#4)",
                                   "SubComDescriptor(\"OUTPUT\", 1, false, false)",
                                   "ParamDescriptor(\"VARPROPERTIES\", 5, false, true, 0)",
                                   "addStringValue(\"NONE\")",
                                   "addStringValue(\"ALL\")",
                                   "addStringValue(\"MEASURE\")",
                                   "addStringValue(\"LABEL\")",
                                   "addStringValue(\"VALUELABELS\")",
                                   "addStringValue(\"COLUMNS\")",
                                   "addStringValue(\"MISSING\")",
                                   "addStringValue(\"ALIGN\")",
                                   "addStringValue(\"ROLE\")",
                                   "addStringValue(\"ATTRIBUTES\")",
                                   "addStringValue(\"WIDTH\")",
                                   "addParamDescriptor(ParamDescriptor#11)",
                                   "ParamDescriptor(\"CASETABLE\", 3, false, true, 0)",
                                   "addStringValue(\"YES\")",
                                   "addStringValue(\"NO\")",
                                   "addParamDescriptor(ParamDescriptor#12)",
                                   "ParamDescriptor(\"TABLELIMIT\", 7, false, true, 0)",
                                   "addStringValue(\"NONE\")",
                                   "setLowerBoundary(0, 2)",
                                   "setUpperBoundary(10001, 2)",
                                   "addParamDescriptor(ParamDescriptor#13)",
                                   "addSubComDescriptor(SubComDescriptor#5)"}));
}

TEST(CommandGrammar, IsBuiltBetweenTheEmptySpecificationAndTheParser) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.missingInOrder({"CommandSpec#1 = ", "SubComDescriptor(\"COMPDATASET\"",
                                "CommandDescriptor#1.addSubComDescriptor(SubComDescriptor#5)", "UniversalParser#1 = ",
                                "ParserMessage#1 = ", "getCommandSpecifications() -> 0", "getSubComObj("}),
            "");
}

TEST(CommandGrammar, IsParsedUnderTheCommandsNameAsNameAndTitle) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.journalLines({"CommandSpec#1 = ", "UniversalParser#1 = ", "ParserMessage#1", "getCommandSpecifications",
                              "~UniversalParser#1", "~CommandSpec#1"}),
            (Lines{"CommandSpec#1 = CommandSpec()",
                   "UniversalParser#1 = UniversalParser(VRIX_TokenSequence#1, CommandSpec#1, CommandDescriptor#1)",
                   "ParserMessage#1 = ParserMessage()", "ParserMessage#1.SetCommandName(\"COMPARE DATASETS\")",
                   "ParserMessage#1.SetProcedureTitle(\"COMPARE DATASETS\")",
                   "UniversalParser#1.getCommandSpecifications() -> 0", "~ParserMessage#1", "~UniversalParser#1",
                   "~CommandSpec#1"}));
}

TEST(CommandGrammar, KeepsItsDescriptorForTheVariableListsAndTheParserOnlyForTheParse) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.missingInOrder(
                {"CommandDescriptor#1 = ", "VarSpecObj#1 = ", "VarSpecObj#2 = ", "CommandSpec#1 = ", "~ParserMessage#1",
                 "pvGetCmnGlb()", "~VarSpecObj#2", "~VarSpecObj#1", "~CommandDescriptor#1"}),
            "");
}

// What the parser says to a subcommand; nothing when it takes it.
std::string parserOn(const std::string& subcommand) {
  ProcedureRun run(cases(), cases());
  run.run("/COMPDATASET=b /VARIABLES=ALL " + subcommand);
  const bool isAccepted = run.journalLine("getCommandSpecifications() -> 0") != -1;
  if (isAccepted) return run.messages().find("parser: ") == std::string::npos ? "" : "accepted, but: " + run.messages();
  EXPECT_EQ(run.tables(), "") << subcommand;
  EXPECT_EQ(run.values("CasesCompare"), "no variable") << subcommand;
  EXPECT_EQ(run.journalLine("getSubComObj("), -1) << subcommand;
  return run.messages();
}

TEST(CommandGrammar, TakesTableLimitsFromOneToTenThousandAndNone) {
  for (const char* accepted : {"1", "100", "10000", "NONE", "none"}) {
    EXPECT_EQ(parserOn(std::string("/OUTPUT TABLELIMIT=") + accepted), "") << accepted;
  }
  for (const char* refused : {"0", "10001", "-1", "1.5", "ALL", "'NONE '", "1 2"}) {
    EXPECT_NE(parserOn(std::string("/OUTPUT TABLELIMIT=") + refused), "") << refused;
  }
}

TEST(CommandGrammar, TakesYesAndNoInAnyCaseAndNothingElse) {
  for (const char* keyword : {"/SAVE FLAGMISMATCHES=", "/SAVE MATCHDATASET=", "/SAVE MISMATCHDATASET=",
                              "/SAVE ENCRYPTEDPW=", "/OUTPUT CASETABLE="}) {
    for (const char* accepted : {"YES", "NO", "yes", "No"}) {
      EXPECT_EQ(parserOn(std::string(keyword) + accepted), "") << keyword << accepted;
    }
    for (const char* refused : {"Y", "NONE", "1", "YES NO", ""}) {
      EXPECT_NE(parserOn(std::string(keyword) + refused), "") << keyword << refused;
    }
  }
}

TEST(CommandGrammar, TakesEveryPropertyAloneAndTogether) {
  const char* properties[] = {"NONE",    "ALL",   "MEASURE", "LABEL",      "VALUELABELS", "COLUMNS",
                              "MISSING", "ALIGN", "ROLE",    "ATTRIBUTES", "WIDTH"};
  std::string all;
  for (const char* property : properties) {
    EXPECT_EQ(parserOn(std::string("/OUTPUT VARPROPERTIES=") + property), "") << property;
    all += std::string(" ") + property;
  }
  EXPECT_EQ(parserOn("/OUTPUT VARPROPERTIES=" + all), "");  // the procedure's to judge
  EXPECT_NE(parserOn("/OUTPUT VARPROPERTIES=LABELS"), "");
  EXPECT_NE(parserOn("/OUTPUT VARPROPERTIES=LAB"), "");
}

TEST(CommandGrammar, TakesAPasswordInQuotesAndTheWordNoneWhereItIsAllowed) {
  for (const char* keyword : {"/SAVE MATCHPASS=", "/SAVE MISMATCHPASS="}) {
    for (const char* accepted : {"'x'", "''", "NONE", "'NONE'"}) {
      EXPECT_EQ(parserOn(std::string(keyword) + accepted), "") << keyword << accepted;
    }
    EXPECT_NE(parserOn(std::string(keyword) + "secret"), "") << keyword;
  }
  EXPECT_NE(parserOn("/CASEID=x PASSWORD='x'"), "");
}

TEST(CommandGrammar, KnowsEncryptedPwThoughOnlyTheSecondSaveDoes) {
  EXPECT_EQ(parserOn("/SAVE ENCRYPTEDPW=YES VARNAME=mark MATCHNAME=m"), "");
}

TEST(CommandGrammar, RefusesSubcommandsAndKeywordsThatItDoesNotKnowOrThatAreRepeated) {
  for (const char* refused : {"/NOSUCH=1", "/SAVE NOSUCH=1", "/OUTPUT CASEID=x", "/VARIABLES=x", "/SAVE x",
                              "/SAVE VARNAME=m VARNAME=n", "/CASEID=x NOSUCH=1"}) {
    EXPECT_NE(parserOn(refused), "") << refused;
  }
}

TEST(CommandGrammar, RequiresNoSubcommandItself) {
  ProcedureRun run(cases(), cases());
  run.run("");
  EXPECT_EQ(run.messages(), "2/2 Incomplete command. No dataset was specified.\n");
}

}  // namespace workbench::tests::command_grammar_test
