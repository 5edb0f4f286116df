// Sorting more cases than the memory holds.
#include "workbench/data/working/case_sorter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "host/messages.h"
#include "host/runtime.h"
#include "tests/data/working/spills.h"
#include "workbench/data/working/kept_blocks.h"

namespace workbench::data {
namespace {

using testing::MemoryLimitScope;
using testing::missing;
using testing::SpillFolder;
using testing::thrownBy;

// A case: a string of 12 bytes, a number, and what tells it from the others.
struct Row {
  std::string text;
  double number = 0;
  double original = 0;
};

constexpr std::size_t textBytes = 12;
constexpr std::size_t numberSlot = 2;
constexpr std::size_t originalSlot = 3;
constexpr std::size_t caseSlots = 4;

void addTo(CaseSorter& sorter, const Row& row) {
  OBS slots[caseSlots];
  std::memset(slots, ' ', numberSlot * sizeof(OBS));
  std::memcpy(slots, row.text.data(), row.text.size());
  slots[numberSlot].number = row.number;
  slots[originalSlot].number = row.original;
  sorter.add(slots, 1, caseSlots);
}

std::vector<double> originalsOf(const std::shared_ptr<const KeptCases>& kept) {
  std::vector<double> originals;
  const auto supply = supplyKept(kept, caseSlots, CaseUse::onlyRead, "kept");
  while (const CaseSpan span = supply->next()) {
    for (std::size_t index = 0; index < span.count; ++index) {
      originals.push_back(span.cases[index * caseSlots + originalSlot].number);
    }
  }
  return originals;
}

std::vector<double> sortedOriginals(const std::vector<Row>& rows, const std::vector<SortKey>& keys) {
  CaseSorter sorter(caseSlots, keys);
  for (const Row& row : rows) addTo(sorter, row);
  return originalsOf(sorter.finish());
}

SortKey textKey(std::size_t cut = textBytes) { return {0, false, cut, !currentRun().settings.collation.empty()}; }
SortKey numberKey() { return {numberSlot, true, 0, false}; }

int compareBy(const SortKey& key, const Row& left, const Row& right) {
  if (!key.isNumeric) {
    return VRIXMBstrcoll_A(std::string_view(left.text).substr(0, key.bytes),
                           std::string_view(right.text).substr(0, key.bytes));
  }
  if (left.number != right.number) return left.number < right.number ? -1 : 1;
  return static_cast<int>(std::signbit(right.number)) - static_cast<int>(std::signbit(left.number));
}

std::vector<double> stablySortedOriginals(std::vector<Row> rows, const std::vector<SortKey>& keys) {
  std::stable_sort(rows.begin(), rows.end(), [&](const Row& left, const Row& right) {
    for (const SortKey& key : keys) {
      if (const int order = compareBy(key, left, right); order != 0) return order < 0;
    }
    return false;
  });
  std::vector<double> originals;
  for (const Row& row : rows) originals.push_back(row.original);
  return originals;
}

// Texts that share beginnings of different lengths, with zero bytes and blanks among them.
rc::Gen<std::string> anyText() {
  return rc::gen::apply(
      [](std::size_t common, std::string rest) {
        std::string text = std::string("abababababab").substr(0, common) + rest;
        text.resize(std::min(text.size(), textBytes));
        return text;
      },
      rc::gen::inRange<std::size_t>(0, textBytes + 1),
      rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab B\x01\xc3\xb6\0", 8))));
}

rc::Gen<double> anyNumber() {
  return rc::gen::weightedOneOf<double>({{6, rc::gen::cast<double>(rc::gen::inRange(-50, 50))},
                                         {1, rc::gen::element(missing, 0.0, -0.0, 0.5, 1e300, -1e300)},
                                         {1, rc::gen::cast<double>(rc::gen::arbitrary<std::int64_t>())}});
}

std::vector<Row> anyRows() {
  // Many of few kinds: equal keys are what stability is about.
  const auto kinds = *rc::gen::nonEmpty(
      rc::gen::container<std::vector<std::pair<std::string, double>>>(rc::gen::pair(anyText(), anyNumber())));
  const auto picks = *rc::gen::resize(
      2000, rc::gen::container<std::vector<std::size_t>>(rc::gen::inRange<std::size_t>(0, kinds.size())));
  std::vector<Row> rows;
  for (const std::size_t pick : picks) {
    rows.push_back({kinds[pick].first, kinds[pick].second, static_cast<double>(rows.size())});
  }
  return rows;
}

std::vector<SortKey> anyKeys() {
  const auto cut = *rc::gen::inRange<std::size_t>(1, textBytes + 1);
  const std::vector<std::vector<SortKey>> choices = {
      {numberKey()}, {textKey()}, {textKey(cut)}, {numberKey(), textKey(cut)}, {textKey(cut), numberKey()}};
  return choices[*rc::gen::inRange<std::size_t>(0, choices.size())];
}

// Whatever the limit: all in memory, a few runs, or so many that runs of runs are merged.
void agreesWithAStableSort() {
  const SpillFolder folder;
  const std::vector<Row> rows = anyRows();
  const std::vector<SortKey> keys = anyKeys();
  const MemoryLimitScope scope(*rc::gen::element<std::size_t>(1, 4 << 10, 16 << 10, 64 << 10, 1 << 20));
  RC_ASSERT(sortedOriginals(rows, keys) == stablySortedOriginals(rows, keys));
  RC_ASSERT(folder.openFiles() == 0);
  RC_ASSERT(memoryTaken() == 0U);
}

RC_GTEST_PROP(CaseSorter, AgreesWithAStableSort, ()) { agreesWithAStableSort(); }

RC_GTEST_PROP(CaseSorter, AgreesWithAStableSortUnderACollation, ()) {
  const testing::RunScope run;
  currentRun().settings.collation = *rc::gen::element<std::string>("de", "sv_SE");
  agreesWithAStableSort();
}

std::vector<Row> shuffledRows(std::size_t count) {
  std::vector<Row> rows;
  std::size_t number = 1;
  for (std::size_t row = 0; row < count; ++row) {
    number = number * 7919 % 1'000'003;
    rows.push_back({std::to_string(number % 1000), static_cast<double>(number % 5000), static_cast<double>(row)});
  }
  return rows;
}

TEST(CaseSorter, MergesRunsOfRunsStably) {
  const SpillFolder folder;
  const MemoryLimitScope scope(4 << 10);
  // Runs of some 5 cases each, of which two are merged at once: a dozen times, for those that came first.
  const std::vector<Row> rows = shuffledRows(20'000);
  for (const auto& keys : {std::vector{numberKey()}, std::vector{textKey(), numberKey()}}) {
    EXPECT_EQ(sortedOriginals(rows, keys), stablySortedOriginals(rows, keys));
  }
}

TEST(CaseSorter, SortsManyCasesOfOneBeginningInMemory) {
  std::vector<Row> rows = shuffledRows(20'000);
  for (Row& row : rows) row.text = "PERSON-" + row.text;
  for (const auto& keys : {std::vector{textKey()}, std::vector{textKey(9), numberKey()}, std::vector{textKey(7)}}) {
    EXPECT_EQ(sortedOriginals(rows, keys), stablySortedOriginals(rows, keys));
  }
}

TEST(CaseSorter, TakesNoMoreMemoryThanTheLimitAllowsAndFewFiles) {
  const SpillFolder folder;
  const MemoryLimitScope scope(1 << 20);
  CaseSorter sorter(caseSlots, {numberKey()});
  std::size_t most = 0;
  for (const Row& row : shuffledRows(100'000)) {
    addTo(sorter, row);
    most = std::max(most, memoryTaken());
  }
  EXPECT_LE(most, std::size_t{1} << 20);
  const auto kept = sorter.finish();
  EXPECT_LE(memoryTaken(), std::size_t{1} << 20);
  EXPECT_GT(folder.openFiles(), 1);
  EXPECT_LE(folder.openFiles(), static_cast<int>(mostRunsMerged));
  EXPECT_EQ(folder.listing(), "");
  EXPECT_EQ(kept->cases(), 100'000);
}

TEST(CaseSorter, SortsOnWhenOthersHaveTakenAllMemory) {
  const SpillFolder folder;
  const MemoryLimitScope scope(1 << 20);
  MemoryShare others;
  others.take(std::size_t{1} << 20);
  const std::vector<Row> rows = shuffledRows(50'000);
  CaseSorter sorter(caseSlots, {numberKey()});
  std::size_t most = 0;
  for (const Row& row : rows) {
    addTo(sorter, row);
    most = std::max(most, memoryTaken() - others.bytes());
  }
  EXPECT_LE(most, bytesOfSmallestRun());
  EXPECT_EQ(originalsOf(sorter.finish()), stablySortedOriginals(rows, {numberKey()}));
}

TEST(CaseSorter, KeepsCasesThatAreInOrderAsTheyLie) {
  CaseSorter sorter(caseSlots, {numberKey()});
  for (int row = 0; row < 100; ++row) addTo(sorter, {"x", static_cast<double>(row / 3), static_cast<double>(row)});
  const auto kept = sorter.finish();
  EXPECT_NE(kept->blocks(), nullptr);
  std::vector<double> expected(100);
  std::iota(expected.begin(), expected.end(), 0.0);
  EXPECT_EQ(originalsOf(kept), expected);
}

TEST(CaseSorter, OfNoCasesHasNone) {
  const auto kept = CaseSorter(caseSlots, {numberKey()}).finish();
  EXPECT_EQ(kept->cases(), 0);
  EXPECT_TRUE(originalsOf(kept).empty());
}

TEST(CaseSorter, KeepsTheOrderOfACollationThatIsNoLongerInForceWhenTheCasesAreRead) {
  const testing::RunScope run;
  const SpillFolder folder;
  const MemoryLimitScope scope(2 << 10);
  currentRun().settings.collation = "de";
  std::vector<Row> rows;
  for (int copy = 0; copy < 100; ++copy) {
    for (const char* text : {"Zebra", "apfel", "Öl", "Apfel", "oel"}) {
      rows.push_back({text, 0, static_cast<double>(rows.size())});
    }
  }
  const std::vector<double> expected = stablySortedOriginals(rows, {textKey()});
  CaseSorter sorter(caseSlots, {textKey()});
  for (const Row& row : rows) addTo(sorter, row);
  const auto kept = sorter.finish();
  currentRun().settings.collation.clear();
  EXPECT_EQ(originalsOf(kept), expected);
}

TEST(CaseSorter, KeepsTheOrderOfBytesWhenACollationIsSetBeforeTheCasesAreRead) {
  const testing::RunScope run;
  const SpillFolder folder;
  const MemoryLimitScope scope(2 << 10);
  std::vector<Row> rows;
  for (int copy = 0; copy < 100; ++copy) {
    for (const char* text : {"personal a", "personal B"}) rows.push_back({text, 0, static_cast<double>(rows.size())});
  }
  const std::vector<double> expected = stablySortedOriginals(rows, {textKey()});
  CaseSorter sorter(caseSlots, {textKey()});
  for (const Row& row : rows) addTo(sorter, row);
  const auto kept = sorter.finish();
  currentRun().settings.collation = "de";
  EXPECT_EQ(originalsOf(kept), expected);
}

TEST(CaseSorter, SortsCasesOfWhichOneIsMoreThanTheLimit) {
  const SpillFolder folder;
  const MemoryLimitScope scope(1 << 10);
  constexpr std::size_t slots = 5000;
  CaseSorter sorter(slots, {SortKey{}});
  std::vector<OBS> oneCase(slots);
  for (int row = 0; row < 40; ++row) {
    oneCase.front().number = row * 7 % 40;
    oneCase.back().number = row * 7 % 40;
    sorter.add(oneCase.data(), 1, slots);
  }
  const auto supply = supplyKept(sorter.finish(), slots, CaseUse::onlyRead, "kept");
  double expected = 0;
  while (const CaseSpan span = supply->next()) {
    for (std::size_t index = 0; index < span.count; ++index, ++expected) {
      EXPECT_EQ(span.cases[index * slots].number, expected);
      EXPECT_EQ(span.cases[index * slots + slots - 1].number, expected);
    }
  }
  EXPECT_EQ(expected, 40);
}

TEST(CaseSorter, LeavesNothingBehindWhenTheDiskIsFull) {
  const SpillFolder folder;
  const MemoryLimitScope scope(16 << 10);
  const std::vector<Row> rows = shuffledRows(20'000);
  // Full when the first run is written, and only when runs are merged.
  for (const rlim_t bytes : {1 << 10, 48 << 10}) {
    const testing::SmallDisk disk(bytes);
    EXPECT_NE(thrownBy([&rows] { sortedOriginals(rows, {numberKey()}); }).find("cannot be written (File too large)"),
              std::string::npos);
    EXPECT_EQ(folder.openFiles(), 0);
    EXPECT_EQ(memoryTaken(), 0U);
  }
}

}  // namespace
}  // namespace workbench::data
