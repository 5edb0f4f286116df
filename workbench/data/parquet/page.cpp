#include "workbench/data/parquet/page.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace workbench::data {
namespace {

// Where the system gives memory out in large pages, taking hold of it costs a fraction: pages of a file are laid into
// regions that begin where such a page does. A region is given back when nothing in it is used any more.
struct Region {
  std::shared_ptr<char> bytes;
  std::size_t used = 0;
};

constexpr std::size_t largePage = std::size_t{2} << 20;
constexpr std::size_t regionBytes = 16 * largePage;

std::shared_ptr<char> newRegion() {
  void* const bytes = std::aligned_alloc(largePage, regionBytes);
  if (bytes == nullptr) throw std::bad_alloc();
  ::madvise(bytes, regionBytes, MADV_HUGEPAGE);  // a wish, which may be refused
  return {static_cast<char*>(bytes), std::free};
}

std::shared_ptr<char> newBytes(std::size_t bytes) {
  constexpr std::size_t fewest = largePage / 16;
  constexpr std::size_t most = regionBytes / 4;
  if (bytes < fewest || bytes > most) return {new char[bytes], std::default_delete<char[]>()};
  thread_local Region region;
  if (region.bytes == nullptr || regionBytes - region.used < bytes) region = {newRegion(), 0};
  std::shared_ptr<char> taken(region.bytes, region.bytes.get() + region.used);
  constexpr std::size_t alignment = 64;
  region.used += (bytes + alignment - 1) / alignment * alignment;
  return taken;
}

}  // namespace

char* PageBytes::reserve(std::size_t bytes, std::size_t kept) {
  if (bytes + readableBehind <= capacity_) return bytes_.get();
  const std::size_t capacity = std::max(bytes + readableBehind, capacity_ + capacity_ / 2);
  std::shared_ptr<char> larger = newBytes(capacity);
  if (kept != 0) std::memcpy(larger.get(), bytes_.get(), kept);
  bytes_ = std::move(larger);
  capacity_ = capacity;
  return bytes_.get();
}

}  // namespace workbench::data
