// Temporary files for data that find no room in memory.
#include "workbench/data/working/spill_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>

#include "host/messages.h"
#include "tests/data/working/spills.h"
#include "workbench/data/working/nameless_file.h"
#include "workbench/runtime/protected_data.h"

namespace workbench::data {
namespace {

using testing::SpillFolder;
using testing::thrownBy;

TEST(SpillFile, GivesBackWhatWasWrittenAtAnyPlace) {
  const SpillFolder folder;
  SpillFile file;
  file.write(0, "abcdef", 6);
  file.write(100, "xyz", 3);
  file.write(2, "CD", 2);
  std::string read(6, '?');
  file.read(0, read.data(), 6);
  EXPECT_EQ(read, "abCDef");
  file.read(100, read.data(), 3);
  EXPECT_EQ(read, "xyzDef");
}

TEST(SpillFile, HasNoNameAndIsGoneWithItsOwner) {
  const SpillFolder folder;
  {
    SpillFile file;
    file.write(0, "secret", 6);
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(folder.openFiles(), 1);
    SpillFile moved(std::move(file));
    SpillFile other;
    other = std::move(moved);
    std::string read(6, '?');
    other.read(0, read.data(), 6);
    EXPECT_EQ(read, "secret");
  }
  EXPECT_EQ(folder.openFiles(), 0);
  EXPECT_EQ(folder.listing(), "");
}

// The bytes of the temporary file on the disk. Requires: one is open.
std::string bytesOnDisk(const SpillFolder& folder) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (!std::filesystem::read_symlink(entry.path(), gone).string().starts_with(folder.path())) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  ADD_FAILURE() << "no temporary file is open";
  return {};
}

TEST(SpillFile, HoldsNothingInTheClearWhereDataAreProtected) {
  noteProtectedData();
  const SpillFolder folder;
  SpillFile file;
  std::string expected(300'000, '.');
  file.write(0, expected.data(), expected.size());
  std::mt19937 random(5);
  for (int step = 0; step < 40; ++step) {
    const std::size_t place = random() % 290'000;
    const std::string text(1 + random() % 9'000, static_cast<char>('a' + step % 26));
    expected.replace(place, text.size(), text);
    file.write(place, text.data(), text.size());
    std::string read(expected.size() - place / 2, '?');
    file.read(place / 2, read.data(), read.size());
    ASSERT_EQ(read, expected.substr(place / 2)) << step;
  }
  const std::string bytes = bytesOnDisk(folder);
  EXPECT_GE(bytes.size(), expected.size());
  EXPECT_EQ(bytes.find("aaaaaaaa"), std::string::npos);
  EXPECT_EQ(bytes.find("........"), std::string::npos);
}

TEST(SpillFile, NoticesThatWhatItEncryptedWasChanged) {
  noteProtectedData();
  const SpillFolder folder;
  SpillFile file;
  const std::string text(100'000, 'x');
  file.write(0, text.data(), text.size());
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (!std::filesystem::read_symlink(entry.path(), gone).string().starts_with(folder.path())) continue;
    std::fstream(entry.path(), std::ios::binary | std::ios::in | std::ios::out).seekp(70'000).put('!');
  }
  std::string read(text.size(), '?');
  file.read(0, read.data(), 65'536);
  EXPECT_EQ(thrownBy([&] { file.read(0, read.data(), read.size()); }),
            "The temporary file in " + folder.path() + " cannot be read (Input/output error).");
}

TEST(SpillFile, SaysWhereNoFileCanBeMade) {
  const SpillFolder nowhere("/nowhere/at/all");
  EXPECT_EQ(thrownBy([] { const SpillFile file; }),
            "No temporary file can be made in /nowhere/at/all (No such file or directory). Name another folder by the "
            "environment variable TMPDIR.");
}

TEST(SpillFile, SaysThatTheDiskIsFullAndWhatToDo) {
  const SpillFolder folder;
  SpillFile file;
  const testing::SmallDisk disk(4096);
  const std::string bytes(5000, 'x');
  EXPECT_EQ(thrownBy([&] { file.write(0, bytes.data(), bytes.size()); }),
            "The temporary file in " + folder.path() +
                " cannot be written (File too large). Make room there, or name another folder by the environment "
                "variable TMPDIR.");
}

TEST(SpillFile, SaysThatWhatWasWrittenIsNotThere) {
  const SpillFolder folder;
  SpillFile file;
  file.write(0, "ab", 2);
  std::string read(3, '?');
  EXPECT_EQ(thrownBy([&] { file.read(0, read.data(), 3); }),
            "The temporary file in " + folder.path() + " cannot be read (Input/output error).");
}

TEST(NamelessFile, CanBeOpenedByItsOwnerOnly) {
  const SpillFolder folder;
  for (const int descriptor : {openNamelessFile(folder.path()), openFileThatLosesItsName(folder.path())}) {
    ASSERT_GE(descriptor, 0);
    struct stat status{};
    ASSERT_EQ(::fstat(descriptor, &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(status.st_nlink, 0U);
    EXPECT_EQ(::write(descriptor, "x", 1), 1);
    ::close(descriptor);
  }
  EXPECT_EQ(folder.listing(), "") << "nor is the private folder left";
}

TEST(NamelessFile, IsRefusedWhereThereIsNoFolder) {
  EXPECT_EQ(openNamelessFile("/nowhere/at/all"), -1);
  EXPECT_EQ(openFileThatLosesItsName("/nowhere/at/all"), -1);
  EXPECT_EQ(errno, ENOENT);
}

}  // namespace
}  // namespace workbench::data
