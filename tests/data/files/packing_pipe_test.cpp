// Text on its way through a pipe into a packed file: the bytes that come out, and who learns of what when it fails.

#include "workbench/data/files/packing_pipe.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"
#include "tests/data/files/system_limits.h"

namespace workbench::data {
namespace {

constexpr Packing packings[] = {Packing::gzip, Packing::zstd};
constexpr std::size_t blockBytes = std::size_t{1} << 18;  // what is packed at a time

// Lines of numbers that pack to something like a third.
std::string textOf(std::size_t bytes) {
  std::mt19937 engine(1);
  std::string text;
  while (text.size() < bytes) text += fmt::format("{}\n", engine());
  text.resize(bytes);
  return text;
}

std::string nameOf(const TestFolder& folder, Packing packing) {
  return folder.path(packing == Packing::gzip ? "a.csv.gz" : "a.csv.zst");
}

std::unique_ptr<PackingPipe> opened(OutputFile& file, Packing packing) {
  auto pipe = PackingPipe::open(file, packing);
  EXPECT_TRUE(pipe) << pipe.problem().text();
  return std::move(*pipe);
}

// Writes the text in pieces, like somebody who knows the pipe by its name only: the number of the error, or 0.
int written(const PackingPipe& pipe, const std::string& text, std::size_t pieceBytes) {
  const int descriptor = ::open(pipe.descriptorPath().c_str(), O_WRONLY | O_CLOEXEC);
  int error = 0;
  for (std::size_t at = 0; at < text.size() && error == 0;) {
    const ssize_t bytes = ::write(descriptor, text.data() + at, std::min(pieceBytes, text.size() - at));
    if (bytes < 0) error = errno;
    if (bytes > 0) at += static_cast<std::size_t>(bytes);
  }
  ::close(descriptor);
  return error;
}

// The bytes of the packed file.
std::string packed(const TestFolder& folder, Packing packing, const std::string& text,
                   std::size_t pieceBytes = blockBytes) {
  const std::string path = nameOf(folder, packing);
  const auto file = OutputFile::create(path);
  const auto pipe = opened(**file, packing);
  EXPECT_EQ(written(*pipe, text, pieceBytes), 0);
  pipe->endText();
  pipe->finish();
  (*file)->complete();
  (*file)->commit();
  return folder.read(std::filesystem::path(path).filename().string());
}

TEST(PackingPipe, PacksATextOfAnyLengthSoThatItUnpacksToTheSame) {
  const TestFolder folder;
  for (const Packing packing : packings) {
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, blockBytes - 1, blockBytes, blockBytes + 1,
                                    7 * blockBytes, 20 * blockBytes}) {
      const std::string text = textOf(bytes);
      const std::string file = packed(folder, packing, text);
      EXPECT_TRUE(unpackedText(nameOf(folder, packing)) == text) << bytes;
      EXPECT_LT(file.size(), text.size() * 2 / 3 + 50) << bytes;
    }
  }
}

TEST(PackingPipe, MakesTheSameBytesInWhateverPiecesTheTextComes) {
  const TestFolder folder;
  const std::string text = textOf(3 * blockBytes + 5);
  for (const Packing packing : packings) {
    const std::string expected = packed(folder, packing, text);
    for (const std::size_t pieceBytes : {std::size_t{97}, std::size_t{4096}, text.size()}) {
      EXPECT_TRUE(packed(folder, packing, text, pieceBytes) == expected) << pieceBytes;
    }
  }
}

TEST(PackingPipe, PutsNeitherTimeNorNameIntoAGzipFile) {
  const TestFolder folder;
  const std::string file = packed(folder, Packing::gzip, "text");
  EXPECT_EQ(file.substr(0, 8), std::string("\x1F\x8B\x08\0\0\0\0\0", 8));
}

std::string failureOf(PackingPipe& pipe) {
  try {
    pipe.finish();
  } catch (const ErrorText& error) {
    return error.GetText();
  }
  return "none";
}

TEST(PackingPipe, BreaksWhenTheFileCannotGrowAndSaysWhy) {
  const TestFolder folder;
  const SignalHandling deadly(SIGPIPE, SIG_DFL);
  for (const Packing packing : packings) {
    const FileSizeLimit limit(1000);
    const auto file = OutputFile::create(nameOf(folder, packing));
    const auto pipe = opened(**file, packing);
    int error = 0;
    std::thread writer([&] {
      PackingPipe::keepSignalFromThisThread();
      error = written(*pipe, textOf(20 * blockBytes), 4096);
      pipe->endText();
    });
    writer.join();
    EXPECT_EQ(error, EPIPE);
    const std::string tooLarge = nameOf(folder, packing) + ": The file cannot be written (File too large).";
    EXPECT_EQ(failureOf(*pipe), tooLarge);
    EXPECT_EQ(failureOf(*pipe), tooLarge);  // as often as it is asked
  }
  EXPECT_TRUE(folder.names().empty());
}

TEST(PackingPipe, SaysWhyWhenOnlyTheLastBytesFindNoRoom) {
  const TestFolder folder;
  for (const Packing packing : packings) {
    const auto bytes = static_cast<rlim_t>(packed(folder, packing, textOf(1000)).size());
    const FileSizeLimit limit(bytes - 1);
    const auto file = OutputFile::create(nameOf(folder, packing));
    const auto pipe = opened(**file, packing);
    EXPECT_EQ(written(*pipe, textOf(1000), 1000), 0);
    pipe->endText();
    EXPECT_EQ(failureOf(*pipe), nameOf(folder, packing) + ": The file cannot be written (File too large).");
  }
}

TEST(PackingPipe, EndsByItselfWhereverItIsDropped) {
  const TestFolder folder;
  const auto before = openDescriptors();
  for (const Packing packing : packings) {
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, 3 * blockBytes}) {
      const auto file = OutputFile::create(nameOf(folder, packing));
      auto pipe = opened(**file, packing);
      EXPECT_EQ(written(*pipe, textOf(bytes), 4096), 0);
      pipe.reset();
    }
  }
  EXPECT_TRUE(folder.names().empty());
  EXPECT_EQ(openDescriptors(), before);
}

TEST(PackingPipe, SaysWhenTheSystemHasNoPipeLeft) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer looks at memory through pipes of its own";
#endif
  const TestFolder folder;
  const auto file = OutputFile::create(folder.path("a.csv.gz"));
  const int lowestFree = ::dup(0);
  ::close(lowestFree);
  const ResourceLimit limit(RLIMIT_NOFILE, static_cast<rlim_t>(lowestFree) + 1);
  const auto pipe = PackingPipe::open(**file, Packing::gzip);
  ASSERT_FALSE(pipe);
  EXPECT_EQ(pipe.problem().text(), folder.path("a.csv.gz") + ": The file cannot be written (Too many open files).");
}

}  // namespace
}  // namespace workbench::data
