#include "workbench/data/working/file_place.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "workbench/data/files/path_target.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/data/working/refusal.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

bool hasScheme(std::string_view path) { return path.find("://") != std::string_view::npos; }

// The folder in which a file of that path stands.
fs::path folderOf(const fs::path& path) { return path.has_parent_path() ? path.parent_path() : fs::path("."); }

}  // namespace

std::string cleanedPath(std::string_view path) {
  if (hasScheme(path)) return std::string(path);
  return fs::path(path).lexically_normal().string();
}

FilePlace FilePlace::of(std::string_view path) {
  FilePlace place;
  if (hasScheme(path)) {
    place.canonicalPath = path;
    return place;
  }
  const std::string name = tableReference(path).file;
  struct stat found{};
  if (::stat(name.c_str(), &found) == 0) place.file = {found.st_dev, found.st_ino};
  std::error_code failed;
  const fs::path canonical = fs::weakly_canonical(fs::absolute(linkTarget(name)), failed);
  place.canonicalPath = failed ? cleanedPath(name) : canonical.string();
  return place;
}

bool operator==(const FilePlace& left, const FilePlace& right) {
  // A file that was replaced is another one under its old name, and still the same place.
  return left.canonicalPath == right.canonicalPath || (left.file && left.file == right.file);
}

Outcome<Done> checkInputFile(std::string_view path) {
  if (hasScheme(path)) return Done{};
  if (path.empty()) return problem("The name of the data file is empty.");
  const std::string name = tableReference(path).file;
  struct stat found{};
  if (::stat(name.c_str(), &found) != 0) {
    return problem("The data file ^1 does not exist or cannot be reached.", {cleanedPath(path)});
  }
  if (::access(name.c_str(), R_OK) != 0) {
    return problem("The data file ^1 cannot be read; you have no permission to.", {cleanedPath(path)});
  }
  return Done{};
}

Outcome<Done> checkOutputFile(std::string_view path) {
  if (path.empty()) return problem("The name of the data file to write is empty.");
  if (hasScheme(path)) {
    return problem("The data file ^1 cannot be written; name a file on this machine.", {path});
  }
  const std::string name = tableReference(path).file;
  const fs::path target(name);
  const std::string shown = cleanedPath(name);
  std::error_code ignored;
  if (!target.has_filename() || fs::is_directory(target, ignored)) {
    return problem("^1 is a folder; name a data file in it.", {shown});
  }
  if (isStream(target)) return Done{};
  const fs::path folder = folderOf(linkTarget(target));
  if (!fs::is_directory(folder, ignored)) {
    return problem("The data file ^1 cannot be written because there is no folder ^2.",
                   {shown, cleanedPath(folder.string())});
  }
  if (::access(folder.c_str(), W_OK | X_OK) != 0) {
    return problem("The data file ^1 cannot be written because you have no permission to write in the folder ^2.",
                   {shown, cleanedPath(folder.string())});
  }
  return Done{};
}

}  // namespace workbench::data
