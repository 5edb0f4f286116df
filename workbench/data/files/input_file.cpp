#include "workbench/data/files/input_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/unlocked_files.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

Problem openingProblem(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return {text::sentence("There is no such file."), path, text::sentence("Check the name and the folder.")};
    case EACCES:
    case EPERM:
      return {text::sentence("The file may not be read."), path,
              text::sentence("Ask its owner for the permission to read it.")};
    default:
      return {text::sentence("The file cannot be opened (^1).", {std::strerror(error)}), path, ""};
  }
}

// The status of a file that is there and can be read more than once. Asked before opening: to open a pipe would wait
// for someone who writes.
Outcome<struct stat> statusOf(const std::string& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) return openingProblem(errno, path);
  if (S_ISDIR(status.st_mode))
    return Problem{text::sentence("This is a folder."), path, text::sentence("Name a data file in it.")};
  if (!S_ISREG(status.st_mode)) {
    return Problem{text::sentence("This is no plain file, and data are read more than once."), path,
                   text::sentence("Copy the data to a file first.")};
  }
  return status;
}

}  // namespace

FileIdentity identityOf(const struct stat& status) {
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino), status.st_size,
          status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

std::string FileIdentity::text() const { return fmt::format("{}:{}:{}:{}", device, inode, size, modified); }

Outcome<InputFile> InputFile::open(const std::string& path) {
  if (!isProtectedName(path)) return openAsItIs(path);
  const Outcome<struct stat> status = statusOf(path);
  if (!status) return status.problem();
  const Outcome<int> content = openPlainContent(path, *status);
  if (!content) return content.problem();
  return InputFile(*content);
}

Outcome<InputFile> InputFile::openAsItIs(const std::string& path) {
  if (const Outcome<struct stat> status = statusOf(path); !status) return status.problem();
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return openingProblem(errno, path);
  return InputFile(descriptor);
}

InputFile::InputFile(InputFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

InputFile::~InputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

FileIdentity InputFile::identity() const {
  struct stat status{};
  return ::fstat(descriptor_, &status) == 0 ? identityOf(status) : FileIdentity();
}

std::optional<FileIdentity> identityAt(const std::string& path) {
  struct stat status{};
  return ::stat(path.c_str(), &status) == 0 ? std::optional(identityOf(status)) : std::nullopt;
}

std::string InputFile::descriptorPath() const { return fmt::format("/proc/self/fd/{}", descriptor_); }

}  // namespace workbench::data
