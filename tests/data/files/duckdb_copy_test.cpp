// Rows on their way through DuckDB into a file: order, bounds, failure and abandonment.

#include "workbench/data/files/duckdb_copy.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

constexpr std::string_view csv = "FORMAT csv, HEADER true";

const std::vector<DuckDbColumn>& twoColumns() {
  static const std::vector<DuckDbColumn> columns{{"number", DUCKDB_TYPE_VARCHAR}, {"text", DUCKDB_TYPE_VARCHAR}};
  return columns;
}

std::unique_ptr<DuckDbCopy> started(const std::string& path, std::string_view options = csv) {
  auto copy = DuckDbCopy::start(path, twoColumns(), options);
  EXPECT_TRUE(copy) << copy.problem().text();
  return std::move(*copy);
}

void addRow(DuckDbCopy& copy, int row) {
  copy.setText(0, fmt::to_string(row));
  if (row % 3 == 0) {
    copy.setMissing(1);
  } else {
    copy.setText(1, fmt::format("a text that is longer than twelve bytes: {}", row));
  }
  copy.endRow();
}

std::string expectedLines(int rows) {
  std::string lines = "number,text\n";
  for (int row = 0; row < rows; ++row) {
    lines += row % 3 == 0 ? fmt::format("{},\n", row)
                          : fmt::format("{0},a text that is longer than twelve bytes: {0}\n", row);
  }
  return lines;
}

TEST(DuckDbCopy, KeepsTheRowsInTheirOrder) {
  const TestFolder folder;
  for (const int rows : {0, 1, 2047, 2048, 2049, 100'000}) {
    const auto copy = started(folder.path("a.csv"));
    for (int row = 0; row < rows; ++row) addRow(*copy, row);
    copy->complete();
    copy->commit();
    EXPECT_TRUE(folder.read("a.csv") == expectedLines(rows)) << rows;
  }
}

TEST(DuckDbCopy, WritesSeveralFilesAtATime) {
  const TestFolder folder;
  const auto first = started(folder.path("a.csv"));
  const auto second = started(folder.path("b.csv"));
  for (int row = 0; row < 20'000; ++row) {
    addRow(*first, row);
    addRow(*second, row);
  }
  second->complete();
  first->complete();
  first->commit();
  second->commit();
  EXPECT_TRUE(folder.read("a.csv") == expectedLines(20'000));
  EXPECT_TRUE(folder.read("b.csv") == expectedLines(20'000));
}

TEST(DuckDbCopy, LeavesNothingBehindWhereverItIsAbandoned) {
  const TestFolder folder;
  for (const int rows : {0, 1, 2048, 50'000}) {
    auto copy = started(folder.path("a.csv"));
    for (int row = 0; row < rows; ++row) addRow(*copy, row);
    EXPECT_EQ(folder.names().size(), 1U);
    copy.reset();
    EXPECT_TRUE(folder.names().empty()) << rows;
  }
}

// What the call throws, without the folder's name.
template <class Call>
std::string thrownBy(const TestFolder& folder, const Call& call) {
  try {
    call();
  } catch (const ErrorText& error) {
    std::string text = error.GetText();
    const std::string prefix = folder.path("");
    return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
  }
  return "nothing";
}

TEST(DuckDbCopy, NamesTheFileWhenTheStatementFails) {
  const TestFolder folder;
  const auto copy = started(folder.path("a.csv"), "FORMAT csv, DELIMITER '\"'");
  const std::string expected = "a.csv: DuckDB reports: Binder Error: QUOTE must not appear in the DELIMITER";
  EXPECT_EQ(thrownBy(folder, [&] { copy->complete(); }).substr(0, expected.size()), expected);
}

TEST(DuckDbCopy, StopsWhoMakesRowsWhenTheStatementHasFailed) {
  const TestFolder folder;
  auto copy = started(folder.path("a.csv"), "FORMAT csv, DELIMITER '\"'");
  const auto addMany = [&] {
    for (int row = 0; row < 100'000; ++row) addRow(*copy, row);
  };
  EXPECT_NE(thrownBy(folder, addMany), "nothing");
  EXPECT_NE(thrownBy(folder, addMany), "nothing");  // as often as it is tried
  copy.reset();
  EXPECT_TRUE(folder.names().empty());
}

TEST(DuckDbRowQueue, LetsWhoMakesRowsWaitUntilTheyAreTaken) {
  ASSERT_TRUE(DuckDbRowQueue::enable());
  DuckDbRowQueue queue(twoColumns());
  std::atomic<int> givenAway = 0;
  std::thread maker([&] {
    auto rows = queue.firstRows();
    while (queue.exchange(rows)) ++givenAway;
  });
  while (givenAway < 2) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(givenAway, 2);
  queue.close();
  maker.join();
  EXPECT_EQ(givenAway, 2);
}

}  // namespace
}  // namespace workbench::data
