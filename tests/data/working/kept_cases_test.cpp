// Cases that are kept apart from their file: how much memory they take, and that they come back as they went in.
#include "workbench/data/working/kept_cases.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "host/messages.h"
#include "tests/data/working/spills.h"
#include "workbench/data/working/kept_blocks.h"

namespace workbench::data {
namespace {

using testing::MemoryLimitScope;
using testing::SpillFolder;
using testing::thrownBy;

constexpr std::size_t memoryForCases = 16 << 10;
constexpr std::size_t caseSlots = 3;
constexpr std::size_t casesInMemory = memoryForCases / (caseSlots * sizeof(OBS));

// Case n holds n, n + 1 and n + 2.
std::shared_ptr<const KeptCases> keptUpTo(std::size_t count) {
  CaseKeeper keeper(caseSlots);
  for (std::size_t row = 0; row < count; ++row) {
    OBS oneCase[caseSlots];
    for (std::size_t slot = 0; slot < caseSlots; ++slot) oneCase[slot].number = static_cast<double>(row + slot);
    keeper.add(oneCase, 1, caseSlots);
  }
  return keeper.finish();
}

// Expects the cases of keptUpTo(count), and gives the number of those that came.
void expectCasesUpTo(std::size_t count, BlockSupply& supply, std::size_t stride) {
  std::size_t row = 0;
  while (const CaseSpan span = supply.next()) {
    ASSERT_EQ(span.caseSlots, stride);
    for (std::size_t index = 0; index < span.count; ++index, ++row) {
      for (std::size_t slot = 0; slot < caseSlots; ++slot) {
        ASSERT_EQ(span.cases[index * stride + slot].number, static_cast<double>(row + slot));
      }
    }
  }
  EXPECT_EQ(row, count);
}

TEST(KeptCases, LieInMemoryAsLongAsTheLimitAllows) {
  const MemoryLimitScope scope(memoryForCases);
  const SpillFolder folder;
  const auto kept = keptUpTo(casesInMemory / 2);
  EXPECT_NE(kept->blocks(), nullptr);
  EXPECT_EQ(folder.openFiles(), 0);
  EXPECT_EQ(memoryTaken(), casesInMemory / 2 * caseSlots * sizeof(OBS))
      << "what is left of the last block is given back";
}

TEST(KeptCases, LieInATemporaryFileBeyondTheLimit) {
  const MemoryLimitScope scope(memoryForCases);
  const SpillFolder folder;
  {
    constexpr std::size_t count = 10 * casesInMemory;
    const auto kept = keptUpTo(count);
    EXPECT_EQ(kept->cases(), static_cast<std::int64_t>(count));
    EXPECT_EQ(kept->blocks(), nullptr);
    EXPECT_LE(memoryTaken(), memoryForCases);
    EXPECT_EQ(folder.openFiles(), 1);
    EXPECT_EQ(folder.listing(), "");
    for (const std::size_t stride : {caseSlots, caseSlots + 2}) {
      for (const CaseUse use : {CaseUse::onlyRead, CaseUse::mayBeWritten}) {
        expectCasesUpTo(count, *supplyKept(kept, stride, use, "kept"), stride);
      }
    }
  }
  EXPECT_EQ(folder.openFiles(), 0);
  EXPECT_EQ(memoryTaken(), 0U);
}

TEST(KeptCases, MayBeWrittenOverByEveryPassWithoutChanging) {
  const MemoryLimitScope scope(memoryForCases);
  const SpillFolder folder;
  for (const std::size_t count : {casesInMemory / 2, 2 * casesInMemory}) {
    const auto kept = keptUpTo(count);
    const auto first = supplyKept(kept, caseSlots, CaseUse::mayBeWritten, "kept");
    while (const CaseSpan span = first->next()) std::fill_n(span.cases, span.count * span.caseSlots, OBS{-1});
    expectCasesUpTo(count, *supplyKept(kept, caseSlots, CaseUse::mayBeWritten, "kept"), caseSlots);
  }
}

TEST(KeptCases, CanBeReadBySeveralAtOnce) {
  const MemoryLimitScope scope(memoryForCases);
  const SpillFolder folder;
  const auto kept = keptUpTo(3 * casesInMemory);
  std::vector<std::thread> threads;
  for (int reader = 0; reader < 3; ++reader) {
    threads.emplace_back([&kept] {
      expectCasesUpTo(3 * casesInMemory, *supplyKept(kept, caseSlots, CaseUse::onlyRead, "kept"), caseSlots);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(KeptCases, OfTwoDatasetsShareTheLimit) {
  const MemoryLimitScope scope(memoryForCases);
  const SpillFolder folder;
  auto first = keptUpTo(casesInMemory * 3 / 4);
  const auto second = keptUpTo(casesInMemory * 3 / 4);
  EXPECT_NE(first->blocks(), nullptr);
  EXPECT_EQ(second->blocks(), nullptr) << "the first one has left too little";
  EXPECT_LE(memoryTaken(), memoryForCases);
  first.reset();
  EXPECT_NE(keptUpTo(casesInMemory / 2)->blocks(), nullptr) << "what was given back is there for others";
  expectCasesUpTo(casesInMemory * 3 / 4, *supplyKept(second, caseSlots, CaseUse::onlyRead, "kept"), caseSlots);
}

TEST(KeptCases, CanBeLargerThanTheLimitEach) {
  const MemoryLimitScope scope(64);
  const SpillFolder folder;
  constexpr std::size_t slots = 1000;
  CaseKeeper keeper(slots);
  std::vector<OBS> oneCase(slots);
  for (int row = 0; row < 50; ++row) {
    std::fill(oneCase.begin(), oneCase.end(), OBS{static_cast<double>(row)});
    keeper.add(oneCase.data(), 1, slots);
  }
  const auto supply = supplyKept(keeper.finish(), slots, CaseUse::onlyRead, "kept");
  int row = 0;
  while (const CaseSpan span = supply->next()) {
    for (std::size_t index = 0; index < span.count; ++index, ++row) {
      EXPECT_EQ(span.cases[index * slots].number, row);
      EXPECT_EQ(span.cases[index * slots + slots - 1].number, row);
    }
  }
  EXPECT_EQ(row, 50);
}

TEST(KeptCases, LeaveNothingBehindWhenTheDiskIsFull) {
  const MemoryLimitScope scope(memoryForCases);
  const SpillFolder folder;
  const testing::SmallDisk disk(1 << 16);
  EXPECT_NE(thrownBy([] { keptUpTo(1'000'000); }).find("cannot be written (File too large)"), std::string::npos);
  EXPECT_EQ(folder.openFiles(), 0);
  EXPECT_EQ(memoryTaken(), 0U);
}

TEST(MemoryShare, IsGivenBackOnceWhoeverHoldsIt) {
  const MemoryLimitScope scope(100);
  {
    MemoryShare share;
    EXPECT_TRUE(share.tryTake(60));
    MemoryShare moved(std::move(share));
    MemoryShare other;
    EXPECT_FALSE(other.tryTake(50));
    EXPECT_TRUE(other.tryTake(40));
    other = std::move(moved);
    EXPECT_EQ(other.bytes(), 60U);
    other.take(1000);
    EXPECT_EQ(memoryTaken(), 1100U) << "what cannot be done with less counts too";
    EXPECT_FALSE(other.tryTake(0)) << "nothing is left";
    other.giveBack(1000);
    EXPECT_EQ(memoryTaken(), 100U);
  }
  EXPECT_EQ(memoryTaken(), 0U);
}

}  // namespace
}  // namespace workbench::data
