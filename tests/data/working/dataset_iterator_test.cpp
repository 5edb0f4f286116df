#include "workbench/data/working/dataset_iterator.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <numeric>
#include <thread>

#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "workbench/data/working/prefetched_blocks.h"
#include "workbench/data/working/read_watch.h"

namespace workbench::data {
namespace {

using testing::casesOf;
using testing::data;
using testing::keptDataset;
using testing::MemoryFile;
using testing::missing;
using testing::walked;

std::vector<double> numbersUpTo(int count) {
  std::vector<double> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0.0);
  return numbers;
}

std::shared_ptr<Dataset> fromFile(testing::Data content, std::size_t casesPerBlock) {
  auto file = std::make_shared<MemoryFile>(std::move(content));
  file->casesPerBlock = casesPerBlock;
  return std::make_shared<Dataset>(file);
}

TEST(DatasetIterator, DeliversTheCasesOfAFileInTheirOrderAcrossBlocks) {
  const auto dataset = fromFile(data().numeric("x", {5, 3, 8, 1, 9}), 2);
  DatasetSource view(dataset, SourceKind::readOnlyView);
  EXPECT_EQ(walked(view, 0), "0:5 1:3 2:8 3:1 4:9");
  EXPECT_EQ(walked(view, 0), "0:5 1:3 2:8 3:1 4:9") << "cases can be read again";
}

TEST(DatasetIterator, StandsBeforeTheFirstCaseAtFirst) {
  const auto dataset = keptDataset(data().numeric("x", {5}));
  DatasetIterator cases(dataset, {});
  EXPECT_EQ(cases.GetCurrentPosition(), -1);
  EXPECT_TRUE(cases.NextCase());
  EXPECT_EQ(cases.GetCurrentPosition(), 0);
  EXPECT_FALSE(cases.NextCase());
  EXPECT_FALSE(cases.NextCase()) << "the end stays the end";
  EXPECT_EQ(cases.GetCurrentPosition(), 0);
}

TEST(DatasetIterator, HasNoCaseWhereThereIsNone) {
  EXPECT_EQ(casesOf(*keptDataset(data().numeric("x", {}))), "");
  DatasetSource view(fromFile(data().numeric("x", {}), 2), SourceKind::readOnlyView);
  EXPECT_EQ(walked(view, 0), "");
}

TEST(DatasetIterator, PublishesKeptBlocksWithoutCopyingWhenNothingIsWritten) {
  auto content = data().numeric("x", {5, 6});
  const auto kept = content.kept();
  const auto dataset = std::make_shared<Dataset>(content.dictionary, kept);
  DatasetIterator cases(dataset, {});
  ASSERT_TRUE(cases.NextCase());
  EXPECT_EQ(cases.GetObsPointer(0), kept->blocks()->front().begin());
}

TEST(DatasetIterator, LaysNothingOverKeptBlocksWhenAllVariablesWereAdded) {
  CaseKeeper keeper(0);
  const OBS nothing{42};
  keeper.add(&nothing, 1, 1);
  const auto kept = keeper.finish();
  Dataset dataset(Dictionary(), kept);
  dataset.addVariable(plainVariable("flag", 0));
  EXPECT_EQ(casesOf(dataset), ".");
  EXPECT_EQ(kept->blocks()->front().begin()->number, 42);
}

TEST(DatasetIterator, AppliesTheFilterOfTheActiveDatasetOnly) {
  Variable variable = plainVariable("keep", 0);
  auto content =
      data().numeric("x", {10, 11, 12, 13, 14, 15}).numeric("keep", {1, 0, missing, -2, 9, 1}).filter("keep");
  content.dictionary.at(1).missing.code = 1;
  content.dictionary.at(1).missing.values[0].number = 9;
  for (const auto& dataset : {keptDataset(content), fromFile(content, 2)}) {
    DatasetSource active(dataset, SourceKind::active);
    EXPECT_EQ(walked(active, 0), "0:10 1:13 2:15");
    active.setUseFilter(false);
    EXPECT_EQ(walked(active, 0), "0:10 1:11 2:12 3:13 4:14 5:15");
    active.beginProcedure();
    EXPECT_EQ(walked(active, 0), "0:10 1:13 2:15") << "settings end with the procedure";
    DatasetSource comparison(dataset, SourceKind::readOnlyView);
    EXPECT_EQ(walked(comparison, 0), "0:10 1:11 2:12 3:13 4:14 5:15");
    EXPECT_EQ(comparison.GetFilterVarIndex(), 1) << "it is shown all the same";
  }
}

TEST(DatasetIterator, PassesOverBlocksInWhichTheFilterLeavesNoCase) {
  const auto dataset = fromFile(data().numeric("x", {0, 0, 0, 0, 7, 0}).filter("x"), 2);
  DatasetSource active(dataset, SourceKind::active);
  EXPECT_EQ(walked(active, 0), "0:7");
}

TEST(DatasetIterator, StopsAtNoEndOfASplitGroup) {
  const auto dataset = keptDataset(data().numeric("group", {1, 1, 2, 2, 3}));
  dataset->dictionary().split = {0};
  DatasetSource active(dataset, SourceKind::active);
  for (const bool check : {true, false}) {
    active.setSplitEndCheck(check);
    EXPECT_EQ(walked(active, 0), "0:1 1:1 2:2 3:2 4:3") << check;
  }
  DatasetSource comparison(dataset, SourceKind::readOnlyView);
  EXPECT_EQ(walked(comparison, 0), "0:1 1:1 2:2 3:2 4:3");
}

TEST(DatasetIterator, RefusesAStringAsFilter) {
  const auto dataset = keptDataset(data().text("t", 3, {"abc"}).filter("t"));
  DatasetSource active(dataset, SourceKind::active);
  EXPECT_THROW(active.CreateCaseIterator(IteratorOptions::standard), ErrorText);
}

TEST(DatasetIterator, LaysItsVariablesOutAlikeInAllCases) {
  const auto content = data()
                           .numeric("x", {1, 2, 3, 4, 5})
                           .text("t", 12, {"a", "b", "c", "d", "e"})
                           .numeric("keep", {1, 0, 1, 1, 1})
                           .filter("keep");
  for (const auto& dataset : {keptDataset(content), fromFile(content, 2)}) {
    DatasetSource active(dataset, SourceKind::active);
    active.setMaxObsAdded(2);
    active.MakeVariable(0, nullptr).SetName("flag");
    const auto cases = active.CreateCaseIterator(IteratorOptions::standard);
    active.MakeVariable(0, nullptr).SetName("too late to be in a case of it");
    int delivered = 0;
    for (; cases->NextCase(); ++delivered) {
      const OBS* first = cases->GetObsPointer(0);
      EXPECT_EQ(cases->GetObsPointer(1) - first, 1);
      EXPECT_EQ(cases->GetObsPointer(2) - first, 3);
      EXPECT_EQ(cases->GetObsPointer(3) - first, 4);
    }
    EXPECT_EQ(delivered, 4);
  }
}

// Makes a flag in the active dataset and writes ten times the first variable into the cases that are walked.
void writeFlags(DatasetSource& active, std::int64_t mostCases) {
  active.setMaxObsAdded(1);
  std::int32_t flag = -1;
  active.MakeVariable(0, &flag).SetName("flag");
  const auto cases = active.CreateCaseIterator(IteratorOptions::standard);
  while (mostCases-- > 0 && cases->NextCase()) {
    cases->GetObsPointer(flag)->number = cases->GetObsPointer(0)->number * 10;
  }
}

TEST(DatasetIterator, TakesOverWhatIsWrittenIntoAnAddedVariable) {
  for (const auto& dataset :
       {keptDataset(data().numeric("x", {1, 2, 3})), fromFile(data().numeric("x", {1, 2, 3}), 2)}) {
    DatasetSource active(dataset, SourceKind::active);
    writeFlags(active, 100);
    EXPECT_EQ(casesOf(*dataset), "1,10 2,20 3,30");
    EXPECT_EQ(walked(active, 1), "0:10 1:20 2:30");
  }
}

TEST(DatasetIterator, TakesOverWhatIsWrittenWhenItIsDestroyedInTheMiddleOfABlock) {
  const auto dataset = fromFile(data().numeric("x", {1, 2, 3, 4, 5}), 3);
  DatasetSource active(dataset, SourceKind::active);
  writeFlags(active, 4);
  EXPECT_EQ(casesOf(*dataset), "1,10 2,20 3,30 4,40 5,.");
}

TEST(DatasetIterator, TakesWhatIsWrittenUnderAFilterToTheRightRows) {
  const auto dataset =
      fromFile(data().numeric("x", {1, 2, 3, 4, 5, 6, 7}).numeric("keep", {0, 1, 1, 0, 0, 1, 0}).filter("keep"), 4);
  DatasetSource active(dataset, SourceKind::active);
  writeFlags(active, 100);
  EXPECT_EQ(casesOf(*dataset), "1,0,. 2,1,20 3,1,30 4,0,. 5,0,. 6,1,60 7,0,.");
}

TEST(DatasetIterator, LeavesAnAddedVariableThatNobodyWroteMissing) {
  const auto dataset = keptDataset(data().numeric("x", {1, 2}));
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(2);
  active.MakeVariable(0, nullptr).SetName("number");
  active.MakeVariable(9, nullptr).SetName("text");
  EXPECT_EQ(casesOf(*dataset), "1,., 2,.,");
}

TEST(DatasetIterator, NeverChangesTheCasesThatTheDatasetCameWith) {
  const auto dataset = keptDataset(data().numeric("x", {1, 2}));
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(1);
  std::int32_t flag = -1;
  active.MakeVariable(0, &flag);
  {
    const auto cases = active.CreateCaseIterator(IteratorOptions::standard);
    while (cases->NextCase()) cases->GetObsPointer(0)->number = 99;
  }
  EXPECT_EQ(casesOf(*dataset), "1,. 2,.");
}

TEST(DatasetIterator, KeepsWhatAnEarlierProcedureWroteFromBeingWrittenAgain) {
  const auto dataset = keptDataset(data().numeric("x", {1, 2}));
  DatasetSource(dataset, SourceKind::active).beginProcedure();
  {
    DatasetSource first(dataset, SourceKind::active);
    writeFlags(first, 100);
  }
  DatasetSource second(dataset, SourceKind::active);
  {
    const auto cases = second.CreateCaseIterator(IteratorOptions::standard);
    while (cases->NextCase()) cases->GetObsPointer(1)->number = 0;
  }
  EXPECT_EQ(casesOf(*dataset), "1,10 2,20");
}

TEST(DatasetIterator, WritesAStringOfSeveralSlots) {
  const auto dataset = keptDataset(data().numeric("x", {1, 2}));
  DatasetSource active(dataset, SourceKind::active);
  active.setMaxObsAdded(1);
  std::int32_t added = -1;
  active.MakeVariable(12, &added);
  {
    const auto cases = active.CreateCaseIterator(IteratorOptions::standard);
    cases->NextCase();
    std::memcpy(cases->GetObsPointer(added)->text, "hello, world    ", 16);
  }
  EXPECT_EQ(casesOf(*dataset), "1,hello, world 2,");
}

TEST(DatasetIterator, WalksManyBlocksWithTheirWrittenValues) {
  const int count = 300000;  // some blocks and some chunks of the added column
  const auto dataset = fromFile(data().numeric("x", numbersUpTo(count)), 50000);
  DatasetSource active(dataset, SourceKind::active);
  writeFlags(active, count);
  DatasetIterator cases(dataset, {});
  std::int64_t wrong = 0;
  while (cases.NextCase()) {
    wrong += cases.GetObsPointer(1)->number != 10 * static_cast<double>(cases.GetCurrentPosition());
  }
  EXPECT_EQ(cases.GetCurrentPosition(), count - 1);
  EXPECT_EQ(wrong, 0);
}

TEST(DatasetIterator, CarriesAnExceptionOfTheReadersThreadAfterAllCasesBeforeIt) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {1, 2, 3, 4, 5}));
  file->casesPerBlock = 2;
  file->beforeBlock = [](std::size_t row) {
    if (row == 4) throw ErrorText("Line 6 cannot be read.");
  };
  DatasetIterator cases(std::make_shared<Dataset>(file), {});
  for (int step = 0; step < 4; ++step) ASSERT_TRUE(cases.NextCase());
  try {
    cases.NextCase();
    FAIL() << "the reader's failure went unnoticed";
  } catch (const ErrorText& error) {
    EXPECT_EQ(error.GetText(), "Line 6 cannot be read.");
  }
  EXPECT_THROW(cases.NextCase(), ErrorText) << "and it stays a failure";
}

