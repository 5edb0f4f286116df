// Temporary files for data that find no room in memory.
#include "workbench/data/working/spill_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "host/messages.h"
#include "tests/data/working/spills.h"
#include "workbench/data/working/nameless_file.h"

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

TEST(SpillFile, SaysWhereNoFileCanBeMade) {
  const SpillFolder missing("/nowhere/at/all");
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
