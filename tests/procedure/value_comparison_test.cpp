// The comparison of values: when the values of a pair of cases count as equal.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "workbench/runtime/current_run.h"

namespace workbench::tests::value_comparison_test {

const std::string all = "/COMPDATASET=b /VARIABLES=ALL";

bool equalTexts(std::int32_t width, const std::string& text, std::int32_t otherWidth, const std::string& other) {
  const auto flag = [](std::int32_t leftWidth, const std::string& left, std::int32_t rightWidth,
                       const std::string& right) {
    ProcedureRun run(dataset().text("t", leftWidth, {left}), dataset().text("t", rightWidth, {right}));
    return run.run(all).values("CasesCompare");
  };
  const std::string result = flag(width, text, otherWidth, other);
  EXPECT_EQ(result, flag(otherWidth, other, width, text)) << text << " and " << other;  // whichever is active
  EXPECT_TRUE(result == "0" || result == "1") << result;
  return result == "0";
}

DatasetBuilder::Change format(int code) {
  return [=](data::Variable& x) { x.format.type = static_cast<FormatType>(code); };
}

bool equalNumbers(double left, double right, int activeFormat = 5, int comparedFormat = 5) {
  ProcedureRun run(dataset().numeric("x", {left}, format(activeFormat)),
                   dataset().numeric("x", {right}, format(comparedFormat)));
  return run.run(all).values("CasesCompare") == "0";
}

TEST(TextValues, AreEqualWhateverTheirWidthWhenTheRestIsBlank) {
  EXPECT_TRUE(equalTexts(2, "AB", 4, "AB"));
  EXPECT_FALSE(equalTexts(2, "AB", 4, "ABC"));
  EXPECT_FALSE(equalTexts(2, "AB", 4, "AB C"));
  EXPECT_TRUE(equalTexts(8, "same", 20, "same"));
  EXPECT_FALSE(equalTexts(8, "exactly8", 20, "exactly8 and more"));
  EXPECT_TRUE(equalTexts(8, "exactly8", 20, "exactly8"));
  EXPECT_TRUE(equalTexts(2, "", 20, ""));
  EXPECT_FALSE(equalTexts(2, "", 20, "  x"));
}

TEST(TextValues, AreComparedByteByByteWithBlanksAtTheEndIgnored) {
  EXPECT_TRUE(equalTexts(4, "AB", 4, "AB"));
  EXPECT_FALSE(equalTexts(4, "AB", 4, "Ab"));
  EXPECT_FALSE(equalTexts(4, "AB", 4, " AB"));
  EXPECT_FALSE(equalTexts(4, "AB", 4, "A B"));
  EXPECT_FALSE(equalTexts(4, "AB", 4, "AB\t"));
  EXPECT_FALSE(equalTexts(4, std::string("AB\0", 3), 4, "AB"));
  EXPECT_FALSE(equalTexts(6, "\xc3\xa9", 6, "e\xcc\x81"));
}

TEST(TextValues, AreComparedToTheirLastByte) {
  EXPECT_FALSE(equalTexts(9, "12345678a", 9, "12345678b"));
  EXPECT_FALSE(equalTexts(17, "1234567812345678a", 20, "1234567812345678b"));
}

TEST(TextValues, AreNotComparedBeyondTheWidthOfTheirVariable) {
  // What lies behind the third byte of the slot is no part of the value.
  DatasetBuilder active = dataset().text("t", 3, {"abcX"});
  DatasetBuilder compared = dataset().text("t", 3, {"abcY"});
  ProcedureRun run(active, compared);
  EXPECT_EQ(run.run(all).values("CasesCompare"), "0");
  DatasetBuilder wide = dataset().text("t", 5, {"abc"});
  ProcedureRun wider(wide, compared);
  EXPECT_EQ(wider.run(all).values("CasesCompare"), "0");
}

TEST(TextValues, AreHeldAgainstEachOtherInTheSharedWidthByTheHostUnlessTheirBytesAreTheSame) {
  ProcedureRun run(dataset().text("t", 4, {"AB", "AB", "ABCD"}), dataset().text("t", 6, {"AB", "AC", "ABCDEF"}));
  run.run(all);
  EXPECT_EQ(run.journalLines({"VRIXMBstrnbcmp_A("}),
            (std::vector<std::string>{"VRIXMBstrnbcmp_A(\"AB  \", \"AC  \") -> -1"}));
  EXPECT_EQ(run.values("CasesCompare"), "0 1 1");
}

TEST(NumberValues, AreEqualWhenTheyAreTheSame) {
  EXPECT_TRUE(equalNumbers(1.5, 1.5));
  EXPECT_FALSE(equalNumbers(1.5, 1.25));
  EXPECT_TRUE(equalNumbers(0, 0));
  EXPECT_FALSE(equalNumbers(0, 1e-300));
}

TEST(NumberValues, AreEqualUpToTheToleranceUnderAPlainNumberFormat) {
  EXPECT_TRUE(equalNumbers(1, 1 + 0.9e-12));
  EXPECT_FALSE(equalNumbers(1, 1 + 1.2e-12));
  EXPECT_TRUE(equalNumbers(-3e15, std::nextafter(-3e15, 0)));
  EXPECT_TRUE(equalNumbers(0.1 + 0.2, 0.3));
}

TEST(NumberValues, AreNearAsTheHostsToleranceSays) {
  const auto flagUnder = [](double tolerance, double left, double right) {
    ProcedureRun run(dataset().numeric("x", {left}), dataset().numeric("x", {right}));
    run.beforeCall = [tolerance] { currentRun().settings.tolerance = tolerance; };
    return run.run(all).values("CasesCompare");
  };
  EXPECT_EQ(flagUnder(0.1, 100, 91), "0");
  EXPECT_EQ(flagUnder(0.1, 100, 89), "1");
  EXPECT_EQ(flagUnder(0, 1, 1 + 1e-15), "1");
  EXPECT_EQ(flagUnder(0, 0.0, -0.0), "0");
}

TEST(NumberValues, AreNearUnderEveryPlainNumberFormatAndUnderNoOther) {
  for (const int code : {3, 4, 5, 16, 17, 31, 32, 33, 34, 35, 36, 37}) {
    EXPECT_TRUE(equalNumbers(0.3, 0.1 + 0.2, code)) << code;
    EXPECT_TRUE(equalNumbers(0.0, -0.0, code)) << code;
  }
  for (const int code : {0, 1, 2, 6, 15, 18, 30, 38, 40, 41, 42, 43}) {
    EXPECT_FALSE(equalNumbers(0.3, 0.1 + 0.2, code)) << code;
    EXPECT_FALSE(equalNumbers(0.0, -0.0, code)) << code;
    EXPECT_TRUE(equalNumbers(0.3, 0.3, code)) << code;
  }
}

TEST(NumberValues, AreNearByTheActiveVariablesFormat) {
  const int number = 5;
  const int date = 41;
  EXPECT_TRUE(equalNumbers(0.3, 0.1 + 0.2, number, date));
  EXPECT_FALSE(equalNumbers(0.3, 0.1 + 0.2, date, number));
}

TEST(NumberValues, AreNeverNearTheSystemMissingValue) {
  const double beside = std::nextafter(missing, 0);
  EXPECT_FALSE(equalNumbers(missing, beside));
  EXPECT_FALSE(equalNumbers(beside, missing));
  EXPECT_FALSE(equalNumbers(missing, 0));
  EXPECT_TRUE(equalNumbers(missing, missing));
  EXPECT_TRUE(equalNumbers(missing, missing, 41));
}

TEST(NumberValues, AreNotAskedToBeNearWhenTheirBitsAreTheSame) {
  ProcedureRun run(dataset().numeric("x", {1, 2}), dataset().numeric("x", {1, 3}));
  run.run(all);
  EXPECT_EQ(run.journalLines({"QLRALMOSTEQUAL("}), (std::vector<std::string>{"QLRALMOSTEQUAL(2, 3) -> false"}));
}

TEST(NumberValues, CountUserMissingOnesLikeOthers) {
  const auto nine = [](data::Variable& x) {
    x.missing.code = 1;
    x.missing.values[0].number = 9;
  };
  ProcedureRun run(dataset().numeric("x", {9, 9}, nine), dataset().numeric("x", {9, missing}, nine));
  EXPECT_EQ(run.run(all).values("CasesCompare"), "0 1");
}

TEST(Values, AreCountedPerVariable) {
  ProcedureRun run(dataset().numeric("x", {1, 2, 3}).text("t", 2, {"a", "b", "c"}),
                   dataset().numeric("x", {1, 9, 9}).text("t", 3, {"a", "x", "c"}));
  run.run(all);
  EXPECT_EQ(run.cell(keys::byVariables, {"x", "CD_Count"}), "2");
  EXPECT_EQ(run.cell(keys::byVariables, {"t", "CD_Count"}), "1");
  EXPECT_EQ(run.values("CasesCompare"), "0 1 1");
}

}  // namespace workbench::tests::value_comparison_test
