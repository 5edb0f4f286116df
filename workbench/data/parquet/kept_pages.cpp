#include "workbench/data/parquet/kept_pages.h"

#include <atomic>
#include <utility>

namespace workbench::data {
namespace {

constexpr std::size_t mostBytes = std::size_t{256} << 20;
std::atomic<std::size_t> keptBytes{0};

}  // namespace

void KeptPages::keep(std::int64_t begin, KeptPage page) {
  const std::size_t bytes = page.bytes.capacity();
  if (keptBytes.fetch_add(bytes) + bytes > mostBytes) {
    keptBytes.fetch_sub(bytes);
    return;
  }
  const std::lock_guard lock(mutex_);
  if (!pages_.try_emplace(begin, std::move(page)).second) keptBytes.fetch_sub(bytes);
}

std::optional<KeptPage> KeptPages::take(std::int64_t begin) {
  const std::lock_guard lock(mutex_);
  const auto found = pages_.find(begin);
  if (found == pages_.end()) return std::nullopt;
  std::optional<KeptPage> page(std::move(found->second));
  pages_.erase(found);
  keptBytes.fetch_sub(page->bytes.capacity());
  return page;
}

void KeptPages::clear() {
  const std::lock_guard lock(mutex_);
  for (const auto& [begin, page] : pages_) keptBytes.fetch_sub(page.bytes.capacity());
  pages_.clear();
}

}  // namespace workbench::data
