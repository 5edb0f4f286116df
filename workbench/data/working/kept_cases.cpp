#include "workbench/data/working/kept_cases.h"

#include <algorithm>
#include <utility>

#include "workbench/data/working/run_merge.h"

namespace workbench::data {

KeptCases::KeptCases(std::size_t caseSlots, std::vector<CaseRun> runs) : KeptCases(caseSlots, std::move(runs), {}) {}

KeptCases::KeptCases(std::size_t caseSlots, std::vector<CaseRun> runs, std::vector<SortKey> keys)
    : caseSlots_(caseSlots), runs_(std::move(runs)), keys_(std::move(keys)) {
  for (const CaseRun& run : runs_) cases_ += static_cast<std::int64_t>(run.cases());
}

const std::vector<CaseBlock>* KeptCases::blocks() const { return runs_.size() == 1 ? runs_.front().blocks() : nullptr; }

KeptCaseReader::KeptCaseReader(std::shared_ptr<const KeptCases> kept) : kept_(std::move(kept)) {
  if (!kept_->keys_.empty()) merge_ = std::make_unique<RunMerge>(kept_->runs_, kept_->keys_);
}

KeptCaseReader::~KeptCaseReader() = default;

void KeptCaseReader::fill(CaseBlock& block) {
  const std::size_t slots = std::min(kept_->caseSlots(), block.caseSlots());
  std::size_t filled = 0;
  for (; filled < block.capacity(); ++filled) {
    const OBS* const oneCase = next();
    if (oneCase == nullptr) break;
    std::copy_n(oneCase, slots, block.at(filled));
  }
  block.setCases(filled);
}

// Null when there is none any more.
const OBS* KeptCaseReader::next() {
  if (merge_) return merge_->next();
  if (cursor_ && cursor_->current() != nullptr) cursor_->advance();
  while ((!cursor_ || cursor_->current() == nullptr) && nextRun_ < kept_->runs_.size()) {
    cursor_.emplace(kept_->runs_[nextRun_++], blockBytes);
  }
  return cursor_ ? cursor_->current() : nullptr;
}

CaseKeeper::CaseKeeper(std::size_t caseSlots) : rows_(caseSlots) {}

void CaseKeeper::add(const OBS* cases, std::size_t count, std::size_t stride) {
  if (!spilled_) {
    const std::size_t added = rows_.add(cases, count, stride);
    cases += added * stride;
    count -= added;
    if (count == 0) return;
    spilled_.emplace(rows_.caseSlots());
  }
  spilled_->add(cases, count, stride);
}

std::shared_ptr<const KeptCases> CaseKeeper::finish() {
  const std::size_t caseSlots = rows_.caseSlots();
  rows_.settle(0);
  std::vector<CaseRun> runs;
  runs.emplace_back(std::move(rows_));
  if (spilled_) runs.push_back(spilled_->finish());
  return std::make_shared<const KeptCases>(caseSlots, std::move(runs));
}

}  // namespace workbench::data
