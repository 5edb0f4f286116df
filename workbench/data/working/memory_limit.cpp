#include "workbench/data/working/memory_limit.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <utility>

#include "workbench/data/case_block.h"

namespace workbench::data {
namespace {

std::atomic<std::size_t> limit{usualMemoryLimit};
std::atomic<std::size_t> taken{0};

}  // namespace

std::size_t memoryLimit() { return limit; }

void setMemoryLimit(std::size_t bytes) { limit = bytes; }

std::size_t memoryTaken() { return taken; }

// With the usual limit these are 1 MiB, 8 MiB and 8 MiB.
std::size_t bytesOfKeptBlock() { return std::clamp<std::size_t>(memoryLimit() / 128, sizeof(OBS), blockBytes); }

std::size_t bytesOfSmallestRun() { return std::max(memoryLimit() / 16, sizeof(OBS)); }

std::size_t bytesOfMerge() { return memoryLimit() / 16; }

MemoryShare::MemoryShare(MemoryShare&& other) noexcept : bytes_(std::exchange(other.bytes_, 0)) {}

MemoryShare& MemoryShare::operator=(MemoryShare&& other) noexcept {
  std::swap(bytes_, other.bytes_);
  return *this;
}

MemoryShare::~MemoryShare() { taken -= bytes_; }

bool MemoryShare::tryTake(std::size_t bytes) {
  std::size_t before = taken;
  do {
    if (before + bytes > limit) return false;
  } while (!taken.compare_exchange_weak(before, before + bytes));
  bytes_ += bytes;
  return true;
}

void MemoryShare::take(std::size_t bytes) {
  taken += bytes;
  bytes_ += bytes;
}

void MemoryShare::giveBack(std::size_t bytes) {
  assert(bytes <= bytes_);  // no holder gives back what it did not take
  taken -= bytes;
  bytes_ -= bytes;
}

}  // namespace workbench::data
