// ChangeCounts: how often a variable changed from which value to which.
//
// Changes are counted exactly, by the bytes of the two values, as long as there is room: a variable has room for a
// number of different changes, and all variables share a budget of bytes. A change that first occurs when the room is
// used up is not kept; how many differing pairs that concerns is counted, so what is not listed is told.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace profile {

// What all variables of a run may keep.
struct ChangeMemory {
  std::size_t changesOfVariable = 10'000;
  std::size_t bytesLeft = std::size_t{64} << 20;
};

struct Change {
  std::string from;  // the bytes of a number, or a text without its trailing blanks
  std::string to;
  std::uint64_t count = 0;
};

class ChangeCounts {
 public:
  // The memory outlives this object.
  explicit ChangeCounts(ChangeMemory& memory) : memory_(&memory) {}

  void add(double from, double to);
  void add(std::string_view from, std::string_view to);

  // The changes that occurred most often, at most so many, the most frequent first; of those that are equally frequent
  // the lower values first. Requires: all of them were added as numbers, or all as texts.
  std::vector<Change> mostFrequent(std::size_t most) const;
  // All that were added.
  std::uint64_t total() const { return total_; }
  // Those whose change was not kept.
  std::uint64_t unkept() const { return unkept_; }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>{}(key); }
  };

  void count(std::size_t fromSize);
  bool isBefore(const Change& left, const Change& right) const;

  ChangeMemory* memory_;
  std::unordered_map<std::string, std::uint64_t, Hash, std::equal_to<>> counts_;
  std::string key_;  // of the change at hand: the size of the first value, then both
  bool areNumbers_ = false;
  std::uint64_t total_ = 0;
  std::uint64_t unkept_ = 0;
};

double numberOf(const std::string& bytes);

}  // namespace profile
