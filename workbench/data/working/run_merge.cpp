#include "workbench/data/working/run_merge.h"

#include <limits>
#include <utility>

#include "workbench/data/working/memory_limit.h"

namespace workbench::data {
namespace {

constexpr std::size_t nobody = std::numeric_limits<std::size_t>::max();

}  // namespace

RunMerge::RunMerge(std::span<const CaseRun> runs, std::vector<SortKey> keys)
    : keys_(std::move(keys)),
      isCollated_(isCollated(keys_)),
      prefixDecides_(keys_.size() == 1 && keys_.front().isNumeric),
      losers_(runs.size(), nobody) {
  heads_.reserve(runs.size());
  for (const CaseRun& run : runs) {
    heads_.push_back({RunCursor(run, bytesOfMerge() / runs.size()), 0, {}});
    look(heads_.back());
  }
  for (std::size_t run = 0; run < heads_.size(); ++run) play(run);
}

const OBS* RunMerge::next() {
  if (heads_.empty()) return nullptr;
  if (std::exchange(hasBegun_, true)) {
    const std::size_t last = losers_.front();
    Head& head = heads_[last];
    if (head.cursor.current() == nullptr) return nullptr;
    head.cursor.advance();
    look(head);
    play(last);
  }
  return heads_[losers_.front()].cursor.current();
}

void RunMerge::look(Head& head) const {
  const OBS* const oneCase = head.cursor.current();
  if (oneCase == nullptr) return;
  if (isCollated_) head.collatedKey = collatedKey(keys_, oneCase);
  head.prefix = isCollated_ ? prefixOf(head.collatedKey) : prefixOf(keys_.front(), oneCase);
}

bool RunMerge::isBefore(std::size_t left, std::size_t right) const {
  const Head& first = heads_[left];
  const Head& second = heads_[right];
  if (first.cursor.current() == nullptr) return false;
  if (second.cursor.current() == nullptr) return true;
  if (first.prefix != second.prefix) return first.prefix < second.prefix;
  int order = 0;
  if (isCollated_) {
    order = first.collatedKey.compare(second.collatedKey);
  } else if (!prefixDecides_) {
    order = compareCases(keys_, first.cursor.current(), second.cursor.current());
  }
  return order != 0 ? order < 0 : left < right;
}

// Plays a run's way up the tree. While the tree is being filled, who finds nobody to play against waits there.
void RunMerge::play(std::size_t run) {
  std::size_t winner = run;
  for (std::size_t place = (run + losers_.size()) / 2; place > 0; place /= 2) {
    if (losers_[place] == nobody) {
      losers_[place] = winner;
      return;
    }
    if (isBefore(losers_[place], winner)) std::swap(losers_[place], winner);
  }
  losers_.front() = winner;
}

}  // namespace workbench::data
