#include "workbench/data/files/path_target.h"

#include <sys/stat.h>

#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

constexpr int mostLinks = 40;  // as many as the system follows

std::optional<int> descriptorOfName(const fs::path& path) {
  const std::string name = path.lexically_normal().string();
  if (name == "/dev/stdin") return 0;
  if (name == "/dev/stdout") return 1;
  if (name == "/dev/stderr") return 2;
  for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!name.starts_with(folder)) continue;
    int number = 0;
    const auto [end, error] = std::from_chars(name.data() + folder.size(), name.data() + name.size(), number);
    if (error == std::errc() && end == name.data() + name.size() && number >= 0) return number;
  }
  return std::nullopt;
}

// Where the link leads, one step; nothing when it is none.
std::optional<fs::path> oneStepOn(const fs::path& path) {
  std::error_code failed;
  if (!fs::is_symlink(path, failed)) return std::nullopt;
  const fs::path next = fs::read_symlink(path, failed);
  if (failed) return std::nullopt;
  return next.is_absolute() ? next : path.parent_path() / next;
}

}  // namespace

fs::path linkTarget(const fs::path& path) {
  fs::path target = path;
  for (int links = 0; links < mostLinks; ++links) {
    const std::optional<fs::path> next = oneStepOn(target);
    if (!next) break;
    target = *next;
  }
  return target;
}

std::optional<int> descriptorNamed(const fs::path& path) {
  fs::path target = path;
  for (int links = 0; links < mostLinks; ++links) {
    if (const std::optional<int> descriptor = descriptorOfName(target)) return descriptor;
    const std::optional<fs::path> next = oneStepOn(target);
    if (!next) break;
    target = *next;
  }
  return std::nullopt;
}

bool isStream(const fs::path& path) {
  if (descriptorNamed(path)) return true;
  struct stat found{};
  return ::stat(path.c_str(), &found) == 0 && (S_ISFIFO(found.st_mode) || S_ISCHR(found.st_mode));
}

}  // namespace workbench::data
