#include "workbench/data/working/spill_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "workbench/data/working/nameless_file.h"
#include "workbench/data/working/refusal.h"

namespace workbench::data {
namespace {

std::string temporaryFolder() {
  const char* const named = std::getenv("TMPDIR");
  return named != nullptr && *named != '\0' ? named : "/tmp";
}

}  // namespace

// The one place where data come to lie on a disk that their owner did not name. Data of protected files may not lie
// there in the clear: whoever makes such files readable decides here whether to encrypt or to refuse.
SpillFile::SpillFile() : folder_(temporaryFolder()), descriptor_(openNamelessFile(folder_)) {
  if (descriptor_ >= 0) return;
  refuse("No temporary file can be made in ^1 (^2). Name another folder by the environment variable TMPDIR.",
         {folder_, std::strerror(errno)});
}

SpillFile::SpillFile(SpillFile&& other) noexcept
    : folder_(std::move(other.folder_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

SpillFile& SpillFile::operator=(SpillFile&& other) noexcept {
  std::swap(folder_, other.folder_);
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

SpillFile::~SpillFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

void SpillFile::write(std::uint64_t place, const void* bytes, std::size_t count) {
  const char* from = static_cast<const char*>(bytes);
  while (count != 0) {
    const ssize_t written = ::pwrite(descriptor_, from, count, static_cast<off_t>(place));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      refuse(
          "The temporary file in ^1 cannot be written (^2). Make room there, or name another folder by the environment "
          "variable TMPDIR.",
          {folder_, std::strerror(errno)});
    }
    from += written;
    place += static_cast<std::uint64_t>(written);
    count -= static_cast<std::size_t>(written);
  }
}

void SpillFile::read(std::uint64_t place, void* bytes, std::size_t count) const {
  char* to = static_cast<char*>(bytes);
  while (count != 0) {
    const ssize_t taken = ::pread(descriptor_, to, count, static_cast<off_t>(place));
    if (taken < 0 && errno == EINTR) continue;
    // An end that comes too early is one of the disk's faults too: nobody else can shorten the file.
    if (taken <= 0) {
      refuse("The temporary file in ^1 cannot be read (^2).", {folder_, std::strerror(taken < 0 ? errno : EIO)});
    }
    to += taken;
    place += static_cast<std::uint64_t>(taken);
    count -= static_cast<std::size_t>(taken);
  }
}

}  // namespace workbench::data
