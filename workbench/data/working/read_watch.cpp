#include "workbench/data/working/read_watch.h"

#include <mutex>
#include <utility>

namespace workbench::data {
namespace {

struct Watching {
  std::mutex mutex;  // two datasets may be read at the same time
  ReadWatch watch;
};

Watching& watching() {
  static Watching theOne;
  return theOne;
}

}  // namespace

void watchReading(ReadWatch watch) {
  const std::lock_guard lock(watching().mutex);
  watching().watch = std::move(watch);
}

void reportReading(const std::string& path, std::int64_t cases, std::optional<std::int64_t> ofCases) {
  const std::lock_guard lock(watching().mutex);
  if (watching().watch) watching().watch({path, cases, ofCases});
}

}  // namespace workbench::data