TEST(DatasetIterator, MakesAnErrorTextOfWhateverGoesWrongOnTheReadersThread) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {1}));
  file->beforeBlock = [](std::size_t) { throw std::runtime_error("the disk is gone"); };
  DatasetIterator cases(std::make_shared<Dataset>(file), {});
  try {
    cases.NextCase();
    FAIL() << "the reader's failure went unnoticed";
  } catch (const ErrorText& error) {
    EXPECT_EQ(error.GetText(), "memory.csv could not be read: the disk is gone.");
  }
}

TEST(DatasetIterator, KeepsWhatWasWrittenBeforeReadingFailed) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", {1, 2, 3}));
  file->casesPerBlock = 2;
  bool mayFail = true;
  file->beforeBlock = [&mayFail](std::size_t row) {
    if (mayFail && row == 2) throw ErrorText("broken");
  };
  const auto dataset = std::make_shared<Dataset>(file);
  DatasetSource active(dataset, SourceKind::active);
  EXPECT_THROW(writeFlags(active, 100), ErrorText);
  mayFail = false;
  EXPECT_EQ(casesOf(*dataset), "1,10 2,20 3,.");
}

TEST(DatasetIterator, StopsItsThreadWhenItIsDestroyedEarly) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", numbersUpTo(1000)));
  file->casesPerBlock = 1;
  {
    DatasetIterator cases(std::make_shared<Dataset>(file), {});
    ASSERT_TRUE(cases.NextCase());
  }
  EXPECT_EQ(file->readersAlive, 0);
}

