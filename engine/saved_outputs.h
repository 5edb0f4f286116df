// SavedOutputs: the destinations of the matched and of the mismatched cases, and the one buffer that feeds both.
//
// Invariant: both destinations have the same variables in the same order, so one position serves both.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engine/dataset_comparer.h"

namespace compdatas {

class SavedOutputs {
 public:
  // Opens what the output specs name, the matched cases first; a spec that is not valid names nothing.
  // Throws ErrorText. Requires: the comparer outlives this object.
  explicit SavedOutputs(DatasetComparer& comparer);
  SavedOutputs(const SavedOutputs&) = delete;
  SavedOutputs& operator=(const SavedOutputs&) = delete;
  ~SavedOutputs();

  bool any() const { return matched_ != nullptr || mismatched_ != nullptr; }

  // Makes the variables of every compared pair in each destination, and commits their dictionaries.
  void makeDictionaries();
  // Once, before the walk.
  void allocateBuffer();

  // Takes the active values of the compared pairs for the case to be written. Requires: a case is current, always of
  // the same iterator.
  void keepCase(const VRIX_InputCaseIterator& active);
  void writeMatched() {
    if (matchedSource_ != nullptr) matchedSource_->WriteCase(buffer_.data());
  }
  void writeMismatched() {
    if (mismatchedSource_ != nullptr) mismatchedSource_->WriteCase(buffer_.data());
  }

  // Says where the cases of each file went.
  void addNotes() const;
  void close();
  void freeBuffer();

 private:
  // Values that lie side by side in the active case and in a saved one, from that of the variable on.
  struct Piece {
    std::int32_t activeIndex;
    std::uint32_t outPosition;
    std::uint32_t slots;
  };

  void findPieces(const VRIX_InputCaseIterator& active);

  DatasetComparer& comparer_;
  VRIX_DataSource* matchedSource_ = nullptr;  // of the two below; null when there is no such output
  VRIX_DataSource* mismatchedSource_ = nullptr;
  std::unique_ptr<UserOutputCaseFile> matched_;
  std::unique_ptr<UserOutputCaseFile> mismatched_;
  std::vector<Piece> pieces_;
  std::vector<OBS> buffer_;
};

}  // namespace compdatas
