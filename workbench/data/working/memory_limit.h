// MemoryLimit: how much memory all data that the process keeps apart from their files may take together.
//
// Whoever keeps data takes a share before using the memory; what finds nothing left goes to a temporary file
// (spill_file.h). What is only on its way, a few blocks per pass, is not counted. All of it may be called on any
// thread.
#pragma once

#include <cstddef>

namespace workbench::data {

inline constexpr std::size_t usualMemoryLimit = std::size_t{128} << 20;

std::size_t memoryLimit();
// Holds for all that is kept from now on. Tests make it small, and with it every size below.
void setMemoryLimit(std::size_t bytes);
// Of all shares together; more than the limit where something could not be done with less.
std::size_t memoryTaken();

// Sizes that go with the limit.
std::size_t bytesOfKeptBlock();    // of cases that lie in memory one after another
std::size_t bytesOfSmallestRun();  // that are sorted at once, however little the limit leaves
std::size_t bytesOfMerge();        // for what one merge of sorted runs reads ahead, for all runs together
inline constexpr std::size_t mostRunsMerged = 64;

// What one holder has taken. It is given back when the share goes.
class MemoryShare {
 public:
  MemoryShare() = default;
  MemoryShare(MemoryShare&& other) noexcept;
  MemoryShare& operator=(MemoryShare&& other) noexcept;
  ~MemoryShare();

  // Takes so much more, if the limit leaves it.
  bool tryTake(std::size_t bytes);
  // Takes it whatever the limit.
  void take(std::size_t bytes);
  // Requires: it has taken as much.
  void giveBack(std::size_t bytes);
  std::size_t bytes() const { return bytes_; }

 private:
  std::size_t bytes_ = 0;
};

}  // namespace workbench::data