TEST(DatasetIterator, StopsItsThreadWhenNoCaseWasAskedFor) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", numbersUpTo(1000)));
  file->casesPerBlock = 1;
  {
    const DatasetIterator cases(std::make_shared<Dataset>(file), {});
  }
  EXPECT_EQ(file->readersAlive, 0);
}

TEST(PrefetchedBlocks, DecodesNoMoreThanItsBlocksAhead) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", numbersUpTo(1000)));
  file->casesPerBlock = 1;
  std::atomic<std::size_t> reached{0};
  file->beforeBlock = [&reached](std::size_t row) { reached = row; };
  PrefetchedBlocks blocks(file->openReader(), 1, "memory");
  ASSERT_EQ(blocks.next().count, 1U);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_LE(reached, blocksInFlight) << "one is looked at, the others wait";
}

TEST(PrefetchedBlocks, DecodesAheadWhileABlockIsLookedAt) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", numbersUpTo(10)));
  file->casesPerBlock = 1;
  std::atomic<std::size_t> reached{0};
  file->beforeBlock = [&reached](std::size_t row) { reached = row; };
  PrefetchedBlocks blocks(file->openReader(), 1, "memory");
  ASSERT_EQ(blocks.next().count, 1U);
  for (int wait = 0; wait < 1000 && reached < 2; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_GE(reached, 2U);
}

