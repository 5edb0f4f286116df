// Case ID keys: how they are made, read case by case, and compared.
#include "engine/case_order.h"

#include <gtest/gtest.h>

#include <limits>

#include "engine/case_id.h"
#include "tests/engine/engine_run.h"

namespace workbench::tests {
namespace {

using compdatas::CaseIdKey;
using compdatas::ReadStatus;

CaseIdKey numberKey(double active, double compared) {
  CaseIdKey key;
  key.side[0].curNumber = active;
  key.side[1].curNumber = compared;
  return key;
}

CaseIdKey textKey(const std::string& active, const std::string& compared) {
  CaseIdKey key;
  key.width = 4;
  key.side[0].curText = active;
  key.side[1].curText = compared;
  return key;
}

int sign(int number) { return (number > 0) - (number < 0); }

int compared(const std::vector<CaseIdKey>& keys) { return sign(compdatas::compareKeys(keys)); }

// Every status of one dataset's readings up to the first that is no current case.
std::string readAll(EngineRun& run, std::size_t side) {
  compdatas::DatasetComparer& comparer = run.comparer();
  EXPECT_TRUE(compdatas::validateCaseIds(comparer));
  VRIX_DataSource& source = side == 0 ? static_cast<VRIX_DataSource&>(run.activeSource()) : run.compareSource();
  comparer.readers[side].iterator = source.CreateCaseIterator(IteratorOptions::standard);
  std::string all;
  while (true) {
    const ReadStatus status = compdatas::readNextCase(comparer, side);
    all += std::to_string(static_cast<int>(status));
    if (status != ReadStatus::current) break;
  }
  comparer.readers[side].iterator.reset();
  return all + ' ' + std::to_string(comparer.readers[side].casesRead);
}

TEST(CompareKeys, FindsNothingToCompareWithoutCaseIds) { EXPECT_EQ(compared({}), 0); }

TEST(CompareKeys, ComparesNumbersByBitsAndThenByValue) {
  EXPECT_EQ(compared({numberKey(1, 2)}), -1);
  EXPECT_EQ(compared({numberKey(2, 1)}), 1);
  EXPECT_EQ(compared({numberKey(2, 2)}), 0);
  EXPECT_EQ(compared({numberKey(missing, -1e300)}), -1);
  // Neither zero is greater, so the comparison key counts as the lower one both ways.
  EXPECT_EQ(compared({numberKey(0.0, -0.0)}), 1);
  EXPECT_EQ(compared({numberKey(-0.0, 0.0)}), 1);
}

TEST(CompareKeys, ComparesTextsByCollationWithoutBlanksAtTheEnd) {
  EXPECT_EQ(compared({textKey("AB  ", "AB")}), 0);
  EXPECT_EQ(compared({textKey("AB", "B")}), -1);
  EXPECT_EQ(compared({textKey("a", "B")}), 1);
  EXPECT_EQ(compared({textKey("", "A")}), -1);
}

TEST(CompareKeys, TakesTheFirstKeyThatDiffers) {
  EXPECT_EQ(compared({numberKey(1, 1), textKey("B", "A"), numberKey(1, 2)}), 1);
  EXPECT_EQ(compared({numberKey(1, 1), textKey("A", "A"), numberKey(1, 2)}), -1);
}

TEST(CaseIdKeys, StartBelowEveryValueOnBothSides) {
  EngineRun run(dataset().numeric("n", {}).text("t", 3, {}), dataset().text("t", 9, {}).numeric("n", {}));
  run.pairBy({"t", "n"});
  ASSERT_TRUE(compdatas::validateCaseIds(run.comparer()));
  const std::vector<CaseIdKey>& keys = run.comparer().caseIdKeys;
  ASSERT_EQ(keys.size(), 2U);
  EXPECT_EQ(keys[0].name, "t");
  EXPECT_EQ(keys[0].width, 3);
  EXPECT_EQ(keys[0].lowText, "   ");
  EXPECT_EQ(keys[0].side[0].varIndex, 1);
  EXPECT_EQ(keys[0].side[1].varIndex, 0);
  EXPECT_EQ(keys[0].activeVariable, &run.activeSource().GetVariable(1));
  EXPECT_EQ(keys[1].width, 0);
  EXPECT_EQ(keys[1].lowText, "");
  EXPECT_EQ(keys[1].lowNumber, -std::numeric_limits<double>::infinity());
  for (const CaseIdKey& key : keys) {
    for (const CaseIdKey::Side& side : key.side) {
      EXPECT_EQ(side.curText, "");
      EXPECT_EQ(side.prevText, "");
      EXPECT_EQ(side.curNumber, key.lowNumber);
    }
  }
}

TEST(CaseIdKeys, AreForgottenWhenTheyAreValidatedAgain) {
  EngineRun run(dataset().numeric("n", {}), dataset().numeric("n", {}));
  run.pairBy({"n"});
  ASSERT_TRUE(compdatas::validateCaseIds(run.comparer()));
  ASSERT_TRUE(compdatas::validateCaseIds(run.comparer()));
  EXPECT_EQ(run.comparer().caseIdKeys.size(), 1U);
}

TEST(CaseIdKeys, LeaveTheDictionaryStateAtNothingWhenTheyDoNotMatch) {
  EngineRun run(dataset().numeric("n", {}), dataset().numeric("m", {}));
  run.pairBy({"n"});
  EXPECT_FALSE(compdatas::validateCaseIds(run.comparer()));
  EXPECT_EQ(run.comparer().dictionaryState, compdatas::DictionaryState::nothingPaired);
  EXPECT_EQ(run.messages(),
            "2/3 The comparison cannot be performed because the case ID variables do not match in the two datasets.\n");
}

TEST(ReadNextCase, CountsTheCaseThatLiesOutOfOrder) {
  EngineRun run(dataset().numeric("n", {1, 2, 2, 1, 3}), dataset().numeric("n", {}));
  run.pairBy({"n"});
  EXPECT_EQ(readAll(run, 0), "0002 4");
}

TEST(ReadNextCase, ReadsEitherSideByItself) {
  EngineRun run(dataset().numeric("n", {3, 1}), dataset().numeric("n", {1, 3}));
  run.pairBy({"n"});
  EXPECT_EQ(readAll(run, 1), "001 2");
  EXPECT_EQ(readAll(run, 0), "02 2");
}

TEST(ReadNextCase, NeedsNoOrderWithoutCaseIds) {
  EngineRun run(dataset().numeric("n", {3, 1, 2}), dataset().numeric("n", {}));
  EXPECT_EQ(readAll(run, 0), "0001 3");
}

TEST(ReadNextCase, KeepsTheLastKeyAsItIsWhenItGoesUp) {
  EngineRun run(dataset().numeric("a", {1, 1}).text("t", 2, {"A", "B"}), dataset().numeric("a", {}).text("t", 2, {}));
  run.pairBy({"a", "t"});
  EXPECT_EQ(readAll(run, 0), "001 2");
  EXPECT_EQ(run.comparer().caseIdKeys[1].side[0].curText, "B ");
  EXPECT_EQ(run.comparer().caseIdKeys[1].side[0].prevText, "A ");
}

TEST(ReadNextCase, PutsTheBottomInThePlaceOfTheValueBeforeWhenTheKeyBeforeWentUp) {
  EngineRun run(dataset().numeric("a", {1, 2}).text("t", 2, {"B", "A"}).numeric("z", {9, 1}),
                dataset().numeric("a", {}).text("t", 2, {}).numeric("z", {}));
  run.pairBy({"a", "t", "z"});
  EXPECT_EQ(readAll(run, 0), "001 2");
  EXPECT_EQ(run.comparer().caseIdKeys[1].side[0].prevText, "  ");
  EXPECT_EQ(run.comparer().caseIdKeys[1].side[0].curText, "A ");
  EXPECT_EQ(run.comparer().caseIdKeys[2].side[0].prevNumber, -std::numeric_limits<double>::infinity());
}

TEST(ReadNextCase, TakesAsManyBytesAsTheActiveVariableIsWideAndNoMoreThanThereAre) {
  EngineRun narrow(dataset().text("t", 2, {}), dataset().text("t", 12, {"ABCDEFGHIJKL"}));
  narrow.pairBy({"t"});
  EXPECT_EQ(readAll(narrow, 1), "01 1");
  EXPECT_EQ(narrow.comparer().caseIdKeys[0].side[1].curText, "AB");
  EngineRun wide(dataset().text("t", 12, {}), dataset().text("t", 2, {"AB"}));
  wide.pairBy({"t"});
  EXPECT_EQ(readAll(wide, 1), "01 1");
  EXPECT_EQ(wide.comparer().caseIdKeys[0].side[1].curText, "AB");
}

}  // namespace
}  // namespace workbench::tests
