#include "workbench/data/parquet/run_reader.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "tests/data/parquet/run_writer.h"

namespace workbench::data {
namespace {

constexpr std::size_t readableBehind = 8;

// Bytes as pages have them: more of them can be read than belong to the runs.
class Runs {
 public:
  Runs(std::string bytes, int width) : bytes_(std::move(bytes)), width_(width) {
    length_ = bytes_.size();
    bytes_.append(readableBehind, '\xAA');
  }
  RunReader reader() const { return {std::string_view(bytes_).substr(0, length_), width_}; }

 private:
  std::string bytes_;
  std::size_t length_ = 0;
  int width_;
};

std::vector<std::uint32_t> read(RunReader reader, std::size_t count) {
  std::vector<std::uint32_t> numbers(count);
  EXPECT_TRUE(reader.read(numbers.data(), count));
  return numbers;
}

TEST(RunReader, ReadsARunOfOneNumber) {
  EXPECT_EQ(read(Runs(repeatedRun(5, 300, 10), 10).reader(), 5), std::vector<std::uint32_t>(5, 300));
}

TEST(RunReader, ReadsPackedNumbers) {
  const std::vector<std::uint32_t> numbers{1, 2, 3, 4, 5, 6, 7, 0};
  EXPECT_EQ(read(Runs(packedRun(numbers, 3), 3).reader(), 8), numbers);
}

TEST(RunReader, ReadsPackedNumbersWhoseLastGroupIsCutOff) {
  const std::string whole = packedRun({9, 8, 7, 6, 5, 4, 3, 2}, 8);
  EXPECT_EQ(read(Runs(whole.substr(0, 4), 8).reader(), 3), (std::vector<std::uint32_t>{9, 8, 7}));
}

TEST(RunReader, ReadsNumbersOfNoBits) {
  EXPECT_EQ(read(Runs(repeatedRun(4, 0, 0), 0).reader(), 4), std::vector<std::uint32_t>(4, 0));
  EXPECT_EQ(read(Runs(packedRun(std::vector<std::uint32_t>(8, 0), 0), 0).reader(), 8), std::vector<std::uint32_t>(8));
}

TEST(RunReader, SaysWhenThereAreNotSoMany) {
  std::vector<std::uint32_t> numbers(9);
  std::vector<std::uint64_t> bits(1);
  for (const std::string& bytes : {std::string(), repeatedRun(8, 1, 1), packedRun({1, 1, 1, 1, 1, 1, 1, 1}, 1),
                                   std::string("\x10"), std::string("\xFF\xFF\xFF\xFF\xFF\xFF\xFF")}) {
    EXPECT_FALSE(Runs(bytes, 1).reader().read(numbers.data(), 9));
    EXPECT_LT(Runs(bytes, 1).reader().readBits(bits.data(), 0, 9), 0);
  }
}

RC_GTEST_PROP(RunReader, ReadsWhatWasWrittenHoweverItIsCutIntoPieces, ()) {
  const int width = *rc::gen::inRange(1, 33);
  std::string bytes;
  std::vector<std::uint32_t> written;
  const int runs = *rc::gen::inRange(0, 6);
  for (int run = 0; run < runs; ++run) addRandomRun(width, bytes, written);
  const Runs made(bytes, width);
  RunReader reader = made.reader();
  std::vector<std::uint32_t> found;
  while (found.size() < written.size()) {
    const std::size_t count = *rc::gen::inRange<std::size_t>(1, written.size() - found.size() + 1);
    std::vector<std::uint32_t> piece(count);
    RC_ASSERT(reader.read(piece.data(), count));
    found.insert(found.end(), piece.begin(), piece.end());
  }
  RC_ASSERT(found == written);
}

RC_GTEST_PROP(RunReader, ReadsBitsWhereTheyBelongAndCountsThem, ()) {
  std::string bytes;
  std::vector<std::uint32_t> written;
  const int runs = *rc::gen::inRange(0, 6);
  for (int run = 0; run < runs; ++run) addRandomRun(1, bytes, written);
  const Runs made(bytes, 1);
  RunReader reader = made.reader();
  std::vector<std::uint64_t> bits(written.size() / 64 + 2);
  std::int64_t set = 0;
  for (std::size_t first = 0; first < written.size();) {
    const std::size_t count = *rc::gen::inRange<std::size_t>(1, written.size() - first + 1);
    const std::int64_t found = reader.readBits(bits.data(), first, count);
    RC_ASSERT(found >= 0);
    set += found;
    first += count;
  }
  std::int64_t expected = 0;
  for (std::size_t index = 0; index < bits.size() * 64; ++index) {
    const bool isSet = index < written.size() && written[index] != 0;
    expected += isSet ? 1 : 0;
    RC_ASSERT(((bits[index / 64] >> (index % 64) & 1) != 0) == isSet);
  }
  RC_ASSERT(set == expected);
}

}  // namespace
}  // namespace workbench::data
