#include "workbench/data/working/read_watch.h"

#include <utility>

namespace workbench::data {
namespace {

ReadWatch& theWatch() {
  static ReadWatch watch;
  return watch;
}

}  // namespace

void watchReading(ReadWatch watch) { theWatch() = std::move(watch); }

void reportReading(const std::string& path, std::int64_t cases, std::optional<std::int64_t> ofCases) {
  if (theWatch()) theWatch()({path, cases, ofCases});
}

}  // namespace workbench::data
