// The counts of changes: which come first, and what becomes of those for which there is no room.
#include "procedures/profile/change_counts.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace profile::change_counts_test {

std::string listed(const ChangeCounts& counts, std::size_t most, bool numbers) {
  std::string all;
  for (const Change& change : counts.mostFrequent(most)) {
    all += numbers ? fmt::format("{}>{}x{} ", numberOf(change.from), numberOf(change.to), change.count)
                   : fmt::format("{}>{}x{} ", change.from, change.to, change.count);
  }
  return all;
}

TEST(ChangeCounts, ListsTheMostFrequentFirstAndOfEqualOnesTheLowerValues) {
  ChangeMemory memory;
  ChangeCounts counts(memory);
  for (const auto& [from, to] : {std::pair(10.0, 1.0), {2, 3}, {-5, 3}, {2, 3}, {2, -1}, {-0.0, 1}, {0, 1}}) {
    counts.add(from, to);
  }
  EXPECT_EQ(listed(counts, 10, true), "2>3x2 -5>3x1 -0>1x1 0>1x1 2>-1x1 10>1x1 ");
  EXPECT_EQ(listed(counts, 2, true), "2>3x2 -5>3x1 ");
  EXPECT_EQ(counts.total(), 7U);
}

TEST(ChangeCounts, TakesTextsWithoutTheirTrailingBlanks) {
  ChangeMemory memory;
  ChangeCounts counts(memory);
  counts.add("Ghent   ", "Gent");
  counts.add("Ghent", "Gent ");
  counts.add("ab", "c");
  counts.add("a", "bc");
  counts.add("    ", "a");
  EXPECT_EQ(listed(counts, 10, false), "Ghent>Gentx2 >ax1 a>bcx1 ab>cx1 ");
}

TEST(ChangeCounts, CountsWhatIsKeptExactlyAndTellsHowManyAreNot) {
  ChangeMemory memory;
  memory.changesOfVariable = 3;
  ChangeCounts counts(memory);
  for (int round = 0; round < 4; ++round) {
    for (double to = 1; to <= 5; ++to) counts.add(0, to);
  }
  EXPECT_EQ(listed(counts, 10, true), "0>1x4 0>2x4 0>3x4 ");
  EXPECT_EQ(counts.total(), 20U);
  EXPECT_EQ(counts.unkept(), 8U);
}

TEST(ChangeCounts, OfAllVariablesShareOneBudget) {
  ChangeMemory memory;
  memory.bytesLeft = 1000;
  ChangeCounts first(memory);
  ChangeCounts second(memory);
  first.add(std::string(600, 'x'), "y");
  second.add(std::string(600, 'x'), "y");
  second.add("x", "y");
  EXPECT_EQ(first.unkept(), 0U);
  EXPECT_EQ(second.unkept(), 1U);
  EXPECT_EQ(listed(second, 10, false), "x>yx1 ");
}

}  // namespace profile::change_counts_test
