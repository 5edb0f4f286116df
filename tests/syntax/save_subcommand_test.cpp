// SAVE: the flag variable, the names and passwords of the saved cases, and the one quoted-string flag that they share.
#include <gtest/gtest.h>

#include <array>

#include "tests/syntax/parsed_command.h"

namespace compdatas {
namespace {

ParsedCommand saved(const std::string& keywords) {
  return ParsedCommand("/COMPDATASET=b /VARIABLES=ALL /SAVE " + keywords);
}

std::size_t lineWith(const ParsedCommand& parsed, const std::string& text) {
  for (std::size_t index = 0; index < parsed.journal().size(); ++index) {
    if (parsed.journal()[index].find(text) != std::string::npos) return index;
  }
  return std::string::npos;
}

TEST(Save, SwitchesTheFlagVariableByYesAndNoInAnyCase) {
  EXPECT_TRUE(saved("FLAGMISMATCHES=YES").options().flagMismatches());
  EXPECT_TRUE(saved("FLAGMISMATCHES=yes").options().flagMismatches());
  EXPECT_FALSE(saved("FLAGMISMATCHES=NO").options().flagMismatches());
  EXPECT_FALSE(saved("FLAGMISMATCHES=no").options().flagMismatches());
}

TEST(Save, ReadsNoNameOfTheFlagVariableWhenItIsSwitchedOff) {
  const ParsedCommand parsed("/COMPDATASET=b /VARIABLES=ALL /SAVE FLAGMISMATCHES=NO VARNAME=x");
  EXPECT_FALSE(parsed.options().flagMismatches());
  EXPECT_EQ(parsed.options().flagVarName(), "CasesCompare");
  EXPECT_EQ(lineWith(parsed, "getStringToken()"), std::string::npos);
}

TEST(Save, TakesTheNameOfTheFlagVariableWithoutFlagMismatches) {
  const ParsedCommand parsed = saved("VARNAME=x");
  EXPECT_TRUE(parsed.options().flagMismatches());
  EXPECT_EQ(parsed.options().flagVarName(), "x");
}

TEST(Save, TakesTheNameOfTheFlagVariableAsAWordOrAStringAndLeavesTheDefaultForAnEmptyOne) {
  EXPECT_EQ(saved("FLAGMISMATCHES=YES VARNAME='my flag'").options().flagVarName(), "my flag");
  EXPECT_EQ(saved("VARNAME=''").options().flagVarName(), "CasesCompare");
}

TEST(Save, IgnoresNameAndPasswordOfCasesThatAreNotSaved) {
  for (const char* dataset : {"", "MATCHDATASET=NO MISMATCHDATASET=NO "}) {
    const ParsedCommand parsed =
        saved(std::string(dataset) + "MATCHNAME='f' MATCHPASS='' MISMATCHNAME='g' MISMATCHPASS=''");
    EXPECT_TRUE(parsed.accepted());
    EXPECT_EQ(parsed.messages(), "");
    EXPECT_FALSE(parsed.options().matchDataset());
    EXPECT_FALSE(parsed.options().mismatchDataset());
    EXPECT_EQ(parsed.options().matchName(), "MatchedCases");
    EXPECT_EQ(parsed.options().mismatchName(), "MismatchedCases");
  }
}

TEST(Save, KeepsTheDefaultNameWhenSeveralAreGiven) {
  const ParsedCommand parsed = saved("MATCHDATASET=YES MATCHNAME=f g MATCHPASS='p'");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.options().matchName(), "MatchedCases");
  EXPECT_EQ(parsed.options().matchPassword(), "p");  // nothing was read that is no quoted string
}

TEST(Save, RefusesAnEmptyPasswordOfMatchedCasesAndReadsNoMismatchKeywordButEncryptedPw) {
  const ParsedCommand parsed = saved(
      "MATCHDATASET=YES MATCHNAME='f' MATCHPASS='' MISMATCHDATASET=YES MISMATCHNAME='g' MISMATCHPASS='' "
      "ENCRYPTEDPW=YES");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "2/3 MATCHPASS password too short.\n");
  EXPECT_TRUE(parsed.options().matchDataset());
  EXPECT_EQ(parsed.options().matchName(), "f");
  EXPECT_FALSE(parsed.options().mismatchDataset());
  EXPECT_EQ(parsed.options().mismatchName(), "MismatchedCases");
  EXPECT_TRUE(parsed.options().encryptedPassword());
}

TEST(Save, RefusesAnEmptyPasswordOfMismatchedCasesAndStillReadsEncryptedPw) {
  const ParsedCommand parsed = saved(
      "MATCHDATASET=YES MATCHNAME='f' MATCHPASS='p' MISMATCHDATASET=YES MISMATCHNAME='g' MISMATCHPASS='' "
      "ENCRYPTEDPW=YES");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "2/3 MISMATCHPASS password too short.\n");
  EXPECT_EQ(parsed.options().matchPassword(), "p");
  EXPECT_TRUE(parsed.options().mismatchDataset());
  EXPECT_EQ(parsed.options().mismatchName(), "g");
  EXPECT_TRUE(parsed.options().encryptedPassword());
}

TEST(Save, ARefusedPasswordEndsTheReadingBeforeOutput) {
  const ParsedCommand parsed = saved("MATCHDATASET=YES MATCHPASS='' /OUTPUT CASETABLE=NO");
  EXPECT_FALSE(parsed.accepted());
  EXPECT_EQ(lineWith(parsed, "getSubComObj(\"OUTPUT\")"), std::string::npos);
  EXPECT_TRUE(parsed.options().caseTable());
}

TEST(Save, TakesAPasswordOfOneCharacter) {
  const ParsedCommand parsed = saved("MATCHDATASET=YES MATCHNAME='f' MATCHPASS='a'");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.options().matchPassword(), "a");
}

