#include "workbench/runtime/temporary_files.h"

#include <unistd.h>

namespace workbench {

// Never destroyed: a run may be ended while the process is being taken down.
TemporaryFiles& temporaryFiles() {
  static TemporaryFiles& theFiles = *new TemporaryFiles;
  return theFiles;
}

void TemporaryFiles::add(const std::string& path) {
  const std::lock_guard lock(mutex_);
  paths_.insert(path);
}

void TemporaryFiles::forget(const std::string& path) {
  const std::lock_guard lock(mutex_);
  paths_.erase(path);
}

void TemporaryFiles::removeForGood() {
  mutex_.lock();
  for (const std::string& path : paths_) ::unlink(path.c_str());
}

}  // namespace workbench
