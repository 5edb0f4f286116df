// PrefetchedBlocks: a reader's cases, decoded on a thread of the host ahead of whoever takes them.
//
// At most `blocksInFlight` blocks exist, the one that is looked at among them; they are used again and again. What goes
// wrong on the thread is thrown by next(), after all blocks that were read before it. The destructor waits for no more
// than the block that is being decoded.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "workbench/data/case_reader.h"
#include "workbench/data/working/block_supply.h"

namespace workbench::data {

inline constexpr std::size_t blocksInFlight = 4;

class PrefetchedBlocks final : public BlockSupply {
 public:
  // Blocks whose cases lie `stride` slots apart. The name of the data is for what may have to be said of it.
  PrefetchedBlocks(std::unique_ptr<CaseReader> reader, std::size_t stride, std::string nameOfData);
  ~PrefetchedBlocks() override;

  CaseSpan next() override;

 private:
  void readAhead();
  std::unique_ptr<CaseBlock> emptyBlock();  // null: stop

  std::unique_ptr<CaseReader> reader_;
  const std::size_t stride_;
  const std::string nameOfData_;

  std::mutex mutex_;  // guards all below
  std::condition_variable changed_;
  std::deque<std::unique_ptr<CaseBlock>> filled_;
  std::vector<std::unique_ptr<CaseBlock>> empty_;
  std::size_t blocks_ = 0;  // that exist
  std::exception_ptr failure_;
  bool isFinished_ = false;  // the thread will add nothing more
  bool mustStop_ = false;

  std::unique_ptr<CaseBlock> current_;  // looked at by the taker
  std::thread thread_;                  // last: it runs as soon as it is made
};

}  // namespace workbench::data