TEST(Save, StoresNoPasswordForTheWordNone) {
  const ParsedCommand parsed = saved("MATCHDATASET=YES MATCHNAME='f' MATCHPASS=NONE");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.options().matchPassword(), "");
  EXPECT_EQ(saved("MATCHDATASET=YES MATCHNAME='f' MATCHPASS='NONE'").options().matchPassword(), "NONE");
}

TEST(Save, EncryptedPwIsYesOnlyWhenItSaysSo) {
  EXPECT_TRUE(saved("ENCRYPTEDPW=YES").options().encryptedPassword());
  EXPECT_TRUE(saved("ENCRYPTEDPW=yes").options().encryptedPassword());
  EXPECT_FALSE(saved("ENCRYPTEDPW=NO").options().encryptedPassword());
  EXPECT_FALSE(saved("VARNAME=x").options().encryptedPassword());
}

TEST(Save, FetchesItsNineKeywordsInOrder) {
  const ParsedCommand parsed = saved("VARNAME=x");
  std::string fetched;
  for (const std::string& line : parsed.journal()) {
    const std::size_t begin = line.find("getParamObj(\"");
    if (begin == std::string::npos) continue;
    fetched += line.substr(begin + 13, line.find('"', begin + 13) - begin - 13) + " ";
  }
  EXPECT_EQ(fetched,
            "PASSWORD FLAGMISMATCHES VARNAME MATCHDATASET MATCHNAME MATCHPASS MISMATCHDATASET MISMATCHNAME "
            "MISMATCHPASS ENCRYPTEDPW ");
}

// How a name and a password can be written, and what the procedure is to make of them.
struct Written {
  std::string text;  // empty: not given
  std::string value;
  bool isQuoted = true;
};
const std::array<Written, 4> namesWritten = {{{"", ""}, {"'f'", "f"}, {"''", ""}, {"f", "f", false}}};
const std::array<Written, 4> passwordsWritten = {{{"", ""}, {"'p'", "p"}, {"''", ""}, {"NONE", "NONE", false}}};

struct Expected {
  std::string name;
  std::string password;
  bool refused = false;
};

// A password counts when the value read before it (there may be none) and it itself were quoted strings.
Expected expectedOf(const Written& name, const Written& password, const std::string& defaultName, bool& lastWasQuoted) {
  Expected expected{defaultName, ""};
  if (!name.text.empty()) {
    expected.name = name.value;
    lastWasQuoted = name.isQuoted;
  }
  if (password.text.empty() || !lastWasQuoted) return expected;
  lastWasQuoted = password.isQuoted;
  if (!password.isQuoted) return expected;
  expected.refused = password.value.empty();
  if (!expected.refused) expected.password = password.value;
  return expected;
}

std::string keyword(const std::string& name, const Written& value) {
  return value.text.empty() ? "" : " " + name + "=" + value.text;
}

TEST(Save, SharesOneQuotedStringFlagBetweenBothNamesAndBothPasswordsInEveryCombination) {
  for (const Written& matchName : namesWritten) {
    for (const Written& matchPassword : passwordsWritten) {
      for (const Written& mismatchName : namesWritten) {
        for (const Written& mismatchPassword : passwordsWritten) {
          const std::string keywords = "MATCHDATASET=YES" + keyword("MATCHNAME", matchName) +
                                       keyword("MATCHPASS", matchPassword) + " MISMATCHDATASET=YES" +
                                       keyword("MISMATCHNAME", mismatchName) +
                                       keyword("MISMATCHPASS", mismatchPassword);
          bool lastWasQuoted = true;
          const Expected matched = expectedOf(matchName, matchPassword, "MatchedCases", lastWasQuoted);
          Expected mismatched{"MismatchedCases", ""};
          if (!matched.refused) {
            mismatched = expectedOf(mismatchName, mismatchPassword, "MismatchedCases", lastWasQuoted);
          }

          const ParsedCommand parsed = saved(keywords);
          EXPECT_EQ(parsed.accepted(), !matched.refused && !mismatched.refused) << keywords;
          EXPECT_EQ(parsed.messages(), matched.refused      ? "2/3 MATCHPASS password too short.\n"
                                       : mismatched.refused ? "2/3 MISMATCHPASS password too short.\n"
                                                            : "")
              << keywords;
          EXPECT_EQ(parsed.options().matchName(), matched.name) << keywords;
          EXPECT_EQ(parsed.options().matchPassword(), matched.password) << keywords;
          EXPECT_EQ(parsed.options().mismatchName(), mismatched.name) << keywords;
          EXPECT_EQ(parsed.options().mismatchPassword(), mismatched.password) << keywords;
        }
      }
    }
  }
}

TEST(Save, APasswordBehindAWordIsIgnoredWithoutAWord) {
  const ParsedCommand parsed = saved("MATCHDATASET=YES MATCHNAME=f MATCHPASS=''");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.messages(), "");
  EXPECT_EQ(parsed.options().matchName(), "f");
}

TEST(Save, AWordForMatchedCasesAlsoKeepsThePasswordOfNamelessMismatchedCasesFromBeingRead) {
  const ParsedCommand parsed = saved("MATCHDATASET=YES MATCHNAME=f MISMATCHDATASET=YES MISMATCHPASS='p'");
  EXPECT_TRUE(parsed.accepted());
  EXPECT_EQ(parsed.options().mismatchPassword(), "");
  EXPECT_EQ(saved("MATCHDATASET=NO MATCHNAME=f MISMATCHDATASET=YES MISMATCHPASS='p'").options().mismatchPassword(),
            "p");  // a name that is not read changes nothing
}

}  // namespace
}  // namespace compdatas