TEST(DatasetIterator, LetsGoOfThreadAndCasesWhenItsCommandHasEnded) {
  auto file = std::make_shared<MemoryFile>(data().numeric("x", numbersUpTo(1000)));
  file->casesPerBlock = 1;
  auto dataset = std::make_shared<Dataset>(file);
  const std::weak_ptr<Dataset> watched = dataset;
  auto source = std::make_unique<DatasetSource>(std::move(dataset), SourceKind::readOnlyView);
  const auto leaked = source->CreateCaseIterator(IteratorOptions::standard);
  ASSERT_TRUE(leaked->NextCase());
  EXPECT_EQ(letGoOfAllHandedOut(), 2U);
  EXPECT_EQ(file->readersAlive, 0);
  EXPECT_TRUE(watched.expired());
  EXPECT_THROW(leaked->NextCase(), ErrorText);
  EXPECT_THROW(source->GetAttributes(), ErrorText);
  EXPECT_EQ(letGoOfAllHandedOut(), 0U);
}

TEST(DatasetIterator, TakesOverWhatWasWrittenWhenItIsLetGo) {
  const auto dataset = keptDataset(data().numeric("x", {1, 2}));
  auto active = makeActiveSource(dataset);
  active->setMaxObsAdded(1);
  std::int32_t flag = -1;
  active->MakeVariable(0, &flag);
  const auto leaked = active->CreateCaseIterator(IteratorOptions::standard);
  ASSERT_TRUE(leaked->NextCase());
  leaked->GetObsPointer(flag)->number = 7;
  letGoOfAllHandedOut();
  EXPECT_EQ(casesOf(*dataset), "1,7 2,.");
}

