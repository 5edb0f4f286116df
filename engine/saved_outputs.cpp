#include "engine/saved_outputs.h"

#include <algorithm>

#include "host/messages.h"

namespace compdatas {

namespace {

std::unique_ptr<UserOutputCaseFile> open(const UserCaseFileSpec& spec, VRIX_DataSource*& source) {
  if (!spec.IsValid()) return nullptr;
  auto output = std::make_unique<UserOutputCaseFile>(spec);
  source = &output->GetDataSource();
  return output;
}

// A destination that is an open dataset gets no note.
void noteSavedFile(const char* what, const VRIX_DataSource* source, const UserCaseFileSpec& spec) {
  if (source == nullptr || !spec.IsValid() || !spec.IsFile()) return;
  AddNotesWithGroup(BpNoteKind::savedFile, BpString(what, true), BpString("", false),
                    BpString(spec.DocumentationString(), false));
}

}  // namespace

SavedOutputs::SavedOutputs(DatasetComparer& comparer)
    : comparer_(comparer),
      matched_(open(comparer.matchedSpec, matchedSource_)),
      mismatched_(open(comparer.mismatchedSpec, mismatchedSource_)) {}

SavedOutputs::~SavedOutputs() = default;

void SavedOutputs::makeDictionaries() {
  if (!any()) return;
  for (VariablePair& pair : comparer_.variablePairs) {
    if (!pair.compared && !pair.isCaseId) continue;
    pair.outSlots = pair.width != 0 ? static_cast<std::uint32_t>(pair.width + 7) / 8U : 1U;
    const VRIX_Variable& active = comparer_.activeSource.GetVariable(pair.activeIndex);
    for (VRIX_DataSource* output : {matchedSource_, mismatchedSource_}) {
      if (output == nullptr) continue;
      std::int32_t index = -1;
      output->MakeVariable(active, &index);
      pair.outPosition = output->ObsIndex(index);
    }
  }
  const DatasourceAttributes& attributes = comparer_.activeSource.GetAttributes();
  for (VRIX_DataSource* output : {matchedSource_, mismatchedSource_}) {
    if (output != nullptr) output->SetAttributes(attributes);
  }
  for (VRIX_DataSource* output : {matchedSource_, mismatchedSource_}) {
    if (output != nullptr) output->CommitDictionary();
  }
}

void SavedOutputs::allocateBuffer() {
  std::size_t slots = 1;
  if (matchedSource_ != nullptr) {
    slots = matchedSource_->GetCaseSize();
  } else if (mismatchedSource_ != nullptr) {
    slots = mismatchedSource_->GetCaseSize();
  }
  // Where no variable is saved a case has no slot, but still a place in memory.
  buffer_.resize(std::max<std::size_t>(slots, 1));
}

void SavedOutputs::keepCase(const VRIX_InputCaseIterator& active) {
  if (pieces_.empty()) findPieces(active);
  for (const Piece& piece : pieces_) {
    std::copy_n(active.GetObsPointer(piece.activeIndex), piece.slots, buffer_.begin() + piece.outPosition);
  }
}

// How variables lie to each other is the same in all cases, so one tells it.
void SavedOutputs::findPieces(const VRIX_InputCaseIterator& active) {
  const OBS* activeEnd = nullptr;  // right behind the last value
  for (const VariablePair& pair : comparer_.variablePairs) {
    if (!pair.compared) continue;
    const OBS* value = active.GetObsPointer(pair.activeIndex);
    const bool adjoins = value == activeEnd && pair.outPosition == pieces_.back().outPosition + pieces_.back().slots;
    if (!adjoins) pieces_.push_back({pair.activeIndex, pair.outPosition, 0});
    pieces_.back().slots += pair.outSlots;
    activeEnd = value + pair.outSlots;
  }
}

void SavedOutputs::addNotes() const {
  noteSavedFile("CD_Matched", matchedSource_, comparer_.matchedSpec);
  noteSavedFile("CD_Mismatched", mismatchedSource_, comparer_.mismatchedSpec);
}

void SavedOutputs::close() {
  if (matchedSource_ != nullptr) matchedSource_->Close();
  if (mismatchedSource_ != nullptr) mismatchedSource_->Close();
}

void SavedOutputs::freeBuffer() {
  buffer_.clear();
  buffer_.shrink_to_fit();
}

}  // namespace compdatas
