// The case ID variables: which are refused, and in which order cases are read and paired by them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/procedure/faked_run.h"
#include "tests/procedure/table_keys.h"
#include "workbench/runtime/current_run.h"

namespace workbench::tests::case_order_test {

const std::string notMatching =
    "2/3 The comparison cannot be performed because the case ID variables do not match in the two datasets.\n";
const std::string activeUnsorted = "2/3 The active dataset is not sort...\n";
const std::string comparedUnsorted = "2/3 The comparison dataset is not sort...\n";

// The flags of a run that was not refused, else its messages.
std::string walked(const DatasetBuilder& active, const DatasetBuilder& compared, const std::string& ids) {
  ProcedureRun run(active, compared);
  run.run("/COMPDATASET=b /VARIABLES=ALL /CASEID=" + ids);
  const std::string messages = run.messages();
  return messages.find("2/3 ") == std::string::npos ? run.values("CasesCompare") : messages;
}

DatasetBuilder numbers(const std::vector<double>& ids) { return dataset().numeric("id", ids); }
DatasetBuilder texts(std::int32_t width, const std::vector<std::string>& ids) {
  return dataset().text("id", width, ids);
}

TEST(CaseIds, AreRefusedWhenOneIsNotInTheComparisonDataset) {
  ProcedureRun run(dataset().numeric("id", {1}).numeric("wave", {1}), dataset().numeric("id", {1}));
  run.run("/COMPDATASET=b /VARIABLES=ALL /CASEID=id wave");
  EXPECT_EQ(run.messages(), notMatching);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.values("CasesCompare"), ".");  // the flag variable has been made, but no case was read
}

TEST(CaseIds, AreRefusedWhenOneIsANumberHereAndATextThere) {
  EXPECT_EQ(walked(numbers({1}), texts(4, {"1"}), "id"), notMatching);
  EXPECT_EQ(walked(texts(4, {"1"}), numbers({1}), "id"), notMatching);
}

TEST(CaseIds, AreRefusedOnceHoweverManyDoNotMatch) {
  const DatasetBuilder active = dataset().numeric("a", {1}).numeric("b", {1}).numeric("c", {1});
  EXPECT_EQ(walked(active, dataset().numeric("c", {1}), "a b c"), notMatching);
}

TEST(CaseIds, NeedNotHaveTheSameWidthOrPlace) {
  EXPECT_EQ(walked(dataset().numeric("x", {1, 2}).text("id", 2, {"A", "B"}),
                   dataset().text("id", 12, {"A", "B"}).numeric("x", {1, 2}), "id"),
            "0 0");
}

TEST(CaseIds, AreMatchedWithoutRegardToCase) {
  EXPECT_EQ(walked(dataset().numeric("Id", {1, 2}), dataset().numeric("ID", {1, 3}), "iD"), "0 -1");
}

TEST(CaseOrder, AcceptsTiesInBothDatasets) {
  EXPECT_EQ(walked(numbers({1, 1, 2}), numbers({1, 2, 2}), "id"), "0 -1 0");
}

TEST(CaseOrder, RefusesTheActiveDatasetWhereAKeyGoesDown) {
  EXPECT_EQ(walked(numbers({1, 3, 2}), numbers({1, 3, 4}), "id"), activeUnsorted);
}

TEST(CaseOrder, RefusesTheComparisonDatasetWhereAKeyGoesDown) {
  EXPECT_EQ(walked(numbers({1, 3, 4}), numbers({1, 3, 2}), "id"), comparedUnsorted);
}

TEST(CaseOrder, ReportsOnlyTheActiveDatasetWhenBothGoDownAtOnce) {
  EXPECT_EQ(walked(numbers({1, 3, 2}), numbers({1, 3, 2}), "id"), activeUnsorted);
}

TEST(CaseOrder, ReportsTheDatasetThatGoesDownWhereTheOtherOneEnds) {
  EXPECT_EQ(walked(numbers({1, 3, 2}), numbers({1, 3}), "id"), activeUnsorted);
  EXPECT_EQ(walked(numbers({1, 3}), numbers({1, 3, 2}), "id"), comparedUnsorted);
}

TEST(CaseOrder, IsCheckedNoFurtherOnceOneDatasetWentDown) {
  // What lies behind in the other one would go down as well.
  EXPECT_EQ(walked(numbers({1, 3, 2}), numbers({1, 5, 4}), "id"), activeUnsorted);
  EXPECT_EQ(walked(numbers({1, 5, 4}), numbers({1, 3, 2}), "id"), comparedUnsorted);
}

TEST(CaseOrder, IsCheckedAmongTheCasesLeftOver) {
  EXPECT_EQ(walked(numbers({1, 3, 2}), numbers({1}), "id"), activeUnsorted);
  EXPECT_EQ(walked(numbers({1}), numbers({1, 3, 2}), "id"), comparedUnsorted);
}

