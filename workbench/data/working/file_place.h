// Where files are: whether two paths are one file, whether one can be read, whether one can be written.
//
// A path may name a table of a file behind "#" ("study.db#visits"); the place is that of the file. A path with a scheme
// ("s3://...") is no local file: only its reader can say whether it exists.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The path lexically cleaned ("a/../b.csv" is "b.csv"), as it is shown to people.
std::string cleanedPath(std::string_view path);

// One place in the file system, or beyond it. Two places are the same when they are one file (device and inode) or one
// name in one folder, whether something stands there yet or not.
struct FilePlace {
  std::optional<std::pair<dev_t, ino_t>> file;
  std::string canonicalPath;

  static FilePlace of(std::string_view path);
  friend bool operator==(const FilePlace& left, const FilePlace& right);
};

// Whether there is such a file to be read.
Outcome<Done> checkInputFile(std::string_view path);
// Whether a file can be put there: its folder exists and can be written, and no folder has its name.
Outcome<Done> checkOutputFile(std::string_view path);

}  // namespace workbench::data
