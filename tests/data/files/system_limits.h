// What the system refuses, for tests, and what a process holds of the system.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>

namespace workbench::data {

// A limit of this process, as long as this lives.
class ResourceLimit {
 public:
  ResourceLimit(__rlimit_resource resource, rlim_t value) : resource_(resource) {
    ::getrlimit(resource_, &former_);
    const rlimit limit{value, former_.rlim_max};
    ::setrlimit(resource_, &limit);
  }
  ~ResourceLimit() { ::setrlimit(resource_, &former_); }
  ResourceLimit(const ResourceLimit&) = delete;
  ResourceLimit& operator=(const ResourceLimit&) = delete;

 private:
  __rlimit_resource resource_;
  rlimit former_{};
};

// How this process meets a signal, as long as this lives.
class SignalHandling {
 public:
  SignalHandling(int signal, sighandler_t handler) : signal_(signal), former_(::signal(signal, handler)) {}
  ~SignalHandling() { ::signal(signal_, former_); }
  SignalHandling(const SignalHandling&) = delete;
  SignalHandling& operator=(const SignalHandling&) = delete;

 private:
  int signal_;
  sighandler_t former_;
};

// No file of this process grows beyond that size as long as this lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handling_(SIGXFSZ, SIG_IGN), limit_(RLIMIT_FSIZE, bytes) {}

 private:
  SignalHandling handling_;
  ResourceLimit limit_;
};

// The descriptors that this process has open, and what each stands for.
inline std::map<int, std::string> openDescriptors() {
  std::map<int, std::string> open;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code isGone;
    const std::string target = std::filesystem::read_symlink(entry.path(), isGone).string();
    const int descriptor = std::stoi(entry.path().filename().string());
    const bool isOfThisWalk = target.ends_with("/fd");
    if (!isGone && !isOfThisWalk) open.emplace(descriptor, target);
  }
  return open;
}

// Those that were not open before.
inline std::map<int, std::string> openedSince(const std::map<int, std::string>& before) {
  std::map<int, std::string> opened = openDescriptors();
  std::erase_if(opened, [&](const auto& descriptor) { return before.contains(descriptor.first); });
  return opened;
}

}  // namespace workbench::data
