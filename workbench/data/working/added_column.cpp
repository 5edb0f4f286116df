#include "workbench/data/working/added_column.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace workbench::data {
namespace {

constexpr std::size_t rowsPerChunk = std::size_t{1} << 15;

}  // namespace

AddedColumn::AddedColumn(std::int32_t width)
    : slots_(width == 0 ? 1 : (static_cast<std::size_t>(width) + 7) / 8), missing_{} {
  if (width == 0) {
    missing_.number = -std::numeric_limits<double>::max();
  } else {
    std::memset(missing_.text, ' ', sizeof missing_.text);
  }
}

void AddedColumn::layOver(std::int64_t firstRow, OBS* first, std::size_t count, std::size_t stride) const {
  std::size_t row = static_cast<std::size_t>(firstRow);
  while (count != 0) {
    const std::size_t chunk = row / rowsPerChunk;
    const std::size_t within = row % rowsPerChunk;
    const std::size_t run = std::min(count, rowsPerChunk - within);
    const OBS* values = chunk < chunks_.size() ? chunks_[chunk].get() : nullptr;
    for (std::size_t index = 0; index < run; ++index, first += stride) {
      if (values != nullptr) {
        std::copy_n(values + (within + index) * slots_, slots_, first);
      } else {
        std::fill_n(first, slots_, missing_);
      }
    }
    row += run;
    count -= run;
  }
}

void AddedColumn::makeRoom(std::int64_t firstRow, std::size_t count) {
  if (count == 0) return;
  const std::size_t first = static_cast<std::size_t>(firstRow);
  const std::size_t last = (first + count - 1) / rowsPerChunk;
  if (last >= chunks_.size()) chunks_.resize(last + 1);
  for (std::size_t chunk = first / rowsPerChunk; chunk <= last; ++chunk) {
    if (chunks_[chunk]) continue;
    chunks_[chunk] = std::make_unique_for_overwrite<OBS[]>(rowsPerChunk * slots_);
    std::fill_n(chunks_[chunk].get(), rowsPerChunk * slots_, missing_);
  }
}

void AddedColumn::take(std::int64_t row, const OBS* value) noexcept {
  const std::size_t index = static_cast<std::size_t>(row);
  std::copy_n(value, slots_, chunks_[index / rowsPerChunk].get() + index % rowsPerChunk * slots_);
}

}  // namespace workbench::data
