// Datasets of more cases than the memory holds, through everything that is done with kept cases.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <numeric>

#include "host/messages.h"
#include "tests/data/working/outputs_fixture.h"
#include "tests/data/working/sort_fixture.h"
#include "tests/data/working/spills.h"
#include "workbench/data/working/open_dataset.h"
#include "workbench/data/working/save.h"
#include "workbench/data/working/sort.h"

namespace workbench::data {
namespace {

using testing::by;
using testing::casesOf;
using testing::data;
using testing::MemoryFile;
using testing::MemoryLimitScope;
using testing::SpillFolder;

constexpr std::size_t cases = 3000;
constexpr std::size_t memoryForDatasets = 16 << 10;  // a fifth of them

// The numbers from 0 on, each once, in no order.
std::vector<double> shuffled(std::size_t count = cases) {
  std::vector<double> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0.0);
  for (std::size_t index = 0; index < count; ++index) std::swap(numbers[index], numbers[index * 7919 % count]);
  return numbers;
}

std::shared_ptr<MemoryFile> shuffledFile() {
  std::vector<double> original(cases);
  std::iota(original.begin(), original.end(), 0.0);
  return std::make_shared<MemoryFile>(
      data().numeric("x", shuffled()).numeric("original", original).numeric("y", original));
}

// Expects the values of a variable to be the numbers from 0 on.
void expectInOrder(const Dataset& dataset, std::int32_t variable, std::size_t count = cases) {
  double next = 0;
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    const std::size_t slot = pass.layout().slotOfVariable[static_cast<std::size_t>(variable)];
    for (std::size_t index = 0; index < span.count; ++index) {
      ASSERT_EQ(span.cases[index * span.caseSlots + slot].number, next++);
    }
  }
  EXPECT_EQ(next, static_cast<double>(count));
}

// Adds a variable "flag" that holds ten times the first variable.
void flag(const std::shared_ptr<Dataset>& dataset) {
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(1);
  std::int32_t index = -1;
  active.MakeVariable(0, &index).SetName("flag");
  const auto walk = active.CreateCaseIterator(IteratorOptions::standard);
  while (walk->NextCase()) walk->GetObsPointer(index)->number = walk->GetObsPointer(0)->number * 10;
}

class SpilledDataset : public testing::Outputs {
 protected:
  SpillFolder spills_;
  MemoryLimitScope limit_{memoryForDatasets};
};

TEST_F(SpilledDataset, IsSortedByAnyVariableAgainAndAgain) {
  {
    Dataset dataset(shuffledFile());
    ASSERT_TRUE(sortCases(dataset, by({"x"})));
    expectInOrder(dataset, 0);
    EXPECT_GT(spills_.openFiles(), 0);
    ASSERT_TRUE(sortCases(dataset, by({"original"})));
    expectInOrder(dataset, 1);
    const auto result = sortCases(dataset, by({"y"}));
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->reordered);
    EXPECT_EQ(result->cases, static_cast<std::int64_t>(cases));
    ASSERT_TRUE(sortCases(dataset, by({"y"}, SortPolicy::always)));
    expectInOrder(dataset, 1);
    EXPECT_LE(memoryTaken(), memoryForDatasets);
  }
  EXPECT_EQ(spills_.openFiles(), 0);
  EXPECT_EQ(spills_.listing(), "");
  EXPECT_EQ(memoryTaken(), 0U);
}

TEST_F(SpilledDataset, IsFlaggedSortedByItsFlagAndSaved) {
  const auto dataset = std::make_shared<Dataset>(shuffledFile());
  flag(dataset);
  ASSERT_TRUE(sortCases(*dataset, by({"flag"})));
  expectInOrder(*dataset, 0);
  const auto saved = saveDataset(dataset, folder_.file("out.csv"), "", outputs_);
  ASSERT_TRUE(saved) << saved.problem().text();
  ASSERT_TRUE(outputs_.commit());
  const auto again = *openDataset(folder_.file("out.csv"), {});
  expectInOrder(*again, 0);
  EXPECT_EQ(again->caseCount(), static_cast<std::int64_t>(cases));
  EXPECT_LE(memoryTaken(), memoryForDatasets);
}

