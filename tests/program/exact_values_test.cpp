// Nothing is made equal by reading: keys of several widths, and numbers that lie closer than a double can tell.
#include <gtest/gtest.h>

#include "tests/program/program_run.h"

namespace workbench::tests::exact_values_test {

const std::string summary = "CD_MatchedSummaryTableName";

struct Pair {
  Pair(const std::string& active, const std::string& compared) {
    folder.write("a.csv", active);
    folder.write("b.csv", compared);
  }
  int status(std::vector<std::string> more = {}) const {
    std::vector<std::string> arguments = {"compare", "a.csv", "b.csv", "--id", "id"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return folder.run(arguments).status;
  }
  std::string compared() const {
    return cellOf(folder.results({"compare", "a.csv", "b.csv", "--id", "id"}), summary,
                  {"CD_CasesCompared", "CD_Count", "CD_Active"});
  }
  ProgramFolder folder;
};

Pair values(const std::string& active, const std::string& compared) {
  return {"id,x\n1," + active + "\n", "id,x\n1," + compared + "\n"};
}

TEST(ExactValues, IntegersBeyondTheDoublesDiffer) {
  EXPECT_EQ(values("9007199254740993", "9007199254740992").status(), 1);
  EXPECT_EQ(values("9007199254740993", "9007199254740993").status(), 0);
}

TEST(ExactValues, ThirtyFiveDigitsDifferInTheLast) {
  EXPECT_EQ(values("0.12345678901234567890123456789012345", "0.12345678901234567890123456789012346").status(), 1);
  EXPECT_EQ(values("12345678901234567890123456789012345", "12345678901234567890123456789012346").status(), 1);
}

TEST(ExactValues, ANumberTooSmallForADoubleIsNotZero) { EXPECT_EQ(values("1e-400", "0").status(), 1); }

TEST(ExactValues, MinusZeroIsNearZeroUnderPlainNumberFormats) {
  EXPECT_EQ(values("-0", "0").status(), 0);
  EXPECT_EQ(values("-0", "0").status({"--tolerance", "0"}), 0);
}

TEST(ExactValues, NumbersWrittenDifferentlyAreTheSameNumber) {
  EXPECT_EQ(values("1.50", "15e-1").status(), 0);
  EXPECT_EQ(values("1.5", "1.51").status(), 1);
}

TEST(ExactValues, LeadingZerosMakeAnIdentifier) { EXPECT_EQ(values("007", "7").status(), 1); }

TEST(ExactValues, AnEmptyFieldIsNotZero) { EXPECT_EQ(values("", "0").status(), 1); }

TEST(ExactValues, TheToleranceCanBeSwitchedOff) {
  EXPECT_EQ(values("0.3", "0.30000000000000004").status(), 0);
  EXPECT_EQ(values("0.3", "0.30000000000000004").status({"--tolerance", "0"}), 1);
}

TEST(ExactValues, TrailingBlanksOfATextDoNotCountAndLeadingOnesDo) {
  EXPECT_EQ(values("ab", "ab  ").status(), 0);
  EXPECT_EQ(values("ab", " ab").status(), 1);
}

TEST(CaseIds, TheSameTextsInTwoWidthsArePaired) {
  const Pair pair("id,x\naa,1\nbb,2\n", "id,x\naa,1\nbb,2\nlonger-key-12,3\n");
  EXPECT_EQ(pair.compared(), "2");
}

TEST(CaseIds, MissingAndBlankKeysArePairedWithEachOther) {
  EXPECT_EQ(Pair("id,x\n,1\n1,2\n", "id,x\n,1\n1,2\n").status(), 0);
  EXPECT_EQ(Pair("id,x\n,1\na,2\n", "id,x\n \t,1\na,2\n").status(), 1);
  EXPECT_EQ(Pair("id,x\n  ,1\na,2\n", "id,x\n,1\na,2\n").status(), 0);
}

TEST(CaseIds, NonAsciiKeysAreOrderedByTheirBytes) {
  EXPECT_EQ(
      Pair("id,x\nZ\xc3\xbcrich,1\nArth,2\n\xc3\x84gypten,3\n", "id,x\n\xc3\x84gypten,3\nArth,2\nZ\xc3\xbcrich,1\n")
          .status(),
      0);
}

TEST(CaseIds, ALocaleOrdersThemAsItsDictionaryDoes) {
  const Pair pair("id,x\n\xc3\x84gypten,1\nArth,2\nZug,3\n", "id,x\nArth,2\n\xc3\x84gypten,1\nZug,3\n");
  EXPECT_EQ(pair.status({"--collation", "de"}), 0);
  EXPECT_EQ(pair.status(), 0);
}

TEST(CaseIds, DatasetsOutOfOrderAreRefusedWhenNothingMayBeSorted) {
  const Pair pair("id,x\n2,1\n1,2\n", "id,x\n1,2\n2,1\n");
  const ProgramResult result = pair.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--sort", "never"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("not sorted"), std::string::npos) << result.err;
}

}  // namespace workbench::tests::exact_values_test
