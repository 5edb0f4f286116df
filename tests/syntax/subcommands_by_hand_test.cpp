// SAVE and OUTPUT, given values that the grammar lets no command have.
#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "syntax/output_subcommand.h"
#include "syntax/save_subcommand.h"
#include "workbench/language/spec_state.h"

namespace compdatas {
namespace {

using Kind = TokenInfoObj::Kind;

TokenInfoObj word(std::string text) { return {Kind::word, std::move(text), 1, 1}; }
TokenInfoObj number(std::string text) { return {Kind::number, std::move(text), 1, 1}; }

// A subcommand of which each keyword has these values.
class Given {
 public:
  explicit Given(const std::string& name) : subcommand_(name) {}

  Given& keyword(const std::string& name, std::vector<TokenInfoObj> values) {
    subcommand_.state().keywords.push_back({name, std::make_unique<ParamObj>(name, std::move(values))});
    return *this;
  }
  const SubComObj& subcommand() const { return subcommand_; }

 private:
  SubComObj subcommand_;
};

TEST(SaveByHand, TakesAnyWordButYesForNo) {
  Given given("SAVE");
  given.keyword("FLAGMISMATCHES", {word("PERHAPS")}).keyword("VARNAME", {word("mark")});
  given.keyword("MATCHDATASET", {word("PERHAPS")}).keyword("MISMATCHDATASET", {word("YE")});
  given.keyword("ENCRYPTEDPW", {word("PERHAPS")});
  CompareOptions options;
  options.setEncryptedPassword(true);
  EXPECT_TRUE(readSave(given.subcommand(), options));
  EXPECT_FALSE(options.flagMismatches());
  EXPECT_EQ(options.flagVarName(), "CasesCompare");
  EXPECT_FALSE(options.matchDataset());
  EXPECT_FALSE(options.mismatchDataset());
  EXPECT_FALSE(options.encryptedPassword());
}

TEST(SaveByHand, LeavesCasesThatAreToBeSavedAlreadyAsTheyAre) {
  Given given("SAVE");
  given.keyword("MATCHDATASET", {word("NO")}).keyword("MISMATCHDATASET", {word("NO")});
  CompareOptions options;
  options.setMatchDataset(true);
  options.setMismatchDataset(true);
  EXPECT_TRUE(readSave(given.subcommand(), options));
  EXPECT_TRUE(options.matchDataset());
  EXPECT_TRUE(options.mismatchDataset());
}

TEST(SaveByHand, WithoutEncryptedPwSaysThatPasswordsAreNot) {
  CompareOptions options;
  options.setEncryptedPassword(true);
  EXPECT_TRUE(readSave(Given("SAVE").subcommand(), options));
  EXPECT_FALSE(options.encryptedPassword());
}

TEST(OutputByHand, PassesOverAPropertyListThatCannotBeReadAndReadsTheRest) {
  const std::initializer_list<std::vector<TokenInfoObj>> unreadable = {{}, {number("5")}, {word("LABEL"), number("5")}};
  for (const std::vector<TokenInfoObj>& values : unreadable) {
    Given given("OUTPUT");
    given.keyword("VARPROPERTIES", values).keyword("CASETABLE", {word("NO")}).keyword("TABLELIMIT", {number("7")});
    CompareOptions options;
    options.setVarPropertiesAll();
    EXPECT_TRUE(readOutput(given.subcommand(), options));
    EXPECT_TRUE(options.varPropertiesAll());
    EXPECT_TRUE(options.varProperties().empty());
    EXPECT_FALSE(options.caseTable());
    EXPECT_EQ(options.tableLimit(), 7);
  }
}

TEST(OutputByHand, TakesNoAbbreviationAndNoLongerWordForAProperty) {
  for (const char* unknown : {"MEAS", "MEASURES", "LABE", "VALUELABEL", "ATTRIBUTE", "WIDTHS", "", " ROLE"}) {
    Given given("OUTPUT");
    given.keyword("VARPROPERTIES", {word("LABEL"), word(unknown)}).keyword("CASETABLE", {word("NO")});
    CompareOptions options;
    EXPECT_FALSE(readOutput(given.subcommand(), options)) << unknown;
    EXPECT_TRUE(options.varProperties().empty()) << unknown;
    EXPECT_TRUE(options.varPropertiesNone()) << unknown;
    EXPECT_TRUE(options.caseTable()) << unknown;
  }
}

TEST(OutputByHand, NeverSwitchesTheCaseTableOn) {
  for (const char* value : {"YES", "PERHAPS"}) {
    Given given("OUTPUT");
    given.keyword("CASETABLE", {word(value)});
    CompareOptions options;
    EXPECT_TRUE(readOutput(given.subcommand(), options));
    EXPECT_TRUE(options.caseTable());
    options.setCaseTable(false);
    EXPECT_TRUE(readOutput(given.subcommand(), options));
    EXPECT_FALSE(options.caseTable());
  }
}

TEST(OutputByHand, HoldsALimitAgainstNoBoundsAndClearsNone) {
  for (const char* limit : {"0", "-5", "20000"}) {
    Given given("OUTPUT");
    given.keyword("TABLELIMIT", {number(limit)});
    CompareOptions options;
    options.setTableLimitNone();
    EXPECT_TRUE(readOutput(given.subcommand(), options));
    EXPECT_EQ(options.tableLimit(), std::stoi(limit));
    EXPECT_FALSE(options.tableLimitNone());
  }
}

TEST(OutputByHand, KeepsAnEarlierLimitBesideNone) {
  Given given("OUTPUT");
  given.keyword("TABLELIMIT", {word("none")});
  CompareOptions options;
  options.setTableLimit(42);
  EXPECT_TRUE(readOutput(given.subcommand(), options));
  EXPECT_TRUE(options.tableLimitNone());
  EXPECT_EQ(options.tableLimit(), 42);
}

}  // namespace
}  // namespace compdatas
