#include "workbench/data/files/memory_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

Problem memoryProblem(int error) {
  return {text::sentence("Its plain content cannot be held in memory (^1).", {std::strerror(error)}), "",
          text::sentence("A protected file needs as much memory as its plain content; make room.")};
}

}  // namespace

Outcome<MemoryFile> MemoryFile::create() {
  const int descriptor = ::memfd_create("compare-datasets", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  if (descriptor < 0) return memoryProblem(errno);
  return MemoryFile(descriptor);
}

MemoryFile::MemoryFile(MemoryFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

MemoryFile::~MemoryFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::string MemoryFile::descriptorPath() const { return fmt::format("/proc/self/fd/{}", descriptor_); }

Outcome<Done> MemoryFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return memoryProblem(errno);
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return Done{};
}

Outcome<Done> MemoryFile::seal() {
  constexpr int allSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
  if (::fcntl(descriptor_, F_ADD_SEALS, allSeals) != 0) return memoryProblem(errno);
  return Done{};
}

}  // namespace workbench::data
