// OUTPUT: the dictionary properties, the case table and its limit.
#include <gtest/gtest.h>

#include "tests/syntax/parsed_command.h"

namespace compdatas {
namespace {

ParsedCommand output(const std::string& keywords) {
  return ParsedCommand("/COMPDATASET=b /VARIABLES=ALL /OUTPUT " + keywords);
}

std::string choiceOf(const CompareOptions& options) {
  std::string all = options.varPropertiesNone() ? "none" : options.varPropertiesAll() ? "all" : "named";
  if (options.varPropertiesNone() && options.varPropertiesAll()) all = "none and all";
  for (const std::string& property : options.varProperties()) all += " " + property;
  return all;
}

TEST(Output, NoneAndAllAreChoicesWhenTheyStandAlone) {
  EXPECT_EQ(choiceOf(output("VARPROPERTIES=NONE").options()), "none");
  EXPECT_EQ(choiceOf(output("VARPROPERTIES=none").options()), "none");
  EXPECT_EQ(choiceOf(output("VARPROPERTIES=ALL").options()), "all");
  EXPECT_EQ(choiceOf(output("VARPROPERTIES=All").options()), "all");
}

TEST(Output, NamedPropertiesAreKeptInUpperCaseInTheUsersOrderWithTheirRepetitions) {
  EXPECT_EQ(choiceOf(output("VARPROPERTIES=LABEL LABEL").options()), "named LABEL LABEL");
  EXPECT_EQ(choiceOf(output("VARPROPERTIES=width Label measure WIDTH").options()), "named WIDTH LABEL MEASURE WIDTH");
  EXPECT_EQ(
      choiceOf(output("VARPROPERTIES=MEASURE WIDTH LABEL VALUELABELS COLUMNS MISSING ALIGN ROLE ATTRIBUTES").options()),
      "named MEASURE WIDTH LABEL VALUELABELS COLUMNS MISSING ALIGN ROLE ATTRIBUTES");
}

TEST(Output, EveryPropertyCanStandAlone) {
  for (const char* property :
       {"MEASURE", "WIDTH", "LABEL", "VALUELABELS", "COLUMNS", "MISSING", "ALIGN", "ROLE", "ATTRIBUTES"}) {
    const ParsedCommand parsed = output(std::string("VARPROPERTIES=") + property);
    EXPECT_TRUE(parsed.accepted()) << property;
    EXPECT_EQ(choiceOf(parsed.options()), std::string("named ") + property);
  }
}

TEST(Output, NoneOrAllBesideOthersFailsSilentlyAndReadsNothingMore) {
  for (const char* list :
       {"LABEL NONE", "NONE LABEL", "LABEL ALL", "ALL LABEL", "NONE ALL", "NONE NONE", "ALL ALL", "LABEL WIDTH NONE"}) {
    const ParsedCommand parsed = output(std::string("VARPROPERTIES=") + list + " CASETABLE=NO TABLELIMIT=7");
    EXPECT_FALSE(parsed.accepted()) << list;
    EXPECT_EQ(parsed.messages(), "") << list;
    EXPECT_EQ(choiceOf(parsed.options()), "none") << list;
    EXPECT_TRUE(parsed.options().caseTable()) << list;
    EXPECT_EQ(parsed.options().tableLimit(), 100) << list;
  }
}

TEST(Output, OnlyNoSwitchesTheCaseTableOff) {
  EXPECT_FALSE(output("CASETABLE=NO").options().caseTable());
  EXPECT_FALSE(output("CASETABLE=no").options().caseTable());
  EXPECT_TRUE(output("CASETABLE=YES").options().caseTable());
}

TEST(Output, TakesALimitOrNoneWhichKeepsTheNumber) {
  EXPECT_EQ(output("TABLELIMIT=1").options().tableLimit(), 1);
  EXPECT_EQ(output("TABLELIMIT=10000").options().tableLimit(), 10000);
  EXPECT_FALSE(output("TABLELIMIT=10000").options().tableLimitNone());
  for (const char* none : {"TABLELIMIT=NONE", "TABLELIMIT=none"}) {
    EXPECT_TRUE(output(none).options().tableLimitNone());
    EXPECT_EQ(output(none).options().tableLimit(), 100);
  }
}

TEST(Output, FetchesItsKeywordsBeforeItReadsAny) {
  const ParsedCommand parsed = output("TABLELIMIT=5 CASETABLE=NO VARPROPERTIES=LABEL");
  std::string calls;
  for (const std::string& line : parsed.journal()) {
    for (const char* call :
         {"getParamObj(\"VARPROPERTIES\")", "getParamObj(\"CASETABLE\")", "getParamObj(\"TABLELIMIT\")",
          "getUpStringList()", "isStringValueCase(\"NO\")", "isStringValueCase(\"NONE\")", "getIntegerValue()"}) {
      if (line.find(call) != std::string::npos) calls += std::string(call) + "\n";
    }
  }
  EXPECT_EQ(calls,
            "getParamObj(\"VARPROPERTIES\")\ngetParamObj(\"CASETABLE\")\ngetParamObj(\"TABLELIMIT\")\n"
            "getUpStringList()\nisStringValueCase(\"NO\")\nisStringValueCase(\"NONE\")\ngetIntegerValue()\n");
}

TEST(Output, WithoutKeywordsChangesNothing) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=ALL /OUTPUT");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(choiceOf(parsed.options()), "none");
  EXPECT_TRUE(parsed.options().caseTable());
  EXPECT_EQ(parsed.options().tableLimit(), 100);
}

}  // namespace
}  // namespace compdatas
