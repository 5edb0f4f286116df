#include "workbench/data/working/nameless_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "workbench/runtime/temporary_files.h"

namespace workbench::data {

int openNamelessFile(const std::string& folder) {
  const int descriptor = ::open(folder.c_str(), O_TMPFILE | O_EXCL | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
  // EISDIR: the system itself does not know of them.
  if (descriptor >= 0 || (errno != EOPNOTSUPP && errno != EISDIR)) return descriptor;
  return openFileThatLosesItsName(folder);
}

int openFileThatLosesItsName(const std::string& folder) {
  const auto hold = temporaryFiles().hold();
  std::string privateFolder = folder + "/compare-datasets-XXXXXX";
  if (::mkdtemp(privateFolder.data()) == nullptr) return -1;
  const std::string path = privateFolder + "/cases";
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  const int error = errno;
  if (descriptor >= 0) ::unlink(path.c_str());
  ::rmdir(privateFolder.c_str());
  errno = error;
  return descriptor;
}

}  // namespace workbench::data
