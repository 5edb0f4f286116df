#include "workbench/data/working/sort.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/messages.h"
#include "host/runtime.h"
#include "tests/data/working/fakes.h"
#include "tests/data/working/sort_fixture.h"
#include "workbench/data/working/dataset_roles.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {
namespace {

using testing::alwaysBy;
using testing::by;
using testing::casesOf;
using testing::data;
using testing::keptDataset;
using testing::MemoryFile;
using testing::missing;

TEST(Sort, OrdersNumbersAscendingWithTheMissingValueLowest) {
  const auto dataset = keptDataset(data().numeric("x", {3, -1, missing, 0.0, -0.0, 2}));
  const auto result = sortCases(*dataset, alwaysBy({"X"}));
  ASSERT_TRUE(result);
  EXPECT_EQ(casesOf(*dataset), ". -1 -0 0 2 3");
  EXPECT_TRUE(result->reordered);
  EXPECT_EQ(result->cases, 6);
}

TEST(Sort, KeepsTheOrderOfCasesWithEqualKeys) {
  const auto dataset = keptDataset(data().numeric("k", {2, 1, 2, 1}).numeric("n", {1, 2, 3, 4}));
  ASSERT_TRUE(sortCases(*dataset, alwaysBy({"k"})));
  EXPECT_EQ(casesOf(*dataset), "1,2 1,4 2,1 2,3");
}

TEST(Sort, OrdersStringsByTheirBytesWithoutBlanksAtTheEnd) {
  const auto dataset = keptDataset(data().text("t", 10, {"b", "", "a b", "a", "B", "ab", "a\x01"}));
  ASSERT_TRUE(sortCases(*dataset, alwaysBy({"t"})));
  EXPECT_EQ(casesOf(*dataset), " B a a\x01 a b ab b");
}

TEST(Sort, CutsStringsToTheGivenWidth) {
  const auto dataset = keptDataset(data().text("t", 4, {"abz", "aba", "aa"}));
  auto request = alwaysBy({"t"});
  request.cutWidths = {2};
  ASSERT_TRUE(sortCases(*dataset, request));
  EXPECT_EQ(casesOf(*dataset), "aa abz aba") << "the third byte does not count";
  request.cutWidths = {40};
  ASSERT_TRUE(sortCases(*dataset, request));
  EXPECT_EQ(casesOf(*dataset), "aa aba abz") << "nothing beyond the value is read";
}

TEST(Sort, NamesTheFirstTwoRowsOutOfOrder) {
  auto file =
      std::make_shared<MemoryFile>(data().numeric("k", {1, 2, 2, 1, 0}).text("t", 3, {"a", "b", "a", "c", "d"}));
  file->casesPerBlock = 2;
  Dataset dataset(file);
  const auto result = sortCases(dataset, by({"k", "t"}));
  ASSERT_TRUE(result && result->firstOutOfOrder);
  EXPECT_EQ(result->firstOutOfOrder->first.number, 2);
  EXPECT_EQ(result->firstOutOfOrder->first.keys, (KeyValues{2.0, "b"}));
  EXPECT_EQ(result->firstOutOfOrder->second.number, 3);
  EXPECT_EQ(result->firstOutOfOrder->second.keys, (KeyValues{2.0, "a"}));
  EXPECT_EQ(casesOf(dataset), "0,d 1,a 1,c 2,a 2,b");
}

TEST(Sort, LeavesAnOrderedDatasetInItsFile) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {1, 2, 3}).text("t", 8, {"a", "b", "c"}));
  Dataset dataset(file);
  const auto result = sortCases(dataset, by({"x"}));
  ASSERT_TRUE(result);
  EXPECT_FALSE(result->reordered);
  EXPECT_FALSE(result->firstOutOfOrder);
  EXPECT_EQ(result->cases, 3);
  EXPECT_FALSE(dataset.isKept());
  EXPECT_EQ(file->valuesDecoded, 3U) << "no more was looked at than what it is sorted by";
  EXPECT_EQ(casesOf(dataset), "1,a 2,b 3,c");
}

