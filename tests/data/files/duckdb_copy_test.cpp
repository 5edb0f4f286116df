// Rows on their way through DuckDB into a file: order, bounds, failure and abandonment.

#include "workbench/data/files/duckdb_copy.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"
#include "tests/data/files/system_limits.h"

namespace workbench::data {
namespace {

constexpr std::string_view csv = "FORMAT csv, HEADER true";
constexpr const char* names[] = {"a.csv", "a.csv.gz", "a.csv.zst"};

const std::vector<DuckDbColumn>& twoColumns() {
  static const std::vector<DuckDbColumn> columns{{"number", DUCKDB_TYPE_VARCHAR}, {"text", DUCKDB_TYPE_VARCHAR}};
  return columns;
}

std::unique_ptr<DuckDbCopy> started(const std::string& path, std::string_view options = csv) {
  auto copy = DuckDbCopy::start(path, fileKind(path)->packing, twoColumns(), options);
  EXPECT_TRUE(copy) << copy.problem().text();
  return std::move(*copy);
}

void addRow(DuckDbCopy& copy, int row) {
  copy.rows().setText(0, fmt::to_string(row));
  if (row % 3 == 0) {
    copy.rows().setMissing(1);
  } else {
    copy.rows().setText(1, fmt::format("a text that is longer than twelve bytes: {}", row));
  }
  copy.rows().endRow();
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
  for (const std::string name : names) {
    for (const int rows : {0, 1, 2047, 2048, 2049, 100'000}) {
      const auto copy = started(folder.path(name));
      for (int row = 0; row < rows; ++row) addRow(*copy, row);
      copy->complete();
      copy->commit();
      EXPECT_TRUE(unpackedText(folder.path(name)) == expectedLines(rows)) << rows << " in " << name;
    }
  }
}

TEST(DuckDbCopy, WritesSeveralFilesAtATime) {
  const TestFolder folder;
  std::vector<std::unique_ptr<DuckDbCopy>> copies;
  for (const char* name : {"a.csv", "b.csv", "a.csv.gz", "b.csv.gz", "a.csv.zst"}) {
    copies.push_back(started(folder.path(name)));
  }
  for (int row = 0; row < 20'000; ++row) {
    for (const auto& copy : copies) addRow(*copy, row);
  }
  for (auto copy = copies.rbegin(); copy != copies.rend(); ++copy) (*copy)->complete();
  for (const auto& copy : copies) copy->commit();
  EXPECT_EQ(folder.names().size(), copies.size());
  for (const std::string& name : folder.names()) {
    EXPECT_TRUE(unpackedText(folder.path(name)) == expectedLines(20'000)) << name;
  }
}

TEST(DuckDbCopy, PacksTheSameRowsIntoTheSameBytes) {
  const TestFolder folder;
  for (const std::string name : names) {
    std::vector<std::string> files;
    for (int time = 0; time < 3; ++time) {
      const auto copy = started(folder.path(name));
      for (int row = 0; row < 30'000; ++row) {
        addRow(*copy, row);
        if (row % 10'000 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(time));
      }
      copy->complete();
      copy->commit();
      files.push_back(folder.read(name));
    }
    EXPECT_TRUE(files[1] == files[0] && files[2] == files[0]) << name;
  }
}

TEST(DuckDbCopy, LeavesNothingBehindWhereverItIsAbandoned) {
  const TestFolder folder;
  const auto before = openDescriptors();
  for (const std::string name : names) {
    for (const int rows : {0, 1, 2048, 50'000}) {
      for (const bool isComplete : {false, true}) {
        auto copy = started(folder.path(name));
        for (int row = 0; row < rows; ++row) addRow(*copy, row);
        if (isComplete) copy->complete();
        EXPECT_EQ(folder.names().size(), 1U);
        copy.reset();
        EXPECT_TRUE(folder.names().empty()) << rows << " in " << name;
      }
    }
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST(DuckDbCopy, LetsNoChildProcessInheritWhatItHasOpen) {
  const TestFolder folder;
  for (const std::string name : names) {
    const auto before = openDescriptors();
    const auto copy = started(folder.path(name));
    for (int row = 0; row < 20'000; ++row) addRow(*copy, row);  // the statement has taken some, so all is open
    const auto opened = openedSince(before);
    EXPECT_EQ(opened.size(), name == "a.csv" ? 2U : 4U) << name;
    for (const auto& [descriptor, target] : opened) EXPECT_EQ(::fcntl(descriptor, F_GETFD), FD_CLOEXEC) << target;
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
  for (const std::string name : names) {
    const auto copy = started(folder.path(name), "FORMAT csv, DELIMITER '\"'");
    const std::string expected = name + ": DuckDB reports: Binder Error: QUOTE must not appear in the DELIMITER";
    EXPECT_EQ(thrownBy(folder, [&] { copy->complete(); }).substr(0, expected.size()), expected);
  }
}

TEST(DuckDbCopy, StopsWhoMakesRowsWhenTheStatementHasFailed) {
  const TestFolder folder;
  const auto before = openDescriptors();
  for (const std::string name : names) {
    auto copy = started(folder.path(name), "FORMAT csv, DELIMITER '\"'");
    const auto addMany = [&] {
      for (int row = 0; row < 100'000; ++row) addRow(*copy, row);
    };
    EXPECT_NE(thrownBy(folder, addMany), "nothing");
    EXPECT_NE(thrownBy(folder, addMany), "nothing");  // as often as it is tried
    copy.reset();
    EXPECT_TRUE(folder.names().empty());
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST(DuckDbCopy, StopsWhoMakesRowsWhenTheDiskIsFullAndSaysSo) {
  const TestFolder folder;
  const SignalHandling deadly(SIGPIPE, SIG_DFL);
  const auto before = openDescriptors();
  for (const std::string name : names) {
    const FileSizeLimit limit(1000);
    auto copy = started(folder.path(name));
    int row = 0;
    const auto addMany = [&] {
      for (; row < 5'000'000; ++row) addRow(*copy, row);
    };
    const std::string tooLarge = name + ": The file cannot be written (File too large).";
    EXPECT_EQ(thrownBy(folder, addMany), tooLarge);
    EXPECT_LT(row, 500'000) << name;
    EXPECT_EQ(thrownBy(folder, addMany), tooLarge);
    EXPECT_EQ(thrownBy(folder, [&] { copy->complete(); }), tooLarge);
    copy.reset();
    EXPECT_TRUE(folder.names().empty());
  }
  EXPECT_EQ(openDescriptors(), before);
}

// Puts a device in the place of what this process writes into pipes by; a write to it then fails for want of room.
void breakPipesOf(const std::map<int, std::string>& descriptors) {
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  for (const auto& [descriptor, target] : descriptors) {
    const bool isWriteEnd = target.starts_with("pipe:") && (::fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_WRONLY;
    if (isWriteEnd) ::dup3(full, descriptor, O_CLOEXEC);
  }
  ::close(full);
}

TEST(DuckDbCopy, SaysWhatTheStatementSaysWhenItFailsHalfWayAndPackingDoesNot) {
  const TestFolder folder;
  const auto before = openDescriptors();
  for (const std::string name : {"a.csv.gz", "a.csv.zst"}) {
    auto copy = started(folder.path(name));
    const auto addMany = [&] {
      for (int row = 0; row < 100'000; ++row) addRow(*copy, row);
    };
    addMany();  // the statement has taken some, so the pipe is open
    breakPipesOf(openedSince(before));
    const std::string message = thrownBy(folder, addMany);
    EXPECT_TRUE(message.starts_with(name + ": DuckDB reports: IO Error: Could not write file")) << message;
    EXPECT_TRUE(message.ends_with(": No space left on device")) << message;
    copy.reset();
    EXPECT_TRUE(folder.names().empty());
  }
  EXPECT_EQ(openDescriptors(), before);
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
