#include "workbench/data/working/case_sorter.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "workbench/data/working/memory_limit.h"
#include "workbench/data/working/row_order.h"
#include "workbench/data/working/run_merge.h"

namespace workbench::data {
namespace {

// How many runs are merged at once: as many as what a merge reads ahead has room for, two at least.
std::size_t runsMergedAtOnce(std::size_t caseSlots) {
  constexpr std::size_t leastCases = 4;  // of a run, read at once
  return std::clamp<std::size_t>(bytesOfMerge() / (leastCases * caseSlots * sizeof(OBS)), 2, mostRunsMerged);
}

}  // namespace

CaseSorter::CaseSorter(std::size_t caseSlots, std::vector<SortKey> keys, std::vector<MissingValues> declared)
    : keys_(std::move(keys)),
      missing_(keys_, std::move(declared)),
      rows_(caseSlots, bytesToOrderRow(keys_), bytesOfSmallestRun()) {}

void CaseSorter::add(const OBS* cases, std::size_t count, std::size_t stride) {
  while (count != 0) {
    const std::size_t added = rows_.add(cases, count, stride);
    cases += added * stride;
    count -= added;
    if (added == 0) spillRows();
  }
}

std::shared_ptr<const KeptCases> CaseSorter::finish() {
  const std::size_t caseSlots = rows_.caseSlots();
  // Under a collation keys are dear to make, and it may be another one when the cases are read: all is merged now.
  const bool mergesNow = !spilled_.empty() && isCollated(keys_);
  if (mergesNow && rows_.size() != 0) spillRows();
  const std::size_t mostRuns = mergesNow ? 1 : runsMergedAtOnce(caseSlots) - 1;
  while (spilled_.size() > mostRuns) {
    mergeLast(std::min(runsMergedAtOnce(caseSlots), spilled_.size() - mostRuns + 1));
  }

  std::vector<CaseRun> runs;
  for (SpilledRun& spilled : spilled_) runs.push_back(std::move(spilled.run));
  if (!mergesNow) {
    std::vector<std::uint32_t> order = spilled_.empty() ? orderNotingRepeats() : orderOfRows(rows_, keys_);
    rows_.settle(order.empty() ? 0 : bytesOfOrderedRow);
    runs.emplace_back(std::move(rows_), std::move(order));
  }
  if (runs.size() == 1) return std::make_shared<const KeptCases>(caseSlots, std::move(runs));
  return std::make_shared<const KeptCases>(caseSlots, std::move(runs), std::move(keys_));
}

std::vector<std::uint32_t> CaseSorter::orderNotingRepeats() {
  repeated_.emplace();
  return orderOfRows(rows_, keys_, [this](std::size_t place, auto rows) { noteRepeated(place, rows); });
}

void CaseSorter::noteRepeated(std::size_t place, std::span<const std::uint32_t> rows) {
  const OBS* const first = rows_.at(rows.front());
  if (missing_.isMissing(first)) return;
  ++repeated_->keys;
  repeated_->cases += static_cast<std::int64_t>(rows.size());
  if (repeated_->keys > 1 && place > placeOfLowest_) return;
  placeOfLowest_ = place;
  repeated_->lowest = keyValues(keys_, first);
  repeated_->casesOfLowest = static_cast<std::int64_t>(rows.size());
  repeated_->rowsOfLowest.clear();
  for (const std::uint32_t row : rows.first(std::min(rows.size(), RepeatedKeys::mostRows))) {
    repeated_->rowsOfLowest.push_back(std::int64_t{row} + 1);
  }
}

void CaseSorter::spillRows() {
  const std::vector<std::uint32_t> order = orderOfRows(rows_, keys_);
  RunWriter writer(rows_.caseSlots());
  if (order.empty()) {
    for (const CaseBlock& block : rows_.blocks()) writer.add(block.begin(), block.cases(), rows_.caseSlots());
  } else {
    for (std::size_t next = 0; next < order.size(); ++next) {
      if (next + casesFetchedAhead < order.size()) rows_.fetch(order[next + casesFetchedAhead]);
      writer.add(rows_.at(order[next]), 1, rows_.caseSlots());
    }
  }
  rows_.clear();
  spilled_.push_back({writer.finish(), 0});

  // Runs of as many cases each are merged as soon as there are enough, so that few are left however many there were.
  const std::size_t atOnce = runsMergedAtOnce(rows_.caseSlots());
  const auto isLikeLast = [this](const SpilledRun& one) { return one.merges == spilled_.back().merges; };
  while (spilled_.size() >= atOnce &&
         std::all_of(spilled_.end() - static_cast<std::ptrdiff_t>(atOnce), spilled_.end(), isLikeLast)) {
    mergeLast(atOnce);
  }
}

void CaseSorter::mergeLast(std::size_t count) {
  std::vector<CaseRun> runs;
  int merges = 0;
  for (auto spilled = spilled_.end() - static_cast<std::ptrdiff_t>(count); spilled != spilled_.end(); ++spilled) {
    merges = std::max(merges, spilled->merges + 1);
    runs.push_back(std::move(spilled->run));
  }
  spilled_.erase(spilled_.end() - static_cast<std::ptrdiff_t>(count), spilled_.end());
  RunWriter writer(rows_.caseSlots());
  RunMerge merge(runs, keys_);
  while (const OBS* const oneCase = merge.next()) writer.add(oneCase, 1, rows_.caseSlots());
  spilled_.push_back({writer.finish(), merges});
}

}  // namespace workbench::data
