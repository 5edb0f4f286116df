#include "workbench/data/parquet/file_bytes.h"

#include <unistd.h>

#include <cerrno>

namespace workbench::data {

bool readFully(int descriptor, char* to, std::size_t count, std::int64_t offset) {
  while (count != 0) {
    const ssize_t taken = ::pread(descriptor, to, count, static_cast<off_t>(offset));
    if (taken < 0 && errno == EINTR) continue;
    if (taken <= 0) return false;
    to += taken;
    count -= static_cast<std::size_t>(taken);
    offset += taken;
  }
  return true;
}

}  // namespace workbench::data
