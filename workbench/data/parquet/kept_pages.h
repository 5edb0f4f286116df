// KeptPages: unpacked pages of a file whose values are looked at first and read then, so that they are unpacked once.
//
// All of a process keep some 256 MiB at most; further pages are unpacked again. Safe for several threads.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

#include "workbench/data/parquet/page.h"

namespace workbench::data {

struct KeptPage {
  Page page;
  PageBytes bytes;          // in which the page lies
  std::int64_t behind = 0;  // offset in the file, behind the page
};

class KeptPages {
 public:
  KeptPages() = default;
  KeptPages(const KeptPages&) = delete;
  KeptPages& operator=(const KeptPages&) = delete;
  ~KeptPages() { clear(); }

  // The page whose header begins there in the file.
  void keep(std::int64_t begin, KeptPage page);
  std::optional<KeptPage> take(std::int64_t begin);
  void clear();

 private:
  std::mutex mutex_;
  std::map<std::int64_t, KeptPage> pages_;
};

}  // namespace workbench::data
