#include "workbench/data/working/added_column.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace workbench::data {
namespace {

constexpr std::size_t mostChunkBytes = std::size_t{1} << 18;

// Nearly all added variables are numbers: their one slot is worth no call.
void copyValue(const OBS* from, std::size_t slots, OBS* to) {
  if (slots == 1) {
    *to = *from;
  } else {
    std::copy_n(from, slots, to);
  }
}

}  // namespace

AddedColumn::AddedColumn(std::int32_t width)
    : slots_(width == 0 ? 1 : (static_cast<std::size_t>(width) + 7) / 8), missing_{} {
  const std::size_t chunkSlots = std::min(mostChunkBytes, bytesOfKeptBlock()) / sizeof(OBS);
  shift_ = static_cast<unsigned>(std::bit_width(std::max<std::size_t>(chunkSlots / slots_, 1))) - 1;
  if (width == 0) {
    missing_.number = -std::numeric_limits<double>::max();
  } else {
    std::memset(missing_.text, ' ', sizeof missing_.text);
  }
}

void AddedColumn::layOver(std::int64_t firstRow, OBS* first, std::size_t count, std::size_t stride) const {
  std::size_t row = static_cast<std::size_t>(firstRow);
  std::vector<OBS> spilled;
  while (count != 0) {
    const std::size_t chunk = row >> shift_;
    const std::size_t within = row % rowsPerChunk();
    const std::size_t run = std::min(count, rowsPerChunk() - within);
    const Chunk* const written = chunk < chunks_.size() ? chunks_[chunk].get() : nullptr;
    const OBS* values = nullptr;
    if (written != nullptr && written->values) {
      values = written->values.get() + within * slots_;
    } else if (written != nullptr) {
      spilled.resize(run * slots_);
      file_->read(chunk * chunkBytes() + within * slots_ * sizeof(OBS), spilled.data(), run * slots_ * sizeof(OBS));
      values = spilled.data();
    }
    for (std::size_t index = 0; index < run; ++index, first += stride) {
      if (values != nullptr) {
        copyValue(values + index * slots_, slots_, first);
      } else {
        std::fill_n(first, slots_, missing_);
      }
    }
    row += run;
    count -= run;
  }
}

AddedColumn::Room AddedColumn::makeRoom(std::int64_t firstRow, std::size_t count) {
  Room room;
  if (count == 0) return room;
  spillUnused();
  const std::size_t first = static_cast<std::size_t>(firstRow);
  const std::size_t last = (first + count - 1) >> shift_;
  if (last >= chunks_.size()) chunks_.resize(last + 1);
  room.slots_ = slots_;
  room.shift_ = shift_;
  room.firstChunk_ = first >> shift_;
  for (std::size_t chunk = room.firstChunk_; chunk <= last; ++chunk) {
    fetch(chunk);
    room.chunks_.push_back(chunks_[chunk]);
  }
  return room;
}

// Sees to it that the chunk is in memory.
void AddedColumn::fetch(std::size_t chunk) {
  const bool isNew = chunks_[chunk] == nullptr;
  if (!isNew && chunks_[chunk]->values) return;
  const std::shared_ptr<Chunk> fetched = isNew ? std::make_shared<Chunk>() : chunks_[chunk];
  auto values = std::make_unique_for_overwrite<OBS[]>(rowsPerChunk() * slots_);
  if (isNew) {
    std::fill_n(values.get(), rowsPerChunk() * slots_, missing_);
    fetched->isToBeSpilled = !share_.tryTake(chunkBytes());
    if (fetched->isToBeSpilled && !file_) file_.emplace();
  } else {
    file_->read(chunk * chunkBytes(), values.get(), chunkBytes());
  }
  if (fetched->isToBeSpilled) fetched_.push_back(chunk);
  fetched->values = std::move(values);
  chunks_[chunk] = fetched;
}

// Of the chunks that have no lasting room in memory, those that nobody writes to leave it.
void AddedColumn::spillUnused() {
  const auto leaves = [this](std::size_t chunk) {
    if (chunks_[chunk].use_count() > 1) return false;
    file_->write(chunk * chunkBytes(), chunks_[chunk]->values.get(), chunkBytes());
    chunks_[chunk]->values.reset();
    return true;
  };
  // One after the other, so that whatever is thrown, what is still in memory is still known.
  while (!fetched_.empty() && leaves(fetched_.back())) fetched_.pop_back();
}

void AddedColumn::Room::take(std::int64_t row, const OBS* value) noexcept {
  const std::size_t index = static_cast<std::size_t>(row);
  Chunk& chunk = *chunks_[(index >> shift_) - firstChunk_];
  const std::size_t within = index & ((std::size_t{1} << shift_) - 1);
  copyValue(value, slots_, chunk.values.get() + within * slots_);
}

}  // namespace workbench::data
