#include "workbench/data/working/spill_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "workbench/data/working/nameless_file.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/protected_data.h"

namespace workbench::data {
namespace {

std::string temporaryFolder() {
  const char* const named = std::getenv("TMPDIR");
  return named != nullptr && *named != '\0' ? named : "/tmp";
}

}  // namespace

// The one place where data come to lie on a disk that their owner did not name. Data of protected files may not lie
// there in the clear.
SpillFile::SpillFile() : folder_(temporaryFolder()), descriptor_(openNamelessFile(folder_)) {
  if (descriptor_ < 0) {
    refuse("No temporary file can be made in ^1 (^2). Name another folder by the environment variable TMPDIR.",
           {folder_, std::strerror(errno)});
  }
  if (handlesProtectedData()) cipher_ = std::make_unique<SpillCipher>();
}

SpillFile::SpillFile(SpillFile&& other) noexcept
    : folder_(std::move(other.folder_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      cipher_(std::move(other.cipher_)),
      end_(other.end_) {}

SpillFile& SpillFile::operator=(SpillFile&& other) noexcept {
  std::swap(folder_, other.folder_);
  std::swap(descriptor_, other.descriptor_);
  std::swap(cipher_, other.cipher_);
  std::swap(end_, other.end_);
  return *this;
}

SpillFile::~SpillFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

// Page by page; of one that is written in part the rest is what it was.
void SpillFile::write(std::uint64_t place, const void* bytes, std::size_t count) {
  if (!cipher_) {
    writeAsItIs(place, bytes, count);
    return;
  }
  const char* from = static_cast<const char*>(bytes);
  std::vector<char> plain(SpillCipher::pageBytes);
  std::vector<char> sealed(SpillCipher::sealedBytes);
  while (count != 0) {
    const std::uint64_t page = place / SpillCipher::pageBytes;
    const std::size_t within = place % SpillCipher::pageBytes;
    const std::size_t part = std::min(count, SpillCipher::pageBytes - within);
    if (part != SpillCipher::pageBytes && cipher_->wasWritten(page)) readPage(page, plain.data());
    std::copy_n(from, part, plain.data() + within);
    cipher_->seal(page, plain.data(), sealed.data());
    writeAsItIs(page * SpillCipher::sealedBytes, sealed.data(), sealed.size());
    from += part;
    place += part;
    count -= part;
  }
  end_ = std::max(end_, place);
}

void SpillFile::read(std::uint64_t place, void* bytes, std::size_t count) const {
  if (!cipher_) {
    readAsItIs(place, bytes, count);
    return;
  }
  if (place + count > end_) refuseReading(EIO);
  char* to = static_cast<char*>(bytes);
  std::vector<char> plain(SpillCipher::pageBytes);
  while (count != 0) {
    const std::uint64_t page = place / SpillCipher::pageBytes;
    const std::size_t within = place % SpillCipher::pageBytes;
    const std::size_t part = std::min(count, SpillCipher::pageBytes - within);
    if (!cipher_->wasWritten(page)) refuseReading(EIO);
    readPage(page, plain.data());
    std::copy_n(plain.data() + within, part, to);
    to += part;
    place += part;
    count -= part;
  }
}

void SpillFile::readPage(std::uint64_t page, char* plain) const {
  std::vector<char> sealed(SpillCipher::sealedBytes);
  readAsItIs(page * SpillCipher::sealedBytes, sealed.data(), sealed.size());
  if (!cipher_->open(page, sealed.data(), plain)) refuseReading(EIO);
}

void SpillFile::writeAsItIs(std::uint64_t place, const void* bytes, std::size_t count) {
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

void SpillFile::readAsItIs(std::uint64_t place, void* bytes, std::size_t count) const {
  char* to = static_cast<char*>(bytes);
  while (count != 0) {
    const ssize_t taken = ::pread(descriptor_, to, count, static_cast<off_t>(place));
    if (taken < 0 && errno == EINTR) continue;
    // An end that comes too early is one of the disk's faults too: nobody else can shorten the file.
    if (taken <= 0) refuseReading(taken < 0 ? errno : EIO);
    to += taken;
    place += static_cast<std::uint64_t>(taken);
    count -= static_cast<std::size_t>(taken);
  }
}

void SpillFile::refuseReading(int error) const {
  refuse("The temporary file in ^1 cannot be read (^2).", {folder_, std::strerror(error)});
}

}  // namespace workbench::data