TEST_F(SpilledDataset, IsFlaggedAfterItWasSorted) {
  const auto dataset = std::make_shared<Dataset>(shuffledFile());
  ASSERT_TRUE(sortCases(*dataset, by({"x"})));
  flag(dataset);
  double next = 0;
  DatasetSource active(dataset, SourceKind::active);
  const auto walk = active.CreateCaseIterator(IteratorOptions::standard);
  for (; walk->NextCase(); next += 10) ASSERT_EQ(walk->GetObsPointer(3)->number, next);
  EXPECT_EQ(next, 10.0 * cases);
}

TEST_F(SpilledDataset, DropsTheCasesThatAFilterLeavesOut) {
  const auto dataset = std::make_shared<Dataset>(shuffledFile());
  ASSERT_TRUE(sortCases(*dataset, by({"x"})));
  dataset->dictionary().filter = 1;  // original: 0 in one case only
  DatasetSource active(dataset, SourceKind::active);
  std::size_t delivered = 0;
  const auto walk = active.CreateCaseIterator(IteratorOptions::standard);
  while (walk->NextCase()) ++delivered;
  EXPECT_EQ(delivered, cases - 1);
}

TEST_F(SpilledDataset, IsReadOnAfterItTookThePlaceOfItsOwnFile) {
  std::string text = "x\n";
  for (std::size_t row = 0; row < cases; ++row) text += fmt::format("{}\n", row);
  const std::string path = folder_.write("in.csv", text);
  const auto dataset = *openDataset(path, {});
  flag(dataset);
  ASSERT_TRUE(saveDataset(dataset, path, "", outputs_));
  ASSERT_TRUE(outputs_.commit());
  EXPECT_TRUE(dataset->isKept());
  EXPECT_GT(spills_.openFiles(), 0);
  expectInOrder(*dataset, 0);
}

TEST_F(SpilledDataset, IsWhatAProcedureWritesUnderAHandle) {
  const auto output = open("big");
  VRIX_DataSource& source = output->GetDataSource();
  source.MakeVariable(0, nullptr).SetName("x");
  source.MakeVariable(20, nullptr).SetName("t");
  source.CommitDictionary();
  std::vector<OBS> slots(source.GetCaseSize());
  for (std::size_t row = 0; row < cases; ++row) {
    slots[0].number = static_cast<double>(row);
    source.WriteCase(slots.data());
  }
  source.Close();
  letGoOfAllHandedOut();
  ASSERT_TRUE(outputs_.commit());
  ASSERT_TRUE(opened_.opened.contains("big"));
  EXPECT_GT(spills_.openFiles(), 0);
  expectInOrder(*opened_.opened["big"], 0);
}

TEST_F(SpilledDataset, IsSortedBesideAnotherOneAtTheSameTime) {
  for (int round = 0; round < 20; ++round) {
    Dataset first(shuffledFile());
    Dataset second(shuffledFile());
    const auto [firstResult, secondResult] = sortBoth({first, by({"x"})}, {second, by({"x"}, SortPolicy::always)});
    ASSERT_TRUE(firstResult && secondResult);
    EXPECT_TRUE(firstResult->reordered && secondResult->reordered);
    expectInOrder(first, 0);
    expectInOrder(second, 0);
    EXPECT_LE(memoryTaken(), memoryForDatasets + 2 * bytesOfSmallestRun());
  }
}

TEST(SortBoth, SortsADatasetThatIsGivenTwiceOnce) {
  const auto dataset = testing::keptDataset(data().numeric("x", {2, 1}));
  const auto [first, second] = sortBoth({*dataset, by({"x"})}, {*dataset, by({"x"})});
  ASSERT_TRUE(first && second);
  EXPECT_TRUE(first->reordered);
  EXPECT_FALSE(second->reordered);
  EXPECT_EQ(casesOf(*dataset), "1 2");
}

