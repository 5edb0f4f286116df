#include "workbench/data/working/case_run.h"

#include <algorithm>
#include <utility>

namespace workbench::data {

CaseRun::CaseRun(CaseRows rows, std::vector<std::uint32_t> order)
    : caseSlots_(rows.caseSlots()), cases_(rows.size()), rows_(std::move(rows)), order_(std::move(order)) {}

CaseRun::CaseRun(SpillFile file, std::size_t caseSlots, std::size_t cases)
    : caseSlots_(caseSlots), cases_(cases), file_(std::move(file)) {}

const std::vector<CaseBlock>* CaseRun::blocks() const { return rows_ && order_.empty() ? &rows_->blocks() : nullptr; }

RunWriter::RunWriter(std::size_t caseSlots) : block_(caseSlots) {}

void RunWriter::add(const OBS* cases, std::size_t count, std::size_t stride) {
  while (count != 0) {
    const std::size_t fitting = std::min(count, block_.capacity() - block_.cases());
    copyCases(cases, stride, block_.at(block_.cases()), block_.caseSlots(), fitting,
              std::min(stride, block_.caseSlots()));
    block_.setCases(block_.cases() + fitting);
    if (block_.cases() == block_.capacity()) flush();
    cases += fitting * stride;
    count -= fitting;
  }
}

CaseRun RunWriter::finish() {
  flush();
  return {std::move(file_), block_.caseSlots(), written_};
}

void RunWriter::flush() {
  const std::size_t caseBytes = block_.caseSlots() * sizeof(OBS);
  file_.write(written_ * caseBytes, block_.begin(), block_.cases() * caseBytes);
  written_ += block_.cases();
  block_.setCases(0);
}

RunCursor::RunCursor(const CaseRun& run, std::size_t bytesAtOnce) : run_(&run) {
  if (run.file_) piece_.emplace(run.caseSlots_, std::max<std::size_t>(bytesAtOnce / sizeof(OBS) / run.caseSlots_, 1));
  if (run.order_.empty()) {
    readOn();
  } else {
    stepInOrder();
  }
}

void RunCursor::advance() {
  if (!run_->order_.empty()) {
    stepInOrder();
  } else if ((current_ += run_->caseSlots_) == end_) {
    readOn();
  }
}

void RunCursor::stepInOrder() {
  const std::vector<std::uint32_t>& order = run_->order_;
  if (next_ + casesFetchedAhead < order.size()) run_->rows_->fetch(order[next_ + casesFetchedAhead]);
  current_ = next_ < order.size() ? run_->rows_->at(order[next_++]) : nullptr;
}

// Goes to the next piece: a block, or what the file holds next.
void RunCursor::readOn() {
  const std::size_t left = run_->cases_ - next_;
  if (left == 0) {
    current_ = nullptr;
    return;
  }
  std::size_t cases = 0;
  if (run_->file_) {
    cases = std::min(left, piece_->capacity());
    const std::size_t caseBytes = run_->caseSlots_ * sizeof(OBS);
    run_->file_->read(next_ * caseBytes, piece_->begin(), cases * caseBytes);
    current_ = piece_->begin();
  } else {
    current_ = run_->rows_->at(next_);
    cases = std::min(left, run_->rows_->casesPerBlock());
  }
  end_ = current_ + cases * run_->caseSlots_;
  next_ += cases;
}

}  // namespace workbench::data
