// TemporaryFiles: the files that stand under names of their own until they are put into place, so that none is left
// behind when the run is ended from outside.
//
// Invariant: whoever makes such a file holds the run meanwhile, and adds the file before letting go.
#pragma once

#include <mutex>
#include <set>
#include <string>

namespace workbench {

class TemporaryFiles {
 public:
  // As long as one lives the run is not ended from outside. For moments: making a file, putting files into place.
  using Hold = std::unique_lock<std::recursive_mutex>;
  Hold hold() { return Hold(mutex_); }

  void add(const std::string& path);
  // The file is in its place, or gone.
  void forget(const std::string& path);
  // Removes all of them. Nothing can be held, added or forgotten any more: the run ends.
  void removeForGood();

 private:
  std::recursive_mutex mutex_;
  std::set<std::string> paths_;
};

TemporaryFiles& temporaryFiles();

}  // namespace workbench
