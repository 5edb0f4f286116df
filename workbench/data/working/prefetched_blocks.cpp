#include "workbench/data/working/prefetched_blocks.h"

#include <new>
#include <system_error>
#include <utility>

#include "workbench/data/working/refusal.h"

namespace workbench::data {

PrefetchedBlocks::PrefetchedBlocks(std::unique_ptr<CaseReader> reader, std::size_t stride, std::string nameOfData)
    : reader_(std::move(reader)), stride_(stride), nameOfData_(std::move(nameOfData)) {
  try {
    thread_ = std::thread([this] { readAhead(); });
  } catch (const std::system_error& error) {
    refuse("^1 could not be read: ^2.", {nameOfData_, error.what()});
  }
}

PrefetchedBlocks::~PrefetchedBlocks() {
  {
    const std::lock_guard lock(mutex_);
    mustStop_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

CaseSpan PrefetchedBlocks::next() {
  std::exception_ptr failure;
  {
    std::unique_lock lock(mutex_);
    if (current_) {
      empty_.push_back(std::move(current_));
      changed_.notify_all();
    }
    changed_.wait(lock, [this] { return !filled_.empty() || isFinished_; });
    if (!filled_.empty()) {
      current_ = std::move(filled_.front());
      filled_.pop_front();
      return {current_->begin(), current_->cases(), current_->caseSlots()};
    }
    failure = failure_;
  }
  if (failure) {
    // Only ErrorText means anything to a procedure, so every other failure becomes one.
    try {
      std::rethrow_exception(failure);
    } catch (const ErrorText&) {
      throw;
    } catch (const std::bad_alloc&) {
      refuse("There is not enough memory to read ^1.", {nameOfData_});
    } catch (const std::exception& other) {
      refuse("^1 could not be read: ^2.", {nameOfData_, other.what()});
    }
  }
  return {};
}

void PrefetchedBlocks::readAhead() {
  try {
    while (auto block = emptyBlock()) {
      block->setCases(0);
      reader_->fill(*block);
      const bool isLast = block->cases() == 0;
      const std::lock_guard lock(mutex_);
      if (isLast) break;
      filled_.push_back(std::move(block));
      changed_.notify_all();
    }
  } catch (...) {
    const std::lock_guard lock(mutex_);
    failure_ = std::current_exception();
  }
  const std::lock_guard lock(mutex_);
  isFinished_ = true;
  changed_.notify_all();
}

std::unique_ptr<CaseBlock> PrefetchedBlocks::emptyBlock() {
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return mustStop_ || !empty_.empty() || blocks_ < blocksInFlight; });
    if (mustStop_) return nullptr;
    if (!empty_.empty()) {
      auto block = std::move(empty_.back());
      empty_.pop_back();
      return block;
    }
    ++blocks_;
  }
  return std::make_unique<CaseBlock>(stride_);
}

}  // namespace workbench::data
