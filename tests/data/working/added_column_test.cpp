// The values of an added variable, in memory and beyond.
#include "workbench/data/working/added_column.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstring>
#include <map>

#include "host/messages.h"
#include "tests/data/working/spills.h"

namespace workbench::data {
namespace {

using testing::MemoryLimitScope;
using testing::missing;
using testing::SpillFolder;
using testing::thrownBy;

void write(AddedColumn& column, std::int64_t row, double value) {
  AddedColumn::Room room = column.makeRoom(row, 1);
  const OBS slot{value};
  room.take(row, &slot);
}

std::vector<double> valuesOf(const AddedColumn& column, std::int64_t first, std::size_t count) {
  std::vector<OBS> slots(count);
  column.layOver(first, slots.data(), count, 1);
  std::vector<double> values;
  for (const OBS& slot : slots) values.push_back(slot.number);
  return values;
}

TEST(AddedColumn, IsMissingWhereNobodyWrote) {
  AddedColumn column(0);
  write(column, 70'000, 5);
  EXPECT_EQ(valuesOf(column, 69'999, 3), (std::vector<double>{missing, 5, missing}));
  EXPECT_EQ(valuesOf(column, 0, 1), std::vector<double>{missing});
  EXPECT_EQ(valuesOf(column, 1'000'000, 1), std::vector<double>{missing});
}

TEST(AddedColumn, LaysTextsOverCasesThatLieApart) {
  AddedColumn column(10);
  ASSERT_EQ(column.slots(), 2U);
  OBS text[2];
  std::memcpy(text, "abcdefghij      ", sizeof text);
  column.makeRoom(1, 1).take(1, text);
  std::vector<OBS> cases(6, OBS{42});
  column.layOver(0, cases.data() + 1, 2, 3);
  EXPECT_EQ(cases[0].number, 42);
  EXPECT_EQ(std::string(cases[1].text, 8), "        ");
  EXPECT_EQ(std::string(cases[4].text, 16), "abcdefghij      ");
}

TEST(AddedColumn, LiesInATemporaryFileBeyondTheLimit) {
  const SpillFolder folder;
  const MemoryLimitScope scope(16 << 10);
  constexpr std::int64_t rows = 20'000;
  constexpr std::size_t atOnce = 700;
  {
    AddedColumn column(0);
    for (std::int64_t first = 0; first < rows; first += atOnce) {
      AddedColumn::Room room = column.makeRoom(first, atOnce);
      for (std::int64_t row = first; row < first + static_cast<std::int64_t>(atOnce); ++row) {
        const OBS slot{static_cast<double>(row)};
        room.take(row, &slot);
      }
      EXPECT_LE(memoryTaken(), memoryLimit());
    }
    EXPECT_EQ(folder.openFiles(), 1);
    EXPECT_EQ(folder.listing(), "");
    const std::vector<double> all = valuesOf(column, 0, rows);
    for (std::size_t row = 0; row < all.size(); ++row) ASSERT_EQ(all[row], static_cast<double>(row));

    AddedColumn moved(std::move(column));
    write(moved, 3, -3);
    write(moved, rows - 1, -1);
    EXPECT_EQ(valuesOf(moved, 2, 3), (std::vector<double>{2, -3, 4}));
    EXPECT_EQ(valuesOf(moved, rows - 2, 2), (std::vector<double>{rows - 2, -1}));
  }
  EXPECT_EQ(folder.openFiles(), 0);
  EXPECT_EQ(memoryTaken(), 0U);
}

TEST(AddedColumn, KeepsSpaceForEveryoneWhoWritesAtTheSameTime) {
  const SpillFolder folder;
  const MemoryLimitScope scope(1 << 10);
  AddedColumn column(0);
  for (std::int64_t row = 0; row < 2000; ++row) write(column, row, 0);
  AddedColumn::Room early = column.makeRoom(1000, 10);
  for (std::int64_t row = 0; row < 2000; ++row) write(column, row, 1);
  const OBS slot{5};
  early.take(1003, &slot);
  EXPECT_EQ(valuesOf(column, 1002, 3), (std::vector<double>{1, 5, 1}));
  early = {};
  write(column, 0, 9);
  EXPECT_EQ(valuesOf(column, 1002, 3), (std::vector<double>{1, 5, 1})) << "after it has gone to the file";
  EXPECT_EQ(valuesOf(column, 0, 2), (std::vector<double>{9, 1}));
}

RC_GTEST_PROP(AddedColumn, HoldsWhatWasWrittenLastInEveryRow, ()) {
  const SpillFolder folder;
  const MemoryLimitScope scope(*rc::gen::element<std::size_t>(1, 2 << 10, 1 << 20));
  constexpr std::int64_t rows = 600;
  AddedColumn column(0);
  std::map<std::int64_t, double> model;
  const auto writes = *rc::gen::container<std::vector<std::pair<std::int64_t, int>>>(
      rc::gen::pair(rc::gen::inRange<std::int64_t>(0, rows), rc::gen::arbitrary<int>()));
  for (const auto& [row, value] : writes) {
    write(column, row, value);
    model[row] = value;
  }
  const std::vector<double> all = valuesOf(column, 0, rows);
  for (std::int64_t row = 0; row < rows; ++row) {
    const double expected = model.contains(row) ? model[row] : missing;
    RC_ASSERT(all[static_cast<std::size_t>(row)] == expected);
  }
}

TEST(AddedColumn, KeepsWhatItHasWhenTheDiskIsFull) {
  const SpillFolder folder;
  const MemoryLimitScope scope(2 << 10);
  AddedColumn column(0);
  std::int64_t row = 0;
  {
    const testing::SmallDisk disk(4096);
    EXPECT_NE(thrownBy([&] {
                for (; row < 100'000; ++row) write(column, row, static_cast<double>(row));
              }).find("cannot be written (File too large)"),
              std::string::npos);
  }
  ASSERT_GT(row, 0);
  const std::vector<double> all = valuesOf(column, 0, static_cast<std::size_t>(row));
  for (std::size_t index = 0; index < all.size(); ++index) ASSERT_EQ(all[index], static_cast<double>(index));
  write(column, row, 7);
  EXPECT_EQ(valuesOf(column, row, 1), std::vector<double>{7}) << "when there is room again, it goes on";
}

}  // namespace
}  // namespace workbench::data