TEST(SortBoth, LetsOneFailWithoutTheOther) {
  const auto sound = testing::keptDataset(data().numeric("x", {2, 1}));
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {2, 1}));
  file->beforeBlock = [](std::size_t) { throw ErrorText("Line 2 cannot be read."); };
  Dataset broken(file);
  const auto [first, second] = sortBoth({broken, by({"x"})}, {*sound, by({"x"})});
  ASSERT_FALSE(first);
  EXPECT_EQ(first.problem().text(), "Line 2 cannot be read.");
  ASSERT_TRUE(second);
  EXPECT_EQ(casesOf(*sound), "1 2");
  EXPECT_FALSE(sortBoth({*sound, by({"x"})}, {broken, by({"x"})})[1]);
}

TEST_F(SpilledDataset, StaysAsItWasWhenTheDiskIsFull) {
  auto file = shuffledFile();
  Dataset dataset(file);
  {
    const testing::SmallDisk disk(1 << 10);
    const auto result = sortCases(dataset, by({"x"}));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.problem().text(), "The temporary file in " + spills_.path() +
                                           " cannot be written (File too large). Make room there, or name another "
                                           "folder by the environment variable TMPDIR.");
  }
  EXPECT_EQ(spills_.openFiles(), 0);
  EXPECT_EQ(memoryTaken(), 0U);
  EXPECT_EQ(file->readersAlive, 0);
  expectInOrder(dataset, 1);
}

TEST_F(SpilledDataset, LeavesNothingBehindWhenItCannotBeRead) {
  auto file = shuffledFile();
  file->casesPerBlock = 100;
  file->beforeBlock = [](std::size_t row) {
    if (row == cases - 100) throw ErrorText("The last line cannot be read.");
  };
  Dataset dataset(file);
  EXPECT_EQ(sortCases(dataset, by({"x"})).problem().text(), "The last line cannot be read.");
  EXPECT_EQ(spills_.openFiles(), 0);
  EXPECT_EQ(memoryTaken(), 0U);
}

TEST_F(SpilledDataset, WhoseFlagsFindNoRoomEndsTheWalk) {
  auto file = shuffledFile();
  file->casesPerBlock = 100;
  const auto dataset = std::make_shared<Dataset>(file);
  const testing::SmallDisk disk(1 << 10);
  EXPECT_NE(testing::thrownBy([&dataset] { flag(dataset); }).find("cannot be written (File too large)"),
            std::string::npos);
}

RC_GTEST_PROP(SpilledDatasets, AreSortedLikeThoseInMemory, ()) {
  const SpillFolder folder;
  const auto numbers =
      *rc::gen::resize(500, rc::gen::container<std::vector<double>>(rc::gen::cast<double>(rc::gen::inRange(-20, 20))));
  std::vector<std::string> texts;
  for (std::size_t row = 0; row < numbers.size(); ++row) texts.push_back(fmt::format("t{}", row * 31 % 17));
  const auto content = data().text("t", 9, texts).numeric("x", numbers);
  const std::vector<std::vector<std::string>> keys = {{"x"}, {"t"}, {"x", "t"}, {"t", "x"}};
  const auto request = by(*rc::gen::elementOf(keys), *rc::gen::element(SortPolicy::always, SortPolicy::whenNeeded));
  const auto inMemory = testing::keptDataset(content);
  const auto expected = sortCases(*inMemory, request);

  const MemoryLimitScope scope(*rc::gen::element<std::size_t>(1, 2 << 10, 8 << 10));
  auto file = std::make_shared<MemoryFile>(content);
  file->casesPerBlock = *rc::gen::inRange<std::size_t>(1, 100);
  Dataset spilled(file);
  const auto result = sortCases(spilled, request);
  RC_ASSERT(static_cast<bool>(expected) && static_cast<bool>(result));
  RC_ASSERT(casesOf(spilled) == casesOf(*inMemory));
  RC_ASSERT(result->cases == expected->cases);
  RC_ASSERT(result->reordered == expected->reordered);
  RC_ASSERT(result->firstOutOfOrder.has_value() == expected->firstOutOfOrder.has_value());
  if (result->firstOutOfOrder) {
    RC_ASSERT(result->firstOutOfOrder->first.number == expected->firstOutOfOrder->first.number);
  }
}

}  // namespace
}  // namespace workbench::data
