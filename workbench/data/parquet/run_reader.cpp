#include "workbench/data/parquet/run_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace workbench::data {
namespace {

std::uint64_t wordAt(const char* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Sets `count` bits from `first` on as those of the word, which has no others.
void putBits(std::uint64_t* to, std::size_t first, std::size_t count, std::uint64_t word) {
  const std::size_t shift = first % 64;
  to[first / 64] |= word << shift;
  if (shift + count > 64) to[first / 64 + 1] |= word >> (64 - shift);
}

std::uint64_t lowBits(std::size_t count) { return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1; }

}  // namespace

bool RunReader::nextRun() {
  if (!isRepeated_ && packedEnd_ != nullptr) at_ = packedEnd_;
  std::uint64_t header = 0;
  int shift = 0;
  do {
    if (at_ == end_ || shift > 35) return false;
    header |= static_cast<std::uint64_t>(*at_ & 0x7F) << shift;
    shift += 7;
  } while ((*at_++ & 0x80) != 0);
  isRepeated_ = (header & 1) == 0;
  const auto inFile = static_cast<std::size_t>(end_ - at_);
  if (isRepeated_) {
    const std::size_t bytes = (static_cast<std::size_t>(width_) + 7) / 8;
    if (bytes > inFile) return false;
    number_ = static_cast<std::uint32_t>(wordAt(at_) & lowBits(static_cast<std::size_t>(width_)));
    at_ += bytes;
    left_ = header >> 1;
    packedEnd_ = nullptr;
    return true;
  }
  // Writers may leave out the end of the last group: what is there is what can be read.
  const std::size_t groups = header >> 1;
  const std::size_t bytes = std::min(groups * static_cast<std::size_t>(width_), inFile);
  left_ = width_ == 0 ? groups * 8 : std::min(groups * 8, bytes * 8 / static_cast<std::size_t>(width_));
  packedEnd_ = at_ + bytes;
  bit_ = 0;
  return true;
}

bool RunReader::read(std::uint32_t* to, std::size_t count) {
  const std::uint64_t mask = lowBits(static_cast<std::size_t>(width_));
  while (count != 0) {
    if (left_ == 0) {
      if (!nextRun()) return false;
      continue;
    }
    const std::size_t taken = std::min(left_, count);
    if (isRepeated_) {
      std::fill_n(to, taken, number_);
    } else {
      std::size_t bit = bit_;
      for (std::size_t index = 0; index < taken; ++index, bit += static_cast<std::size_t>(width_)) {
        to[index] = static_cast<std::uint32_t>(wordAt(at_ + bit / 8) >> (bit % 8) & mask);
      }
      bit_ = bit;
    }
    to += taken;
    count -= taken;
    left_ -= taken;
  }
  return true;
}

std::int64_t RunReader::readBits(std::uint64_t* to, std::size_t first, std::size_t count) {
  constexpr std::size_t mostAtOnce = 56;  // of a word that begins within a byte
  std::int64_t set = 0;
  while (count != 0) {
    if (left_ == 0) {
      if (!nextRun()) return -1;
      continue;
    }
    const std::size_t taken = std::min({left_, count, mostAtOnce});
    std::uint64_t word = isRepeated_ ? (number_ != 0 ? ~std::uint64_t{0} : 0) : wordAt(at_ + bit_ / 8) >> (bit_ % 8);
    word &= lowBits(taken);
    putBits(to, first, taken, word);
    set += std::popcount(word);
    bit_ += taken;
    first += taken;
    count -= taken;
    left_ -= taken;
  }
  return set;
}

}  // namespace workbench::data