TEST(Sort, KeepsAnOrderedDatasetWhenItIsToBeSortedAnyway) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {1, 2, 3}));
  Dataset dataset(file);
  const auto result = sortCases(dataset, alwaysBy({"x"}));
  ASSERT_TRUE(result);
  EXPECT_FALSE(result->reordered);
  EXPECT_EQ(casesOf(dataset), "1 2 3");
  EXPECT_EQ(file->passes, 1);
}

TEST(Sort, ReadsAgainWhenDisorderTurnsUpLate) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {1, 2, 3, 4, 0}));
  file->casesPerBlock = 1;
  Dataset dataset(file);
  ASSERT_TRUE(sortCases(dataset, by({"x"})));
  EXPECT_EQ(casesOf(dataset), "0 1 2 3 4");
  EXPECT_EQ(file->passes, 2);
}

TEST(Sort, ReadsNothingOfADatasetThatIsKnownToBeInOrder) {
  for (const SortPolicy policy : {SortPolicy::always, SortPolicy::whenNeeded}) {
    auto file = std::make_shared<MemoryFile>(data().numeric("x", {1, 2, 3}).text("t", 4, {"a", "b", "c"}));
    file->increasing = 0;
    Dataset dataset(file);
    const auto result = sortCases(dataset, by({"x", "t"}, policy));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->cases, 3);
    EXPECT_FALSE(result->reordered);
    file->increasing = 1;
    ASSERT_TRUE(sortCases(dataset, by({"t"}, policy)));
    EXPECT_EQ(file->passes, 0);
  }
}

TEST(Sort, LooksForItselfWhereTheKnownOrderIsNotTheOneAskedFor) {
  const testing::RunScope run;
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {2, 1}).text("t", 4, {"a\x01", "a b"}));
  file->increasing = 1;
  Dataset dataset(file);
  ASSERT_TRUE(sortCases(dataset, by({"x"})));
  EXPECT_EQ(casesOf(dataset), "1,a b 2,a\x01") << "another variable comes first";

  auto cut = by({"t"});
  cut.cutWidths = {2};
  dataset = Dataset(file);
  ASSERT_TRUE(sortCases(dataset, cut));
  EXPECT_EQ(casesOf(dataset), "1,a b 2,a\x01") << "a cut text may lie elsewhere than all of it";

  file = std::make_shared<MemoryFile>(data().text("t", 4, {"B", "a"}));
  file->increasing = 0;
  dataset = Dataset(file);
  currentRun().settings.collation = "de";
  ASSERT_TRUE(sortCases(dataset, by({"t"})));
  EXPECT_EQ(casesOf(dataset), "a B");
}

TEST(Sort, TakesAddedVariablesAlong) {
  const auto dataset = keptDataset(data().numeric("x", {3, 1, 2}));
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(1);
  std::int32_t flag = -1;
  active.MakeVariable(0, &flag).SetName("flag");
  {
    const auto cases = active.CreateCaseIterator(IteratorOptions::standard);
    while (cases->NextCase()) cases->GetObsPointer(flag)->number = -cases->GetObsPointer(0)->number;
  }
  ASSERT_TRUE(sortCases(*dataset, alwaysBy({"flag"})));
  EXPECT_EQ(casesOf(*dataset), "3,-3 2,-2 1,-1");
  EXPECT_TRUE(dataset->hasUnsavedVariables());
}

TEST(Sort, FollowsTheCollationThatIsSet) {
  const testing::RunScope run;
  const auto dataset = keptDataset(data().text("t", 8, {"Zebra", "apfel", "Öl", "Apfel", "oel"}));
  ASSERT_TRUE(sortCases(*dataset, alwaysBy({"t"})));
  EXPECT_EQ(casesOf(*dataset), "Apfel Zebra apfel oel Öl");
  currentRun().settings.collation = "de";
  ASSERT_TRUE(sortCases(*dataset, alwaysBy({"t"})));
  EXPECT_EQ(casesOf(*dataset), "apfel Apfel oel Öl Zebra");
}

TEST(Sort, RefusesAVariableThatIsNotThere) {
  const auto dataset = keptDataset(data().numeric("x", {1}));
  const auto result = sortCases(*dataset, alwaysBy({"y"}));
  ASSERT_FALSE(result);
  EXPECT_EQ(result.problem().text(), "The dataset has no variable y.");
  EXPECT_FALSE(sortCases(*dataset, alwaysBy({})));
}

