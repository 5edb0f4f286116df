#include "workbench/data/working/dataset_iterator.h"

#include <algorithm>
#include <new>
#include <utility>

#include "workbench/data/working/case_filter.h"
#include "workbench/data/working/kept_cases.h"
#include "workbench/data/working/refusal.h"
#include "workbench/runtime/journal.h"

namespace workbench::data {

DatasetIterator::DatasetIterator(std::shared_ptr<Dataset> dataset, const IteratorUse& use)
    : dataset_(std::move(dataset)), slots_(dataset_->layout().slotOfVariable), stepsSingly_(journal().isOn()) {
  const Dictionary& dictionary = dataset_->dictionary();
  if (use.useFilter && dictionary.filter >= 0) {
    const Variable& variable = dictionary.at(dictionary.filter);
    if (!variable.isNumeric()) {
      refuse("The string variable ^1 cannot be a filter; switch the filter off or name a numeric variable.",
             {variable.name});
    }
    filter_ = Filter{slots_[static_cast<std::size_t>(dictionary.filter)], variable.missing};
  }
  for (std::int32_t added = std::max(use.firstWritable, dataset_->baseVariables()); added < dictionary.size();
       ++added) {
    writables_.push_back({added, slots_[static_cast<std::size_t>(added)], {}});
  }
  slotOfVariable_ = slots_.data();
  // Dropping the cases that a filter leaves out changes the block, as writing does.
  pass_.emplace(*dataset_, filter_ || !writables_.empty() ? CaseUse::mayBeWritten : CaseUse::onlyRead);
}

DatasetIterator::~DatasetIterator() {
  takeWritten();
  journal().destroyed(static_cast<VRIX_InputCaseIterator*>(this));
}

void DatasetIterator::letGo() noexcept {
  takeWritten();
  pass_.reset();
  dataset_.reset();
  case_ = next_ = end_ = first_ = behind_ = nullptr;
}

bool DatasetIterator::NextBlock() {
  if (!stepsSingly_) return step();
  const auto line = [this](const char* result) {
    if (!journal().isOn()) return;
    journal().line(journal().nameOf(static_cast<VRIX_InputCaseIterator*>(this), "VRIX_InputCaseIterator") +
                   ".NextCase() -> " + result);
  };
  try {
    const bool stepped = step();
    line(stepped ? "true" : "false");
    return stepped;
  } catch (const ErrorText&) {
    line("throws");
    throw;
  }
}

bool DatasetIterator::step() {
  if (next_ == behind_ && !readSpan()) return false;
  case_ = next_;
  next_ += caseSlots_;
  end_ = stepsSingly_ ? next_ : behind_;
  ++position_;
  return true;
}

// Leaves the current block and publishes the next one that holds a case to be delivered.
bool DatasetIterator::readSpan() {
  if (!pass_) refuse("Cases can no longer be read; the command that asked for them has ended.");
  takeWritten();
  CaseSpan span;
  do {
    span = pass_->next();
    caseSlots_ = span.caseSlots;
    first_ = next_ = end_ = span.cases;
    behind_ = span.cases + span.count * span.caseSlots;
    if (filter_) selectCases();
  } while (first_ == behind_ && span.count != 0);
  makeRoomForWritten(span.count);
  return span.count != 0;
}

// Taking over what is written may happen in a destructor, so the space for it is taken before.
void DatasetIterator::makeRoomForWritten(std::size_t rows) {
  try {
    for (Writable& writable : writables_) {
      writable.room = {};
      writable.room = dataset_->column(writable.variable).makeRoom(pass_->firstRow(), rows);
    }
  } catch (const ErrorText&) {
    first_ = next_ = end_ = behind_ = nullptr;
    throw;
  } catch (const std::bad_alloc&) {
    first_ = next_ = end_ = behind_ = nullptr;
    refuse("There is not enough memory for the variables that are added to ^1.", {nameForPeople(*dataset_)});
  }
}

// Moves the selected cases of the block together and keeps their rows.
void DatasetIterator::selectCases() {
  rows_.clear();
  const auto count = static_cast<std::uint32_t>(static_cast<std::size_t>(behind_ - first_) / caseSlots_);
  rows_.reserve(count);
  OBS* kept = first_;
  for (std::uint32_t row = 0; row < count; ++row) {
    const OBS* const candidate = first_ + row * caseSlots_;
    if (!filterSelects(candidate[filter_->slot].number, filter_->missing)) continue;
    if (kept != candidate) std::copy_n(candidate, caseSlots_, kept);
    kept += caseSlots_;
    rows_.push_back(row);
  }
  behind_ = kept;
}

void DatasetIterator::takeWritten() noexcept {
  if (first_ == nullptr || writables_.empty()) return;
  const auto delivered = static_cast<std::size_t>(next_ - first_) / caseSlots_;
  for (Writable& writable : writables_) {
    const OBS* value = first_ + writable.slot;
    for (std::size_t index = 0; index < delivered; ++index, value += caseSlots_) {
      writable.room.take(pass_->firstRow() + static_cast<std::int64_t>(filter_ ? rows_[index] : index), value);
    }
  }
  first_ = next_ = end_ = behind_ = nullptr;
}

}  // namespace workbench::data
