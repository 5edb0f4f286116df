// CaseReader and CaseWriter: the two narrow interfaces that every kind of data file implements.
//
// Everything else (prefetch on a thread of the host, filter, added variables, progress, cancellation) stands on top of
// them, once, for all kinds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/case_block.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

// Which variables whoever reads cares for. The slots of others are left as they are: nothing is decoded in vain.
class VariableSubset {
 public:
  VariableSubset() = default;  // all of them
  explicit VariableSubset(std::vector<std::int32_t> variables) : variables_(std::move(variables)) {}
  bool has(std::int32_t variable) const {
    return !variables_ || std::find(variables_->begin(), variables_->end(), variable) != variables_->end();
  }

 private:
  std::optional<std::vector<std::int32_t>> variables_;
};

// One pass over the cases of a dataset. Used by one thread at a time.
class CaseReader {
 public:
  virtual ~CaseReader() = default;

  // If known without reading.
  virtual std::optional<std::int64_t> caseCount() const = 0;
  // Fills the block with the next cases, as many as fit; none at the end. A case takes the first CaseLayout::caseSlots
  // slots of the block's; what stands behind them is left as it is. Throws ErrorText when the data cannot be read.
  virtual void fill(CaseBlock& block) = 0;
};

// Writes a dataset in one go. What is written stands in a private place until commit.
class CaseWriter {
 public:
  virtual ~CaseWriter() = default;  // abandons what was not committed, leaving nothing behind

  // What of the dataset the file cannot hold. Sentences.
  virtual std::vector<std::string> warnings() const { return {}; }
  // Cases that lie `caseSlots` slots apart. Throws ErrorText when they cannot be written.
  virtual void append(const OBS* cases, std::size_t count, std::size_t caseSlots) = 0;
  // Completes the output in its private place and syncs it. Throws ErrorText.
  virtual void complete() = 0;
  // Moves the completed output into place. Throws ErrorText. Requires: complete() was called.
  virtual void commit() = 0;
};

}  // namespace workbench::data