TEST(Sort, LeavesADatasetThatCannotBeReadAsItWas) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {2, 1}));
  file->casesPerBlock = 1;
  bool fails = true;
  file->beforeBlock = [&fails](std::size_t row) {
    if (fails && row == 1) throw ErrorText("Line 3 cannot be read.");
  };
  Dataset dataset(file);
  const auto result = sortCases(dataset, alwaysBy({"x"}));
  ASSERT_FALSE(result);
  EXPECT_EQ(result.problem().text(), "Line 3 cannot be read.");
  fails = false;
  EXPECT_EQ(casesOf(dataset), "2 1");
}

TEST(Sort, OfNoCasesIsInOrder) {
  const auto dataset = keptDataset(data().numeric("x", {}));
  const auto result = sortCases(*dataset, alwaysBy({"x"}));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->cases, 0);
  EXPECT_FALSE(result->reordered);
}

// Rows as plain values, for laws.
struct Row {
  double number;
  std::string text;
  double original;
};

rc::Gen<double> anyNumber() {
  return rc::gen::weightedOneOf<double>(
      {{3, rc::gen::cast<double>(rc::gen::inRange(-3, 4))}, {1, rc::gen::element(missing, 0.0, -0.0, 0.5)}});
}

rc::Gen<std::string> anyText() {
  return rc::gen::apply(
      [](std::string text) {
        text.resize(std::min<std::size_t>(text.size(), 10));
        return text;
      },
      rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab B\x01\x7f\xc3\xb6\0", 9))));
}

std::vector<Row> anyRows() {
  const auto numbers = *rc::gen::container<std::vector<double>>(anyNumber());
  std::vector<Row> rows;
  for (const double number : numbers) rows.push_back({number, *anyText(), static_cast<double>(rows.size())});
  return rows;
}

testing::Data dataOf(const std::vector<Row>& rows) {
  std::vector<double> numbers;
  std::vector<double> originals;
  std::vector<std::string> texts;
  for (const Row& row : rows) {
    numbers.push_back(row.number);
    texts.push_back(row.text);
    originals.push_back(row.original);
  }
  return data().text("t", 10, texts).numeric("n", numbers).numeric("original", originals);
}

std::vector<double> originalsOf(const Dataset& dataset) {
  std::vector<double> originals;
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    for (std::size_t index = 0; index < span.count; ++index) {
      originals.push_back(span.cases[index * span.caseSlots + pass.layout().slotOfVariable[2]].number);
    }
  }
  return originals;
}

std::string_view cutText(const Row& row, std::size_t cut) { return std::string_view(row.text).substr(0, cut); }

void agreesWithStableSort() {
  std::vector<Row> rows = anyRows();
  const auto cut = *rc::gen::inRange<std::size_t>(1, 11);
  const bool numberFirst = *rc::gen::arbitrary<bool>();
  const auto dataset = keptDataset(dataOf(rows));
  auto request = numberFirst ? alwaysBy({"n", "t"}) : alwaysBy({"t", "n"});
  request.cutWidths = numberFirst ? std::vector<std::size_t>{0, cut} : std::vector<std::size_t>{cut, 0};
  request.policy = *rc::gen::element(SortPolicy::always, SortPolicy::whenNeeded);
  const auto result = sortCases(*dataset, request);
  RC_ASSERT(static_cast<bool>(result));

  const auto compareNumbers = [](const Row& left, const Row& right) {
    if (left.number != right.number) return left.number < right.number ? -1 : 1;
    return static_cast<int>(std::signbit(right.number)) - static_cast<int>(std::signbit(left.number));
  };
  const auto compareTexts = [cut](const Row& left, const Row& right) {
    return VRIXMBstrcoll_A(cutText(left, cut), cutText(right, cut));
  };
  std::stable_sort(rows.begin(), rows.end(), [&](const Row& left, const Row& right) {
    const int number = compareNumbers(left, right);
    const int text = compareTexts(left, right);
    const int first = numberFirst ? number : text;
    return (first != 0 ? first : numberFirst ? text : number) < 0;
  });
  std::vector<double> expected;
  for (const Row& row : rows) expected.push_back(row.original);
  RC_ASSERT(originalsOf(*dataset) == expected);
  const bool wasInOrder = std::is_sorted(expected.begin(), expected.end());
  RC_ASSERT(result->reordered == !wasInOrder);
}

