// The options record: its defaults, and the two choices that its setters keep consistent.
#include "syntax/compare_options.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace compdatas {
namespace {

TEST(CompareOptions, StartsWithTheFlagVariableOnAndEverythingElseOff) {
  const CompareOptions options;
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
  EXPECT_FALSE(options.encryptedPassword());
  EXPECT_FALSE(options.spareFlag());
  EXPECT_EQ(options.compDatasetPassword(), "");
  EXPECT_EQ(options.matchPassword(), "");
  EXPECT_EQ(options.mismatchPassword(), "");
  EXPECT_TRUE(options.compareVariables().empty());
  EXPECT_TRUE(options.variablesNotInActive().empty());
  EXPECT_TRUE(options.caseIdVariables().empty());
  EXPECT_FALSE(options.compDataset().IsValid());
}

TEST(CompareOptions, ARecordMadeInPlaceHasTheSameDefaults) {
  const CompareOptionsRecord record;
  const CompareOptions options;
  EXPECT_FALSE(record.initialFlag);
  EXPECT_EQ(record.compDataset.IsValid(), options.compDataset().IsValid());
  EXPECT_EQ(record.compDatasetPassword, options.compDatasetPassword());
  EXPECT_EQ(record.compareVariables, options.compareVariables());
  EXPECT_FALSE(record.spareFlag);
  EXPECT_EQ(record.variablesNotInActive.size(), options.variablesNotInActive().size());
  EXPECT_EQ(record.caseIdVariables, options.caseIdVariables());
  EXPECT_EQ(record.flagMismatches, options.flagMismatches());
  EXPECT_EQ(record.flagVarName, options.flagVarName());
  EXPECT_EQ(record.matchDataset, options.matchDataset());
  EXPECT_EQ(record.matchName, options.matchName());
  EXPECT_EQ(record.matchPassword, options.matchPassword());
  EXPECT_EQ(record.mismatchDataset, options.mismatchDataset());
  EXPECT_EQ(record.mismatchName, options.mismatchName());
  EXPECT_EQ(record.mismatchPassword, options.mismatchPassword());
  EXPECT_EQ(record.encryptedPassword, options.encryptedPassword());
  EXPECT_EQ(record.varPropertiesNone, options.varPropertiesNone());
  EXPECT_EQ(record.varPropertiesAll, options.varPropertiesAll());
  EXPECT_EQ(record.varProperties, options.varProperties());
  EXPECT_EQ(record.caseTable, options.caseTable());
  EXPECT_EQ(record.tableLimitNone, options.tableLimitNone());
  EXPECT_EQ(record.tableLimit, options.tableLimit());
}

TEST(CompareOptions, KeepTheFieldsInTheOrderInWhichCommandsAreRead) {
  // Named initialisers out of the order of the fields do not compile.
  const CompareOptionsRecord record{.initialFlag = true,
                                    .compDataset = {},
                                    .compDatasetPassword = "p",
                                    .compareVariables = {1},
                                    .spareFlag = true,
                                    .variablesNotInActive = {},
                                    .caseIdVariables = {2},
                                    .flagMismatches = false,
                                    .flagVarName = "f",
                                    .matchDataset = true,
                                    .matchName = "m",
                                    .matchPassword = "q",
                                    .mismatchDataset = true,
                                    .mismatchName = "u",
                                    .mismatchPassword = "r",
                                    .encryptedPassword = true,
                                    .varPropertiesNone = false,
                                    .varPropertiesAll = true,
                                    .varProperties = {"LABEL"},
                                    .caseTable = false,
                                    .tableLimitNone = true,
                                    .tableLimit = 7};
  EXPECT_TRUE(record.initialFlag);
  EXPECT_EQ(record.tableLimit, 7);
}

TEST(CompareOptions, AreTheOnlyOwnerOfTheirRecord) {
  static_assert(!std::is_copy_constructible_v<CompareOptions> && !std::is_copy_assignable_v<CompareOptions>);
  CompareOptions options;
  const CompareOptions others;
  options.setMatchName("changed");
  options.setTableLimit(7);
  EXPECT_EQ(others.matchName(), "MatchedCases");
  EXPECT_EQ(others.tableLimit(), 100);
  // What is destroyed frees its record: a build with the leak sanitizer tells of one that stays.
}

TEST(CompareOptions, ATextThatIsSetToItselfStaysAsItIs) {
  CompareOptions options;
  options.setMatchName(options.matchName());
  options.setFlagVarName(options.flagVarName());
  EXPECT_EQ(options.matchName(), "MatchedCases");
  EXPECT_EQ(options.flagVarName(), "CasesCompare");
}

TEST(CompareOptions, AnEmptyPropertyListLeavesTheChoiceOfAll) {
  CompareOptions options;
  options.setVarPropertiesAll();
  options.setVarProperties({});
  EXPECT_TRUE(options.varPropertiesAll());
  EXPECT_FALSE(options.varPropertiesNone());
}

TEST(CompareOptions, AnEmptyPropertyListLeavesTheDefaultAtNone) {
  CompareOptions options;
  options.setVarProperties({});
  EXPECT_TRUE(options.varPropertiesNone());
}

TEST(CompareOptions, NamedPropertiesClearBothOtherChoices) {
  CompareOptions options;
  options.setVarPropertiesAll();
  options.setVarProperties({"LABEL", "LABEL"});
  EXPECT_FALSE(options.varPropertiesAll());
  EXPECT_FALSE(options.varPropertiesNone());
  EXPECT_EQ(options.varProperties(), (VarPropertySet{"LABEL", "LABEL"}));
}

TEST(CompareOptions, NoneAndAllExcludeEachOther) {
  CompareOptions options;
  options.setVarPropertiesAll();
  options.setVarPropertiesNone();
  EXPECT_TRUE(options.varPropertiesNone());
  EXPECT_FALSE(options.varPropertiesAll());
}

TEST(CompareOptions, NoLimitKeepsTheNumberThatWasSetBefore) {
  CompareOptions options;
  options.setTableLimit(7);
  options.setTableLimitNone();
  EXPECT_EQ(options.tableLimit(), 7);
  EXPECT_TRUE(options.tableLimitNone());
  options.setTableLimit(9);
  EXPECT_FALSE(options.tableLimitNone());
}

TEST(CompareOptions, ListsOfVariablesGrowWhileMissingNamesAreReplaced) {
  CompareOptions options;
  options.setCompareVariables({1, 2});
  options.setCompareVariables({3});
  options.setCaseIdVariables({0});
  options.setCaseIdVariables({4});
  options.setVariablesNotInActive({VrixVarName("a"), VrixVarName("b")});
  options.setVariablesNotInActive({VrixVarName("c")});
  EXPECT_EQ(options.compareVariables(), (std::vector<std::int32_t>{1, 2, 3}));
  EXPECT_EQ(options.caseIdVariables(), (std::vector<std::int32_t>{0, 4}));
  ASSERT_EQ(options.variablesNotInActive().size(), 1U);
  EXPECT_EQ(options.variablesNotInActive().front().GetText(), "c");
}

TEST(CompareOptions, HandsOutListsThemselvesButCopiesOfTextsAndProperties) {
  CompareOptions options;
  const std::vector<std::int32_t>& variables = options.compareVariables();
  const std::vector<std::int32_t>& caseIds = options.caseIdVariables();
  const std::vector<VrixVarName>& missing = options.variablesNotInActive();
  const std::string name = options.matchName();
  const VarPropertySet properties = options.varProperties();
  options.setCompareVariables({1});
  options.setCaseIdVariables({2});
  options.setVariablesNotInActive({VrixVarName("q")});
  options.setMatchName("other");
  options.setVarProperties({"LABEL"});
  EXPECT_EQ(variables, (std::vector<std::int32_t>{1}));
  EXPECT_EQ(caseIds, (std::vector<std::int32_t>{2}));
  EXPECT_EQ(missing.size(), 1U);
  EXPECT_EQ(name, "MatchedCases");
  EXPECT_TRUE(properties.empty());
}

TEST(CompareOptions, SettersStoreWhatTheyAreGiven) {
  CompareOptions options;
  options.setCompDatasetPassword("p1");
  options.setFlagVarName("flag");
  options.setMatchName("m");
  options.setMatchPassword("p2");
  options.setMismatchName("u");
  options.setMismatchPassword("p3");
  options.setFlagMismatches(false);
  options.setMatchDataset(true);
  options.setMismatchDataset(true);
  options.setEncryptedPassword(true);
  options.setCaseTable(false);
  EXPECT_EQ(options.compDatasetPassword() + options.flagVarName() + options.matchName() + options.matchPassword() +
                options.mismatchName() + options.mismatchPassword(),
            "p1flagmp2up3");
  EXPECT_FALSE(options.flagMismatches());
  EXPECT_TRUE(options.matchDataset());
  EXPECT_TRUE(options.mismatchDataset());
  EXPECT_TRUE(options.encryptedPassword());
  EXPECT_FALSE(options.caseTable());
}

TEST(CompareOptions, TheSpareFlagHasASetterAndAGetter) {
  CompareOptions options;
  options.setSpareFlag();
  EXPECT_TRUE(options.spareFlag());
}

}  // namespace
}  // namespace compdatas
