// Surroundings in which little data are much: a small memory limit, a folder for temporary files that can be watched,
// and a disk that is soon full.
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "tests/data/working/fakes.h"
#include "workbench/data/working/memory_limit.h"

namespace workbench::data::testing {

class MemoryLimitScope {
 public:
  explicit MemoryLimitScope(std::size_t bytes) : former_(memoryLimit()) { setMemoryLimit(bytes); }
  ~MemoryLimitScope() { setMemoryLimit(former_); }
  MemoryLimitScope(const MemoryLimitScope&) = delete;
  MemoryLimitScope& operator=(const MemoryLimitScope&) = delete;

 private:
  std::size_t former_;
};

// Has temporary files lie in a folder of its own.
class SpillFolder {
 public:
  SpillFolder() : SpillFolder(std::nullopt) {}
  // Or in one that is named.
  explicit SpillFolder(const std::optional<std::string>& named) {
    if (const char* const former = std::getenv("TMPDIR")) former_ = former;
    ::setenv("TMPDIR", named.value_or(path()).c_str(), 1);
  }
  ~SpillFolder() {
    if (former_) {
      ::setenv("TMPDIR", former_->c_str(), 1);
    } else {
      ::unsetenv("TMPDIR");
    }
  }
  SpillFolder(const SpillFolder&) = delete;
  SpillFolder& operator=(const SpillFolder&) = delete;

  std::string path() const { return folder_.file(""); }
  // What can be seen in it by name.
  std::string listing() const { return folder_.listing(); }
  // How many files of it this process has open, named or not.
  int openFiles() const {
    int open = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (std::filesystem::read_symlink(entry.path(), gone).string().starts_with(path())) ++open;
    }
    return open;
  }

 private:
  TemporaryFolder folder_;
  std::optional<std::string> former_;
};

// No file can become larger than this.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t bytes) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit small{bytes, former_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallDisk() {
    ::setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, formerHandler_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit former_{};
  void (*formerHandler_)(int);
};

// What was thrown, or nothing.
template <class Act>
std::string thrownBy(Act act) {
  try {
    act();
  } catch (const ErrorText& error) {
    return error.GetText();
  }
  return {};
}

}  // namespace workbench::data::testing