TEST(CaseOrder, IsCheckedWhereCasesHaveNoPartner) {
  EXPECT_EQ(walked(numbers({1, 5, 4, 9}), numbers({9}), "id"), activeUnsorted);
  EXPECT_EQ(walked(numbers({9}), numbers({1, 5, 4, 9}), "id"), comparedUnsorted);
}

TEST(CaseOrder, TakesAnyFirstCase) {
  const double lowest = std::numeric_limits<double>::lowest();
  EXPECT_EQ(walked(numbers({missing}), numbers({missing}), "id"), "0");
  EXPECT_EQ(walked(numbers({std::nextafter(lowest, 0)}), numbers({std::nextafter(lowest, 0)}), "id"), "0");
  EXPECT_EQ(walked(texts(3, {""}), texts(3, {""}), "id"), "0");
  EXPECT_EQ(walked(texts(3, {"\x01"}), texts(3, {"\x01"}), "id"), "0");
}

TEST(CaseOrder, PutsMissingNumbersBeforeAllOthers) {
  EXPECT_EQ(walked(numbers({missing, -1e300, 5}), numbers({missing, 5}), "id"), "0 -1 0");
  EXPECT_EQ(walked(numbers({5, missing}), numbers({5}), "id"), activeUnsorted);
}

TEST(CaseOrder, PutsBlankTextsBeforeAllOthers) {
  EXPECT_EQ(walked(texts(4, {"", "A"}), texts(4, {"    ", "A"}), "id"), "0 0");
  EXPECT_EQ(walked(texts(4, {"A", ""}), texts(4, {"A"}), "id"), activeUnsorted);
}

TEST(CaseOrder, IgnoresBlanksAtTheEndOfATextButNotAtItsStart) {
  EXPECT_EQ(walked(texts(12, {"AB", "B"}), texts(2, {"AB", "B"}), "id"), "0 0");
  EXPECT_EQ(walked(texts(4, {" B", "A"}), texts(4, {" B", "A"}), "id"), "0 0");
  EXPECT_EQ(walked(texts(4, {"A", " B"}), texts(4, {"A"}), "id"), activeUnsorted);
}

TEST(CaseOrder, IsThatOfTheBytesOfTexts) {
  EXPECT_EQ(
      walked(texts(8, {"Z", "a", "\xc3\xa9", "\xe6\x97\xa5"}), texts(8, {"Z", "a", "\xc3\xa9", "\xe6\x97\xa5"}), "id"),
      "0 0 0 0");
  EXPECT_EQ(walked(texts(8, {"\xc3\xa9", "z"}), texts(8, {"z"}), "id"), activeUnsorted);
}