RC_GTEST_PROP(Sort, AgreesWithAStableSortOfTheRows, ()) { agreesWithStableSort(); }

RC_GTEST_PROP(Sort, AgreesWithAStableSortOfTheRowsUnderACollation, ()) {
  const testing::RunScope run;
  currentRun().settings.collation = *rc::gen::element<std::string>("de", "sv_SE", "en");
  agreesWithStableSort();
}

// How a procedure that walks two keys side by side looks whether a dataset is in order: each key against its value in
// the case before, the second one only while the first is the same.
bool walkFindsOrder(VRIX_DataSource& source, std::size_t width) {
  std::string text;
  double number = pvGetCmnMch()->constants[CmnMch::lowSentinel];
  const auto cases = source.CreateCaseIterator(IteratorOptions::standard);
  while (cases->NextCase()) {
    const std::string formerText = text;
    text.assign(cases->GetObsPointer(0)->text, width);
    const int order = VRIXMBstrcoll_A(text, formerText);
    if (order < 0) return false;
    const double formerNumber = order == 0 ? number : pvGetCmnMch()->constants[CmnMch::lowSentinel];
    number = cases->GetObsPointer(1)->number;
    if (formerNumber > number) return false;
  }
  return true;
}

void neverDisagreesWithAWalk() {
  const auto dataset = keptDataset(dataOf(anyRows()));
  const auto cut = *rc::gen::inRange<std::size_t>(1, 11);
  DatasetSource view(dataset, SourceKind::readOnlyView);
  const bool walkedInOrder = walkFindsOrder(view, cut);
  auto request = by({"t", "n"});
  request.cutWidths = {cut, 0};
  const auto result = sortCases(*dataset, request);
  RC_ASSERT(static_cast<bool>(result));
  if (!walkedInOrder) RC_ASSERT(result->reordered);
  RC_ASSERT(walkFindsOrder(view, cut));
}

RC_GTEST_PROP(Sort, NeverDisagreesWithAWalkThatChecksTheOrder, ()) { neverDisagreesWithAWalk(); }

RC_GTEST_PROP(Sort, NeverDisagreesWithAWalkThatChecksTheOrderUnderACollation, ()) {
  const testing::RunScope run;
  currentRun().settings.collation = "de";
  neverDisagreesWithAWalk();
}

RC_GTEST_PROP(SortOrder, OfBitsIsTheOrderOfNumbers, (double left, double right)) {
  RC_PRE(!std::isnan(left) && !std::isnan(right) && left != right);
  RC_ASSERT((left < right) == (orderedBits(left) < orderedBits(right)));
}

TEST(DatasetRoles, AreSetByNameAndSwitchedOff) {
  const auto dataset = keptDataset(data().numeric("x", {1}).text("t", 3, {"a"}).numeric("w", {1}));
  ASSERT_TRUE(setFilter(*dataset, "X"));
  ASSERT_TRUE(setWeight(*dataset, "w"));
  ASSERT_TRUE(setSplit(*dataset, {"t", "x"}));
  EXPECT_EQ(dataset->dictionary().filter, 0);
  EXPECT_EQ(dataset->dictionary().weight, 2);
  EXPECT_EQ(dataset->dictionary().split, (std::vector<std::int32_t>{1, 0}));
  ASSERT_TRUE(setFilter(*dataset, std::nullopt));
  ASSERT_TRUE(setSplit(*dataset, {}));
  EXPECT_EQ(dataset->dictionary().filter, -1);
  EXPECT_TRUE(dataset->dictionary().split.empty());
}

TEST(DatasetRoles, RefuseWhatCannotPlayThem) {
  const auto dataset = keptDataset(data().numeric("x", {1}).text("t", 3, {"a"}));
  EXPECT_EQ(setFilter(*dataset, "y").problem().text(), "The dataset has no variable y.");
  EXPECT_EQ(setWeight(*dataset, "T").problem().text(), "t is a string variable; name a numeric one.");
  EXPECT_FALSE(setSplit(*dataset, {"x", "X"}));
  EXPECT_EQ(dataset->dictionary().filter, -1);
  EXPECT_TRUE(dataset->dictionary().split.empty());
}

}  // namespace
}  // namespace workbench::data