TEST(DatasetIterator, ShowsEveryStepInTheJournal) {
  const auto dataset = keptDataset(data().numeric("x", {5, 6}));
  const testing::JournalLines journalLines;
  {
    DatasetIterator cases(dataset, {});
    while (cases.NextCase())
      EXPECT_EQ(cases.GetObsPointer(0)->number, 5 + static_cast<double>(cases.GetCurrentPosition()));
  }
  EXPECT_EQ(journalLines.lines,
            "VRIX_InputCaseIterator#1.NextCase() -> true\n"
            "VRIX_InputCaseIterator#1.NextCase() -> true\n"
            "VRIX_InputCaseIterator#1.NextCase() -> false\n"
            "~VRIX_InputCaseIterator#1\n");
}

TEST(DatasetIterator, TakesOverWhatIsWrittenWithTheJournalOn) {
  const auto dataset = fromFile(data().numeric("x", {1, 2, 3}).numeric("keep", {1, 0, 1}).filter("keep"), 2);
  const testing::JournalLines journalLines;
  DatasetSource active(dataset, SourceKind::active);
  writeFlags(active, 100);
  EXPECT_EQ(casesOf(*dataset), "1,1,10 2,0,. 3,1,30");
}

TEST(ReadWatch, HearsOfEveryBlockAndCanEndTheReading) {
  const auto dataset = fromFile(data().numeric("x", {1, 2, 3, 4, 5}), 2);
  std::string heard;
  watchReading([&heard](const ReadProgress& progress) {
    heard += fmt::format("{}/{} ", progress.cases, progress.ofCases.value_or(-1));
    if (progress.cases > 4) throw ErrorText("The run was cancelled.");
  });
  DatasetIterator cases(dataset, {});
  for (int step = 0; step < 4; ++step) EXPECT_TRUE(cases.NextCase());
  EXPECT_THROW(cases.NextCase(), ErrorText);
  watchReading({});
  EXPECT_EQ(heard, "2/5 4/5 5/5 ");
}

}  // namespace
}  // namespace workbench::data