TEST(CaseOrder, IsThatOfALocaleWhenOneIsSet) {
  ProcedureRun run(texts(8, {"a", "\xc3\xa4", "b"}), texts(8, {"\xc3\xa4", "b", "Z"}));
  run.beforeCall = [] { currentRun().settings.collation = "de"; };
  run.run("/COMPDATASET=b /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(run.values("CasesCompare"), "-1 0 0");
}

TEST(CaseOrder, LooksAtNoMoreOfTheComparisonTextThanTheActiveVariableIsWide) {
  // Behind the second byte the comparison dataset is out of order, and the IDs differ.
  const DatasetBuilder active = texts(2, {"AB", "AB", "CD"});
  EXPECT_EQ(walked(active, texts(12, {"ABz", "ABa", "CD"}), "id"), "1 1 0");
}

TEST(CaseOrder, LooksAtAllOfTheActiveTextAndAtAsMuchAsThereIsOfAShorterOne) {
  const DatasetBuilder active = texts(12, {"AB", "ABCDEFGHIJKL", "B"});
  EXPECT_EQ(walked(active, texts(2, {"AB", "B"}), "id"), "0 -1 0");
  EXPECT_EQ(walked(texts(12, {"ABCDEFGHIJKL", "ABCDEFGHIJKK"}), texts(2, {"AB"}), "id"), activeUnsorted);
}

TEST(CaseOrder, IsLexicographicOverTheKeysInTheOrderInWhichTheyWereNamed) {
  const DatasetBuilder both = dataset().numeric("second", {9, 1, 5}).numeric("first", {1, 2, 2});
  EXPECT_EQ(walked(both, both, "first second"), "0 0 0");
  EXPECT_EQ(walked(both, both, "second first"), activeUnsorted);
}

TEST(CaseOrder, LetsTheNextKeyStartAgainWhenAKeyGoesUp) {
  const auto threeKeys = [](const std::vector<double>& a, const std::vector<double>& b, const std::vector<double>& c) {
    return dataset().numeric("a", a).numeric("b", b).numeric("c", c);
  };
  const DatasetBuilder sorted = threeKeys({1, 1, 1, 2}, {5, 5, 6, 1}, {7, 8, 3, 2});
  EXPECT_EQ(walked(sorted, sorted, "a b c"), "0 0 0 0");
  const DatasetBuilder lastDown = threeKeys({1, 1}, {5, 5}, {8, 7});
  EXPECT_EQ(walked(lastDown, lastDown, "a b c"), activeUnsorted);
  const DatasetBuilder middleDown = threeKeys({1, 1}, {5, 4}, {7, 8});
  EXPECT_EQ(walked(middleDown, middleDown, "a b c"), activeUnsorted);
}

TEST(CaseOrder, LetsAMissingMiddleNumberPassTheRestartOn) {
  const DatasetBuilder both = dataset().numeric("a", {1, 2}).numeric("b", {5, missing}).numeric("c", {9, 3});
  EXPECT_EQ(walked(both, both, "a b c"), "0 0");
}

TEST(CaseOrder, HoldsTheKeyBehindABlankMiddleTextAgainstTheCaseBefore) {
  // The restart reaches the middle key only; a blank text there has not gone up, so it passes no restart on.
  const auto keys = [](double lastOfSecondCase) {
    return dataset().numeric("a", {1, 2}).text("b", 4, {"x", ""}).numeric("c", {9, lastOfSecondCase});
  };
  EXPECT_EQ(walked(keys(3), keys(3), "a b c"), activeUnsorted);
  EXPECT_EQ(walked(keys(9), keys(9), "a b c"), "0 0");
}

TEST(CaseOrder, TellsMinusZeroFromZeroButPutsNeitherFirst) {
  // Neither is greater, so either order passes; in a pair the comparison key counts as the lower one.
  EXPECT_EQ(walked(numbers({-0.0, 0.0}), numbers({-0.0, 0.0}), "id"), "0 0");
  EXPECT_EQ(walked(numbers({0.0, -0.0}), numbers({0.0, -0.0}), "id"), "0 0");
  EXPECT_EQ(walked(numbers({-0.0}), numbers({0.0}), "id"), "-1");
  EXPECT_EQ(walked(numbers({0.0, 1}), numbers({-0.0, 0.0, 1}), "id"), "0 0");
  EXPECT_EQ(walked(numbers({-0.0, 0.0, 1}), numbers({0.0, 1}), "id"), "-1 -1 0");
}

TEST(CaseOrder, StartsTheNextKeyAgainBetweenMinusZeroAndZero) {
  const DatasetBuilder both = dataset().numeric("a", {-0.0, 0.0}).numeric("b", {5, 3});
  EXPECT_EQ(walked(both, both, "a b"), "0 0");
}

TEST(CaseOrder, PairsByAllKeys) {
  const DatasetBuilder active = dataset().text("t", 2, {"a", "a", "b"}).numeric("n", {1, 2, 1}).numeric("x", {1, 2, 3});
  const DatasetBuilder compared =
      dataset().text("t", 2, {"a", "b", "b"}).numeric("n", {2, 1, 2}).numeric("x", {2, 4, 5});
  EXPECT_EQ(walked(active, compared, "t n"), "-1 0 1");
}

TEST(CaseOrder, EndsADatasetWhoseIteratorStandsStill) {
  FakedRun active(numbers({1, 2, 3, 4}), numbers({1, 2, 3, 4}));
  active.activeSource.onIterator = [](WrappedIterator& iterator) {
    iterator.position = [](std::int64_t ordinal) { return std::min<std::int64_t>(ordinal, 1); };
  };
  active.run("/COMPDATASET=b /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(active.outcome(), "completed");
  EXPECT_EQ(active.values("CasesCompare"), "0 0 . .");
  EXPECT_EQ(active.cell(keys::matchedSummary, {"CD_Cases", "CD_Count", "CD_Active"}), "2");
  EXPECT_EQ(active.cell(keys::matchedSummary, {"CD_Cases", "CD_Count", "CD_Comparison"}), "4");

  FakedRun compared(numbers({1, 2, 3, 4}), numbers({1, 2, 3, 4}));
  compared.onComparisonView = [](WrappedSource& view) {
    view.onIterator = [](WrappedIterator& iterator) {
      iterator.position = [](std::int64_t ordinal) { return std::min<std::int64_t>(ordinal, 2); };
    };
  };
  compared.run("/COMPDATASET=b /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(compared.values("CasesCompare"), "0 0 0 -1");
  EXPECT_EQ(compared.cell(keys::matchedSummary, {"CD_Cases", "CD_Count", "CD_Comparison"}), "3");
}

TEST(CaseOrder, IsNotCheckedWithoutCaseIds) {
  ProcedureRun run(numbers({3, 1, 2}), numbers({3, 1, 9}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.values("CasesCompare"), "0 0 1");
}

}  // namespace workbench::tests::case_order_test
