// DatasetIterator: steps through a dataset's cases and takes over what the procedure writes into added variables.
//
// It knows the variables that exist when it is made; one that is added later is in no case of it.
//
// Invariant: of the block that is published, the rows of the delivered cases are known, filtered or not, so that what
// is written reaches its rows. What the procedure wrote is taken when the block is left and when the iterator is
// destroyed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "host/data.h"
#include "workbench/data/working/dataset.h"
#include "workbench/data/working/handed_out.h"

namespace workbench::data {

struct IteratorUse {
  bool useFilter = false;
  // Added variables from this one on may be written; none by default.
  std::int32_t firstWritable = std::numeric_limits<std::int32_t>::max();
};

class DatasetIterator final : public VRIX_InputCaseIterator, public HandedOut {
 public:
  // Throws ErrorText when the cases cannot be read.
  DatasetIterator(std::shared_ptr<Dataset> dataset, const IteratorUse& use);
  ~DatasetIterator() override;

  void letGo() noexcept override;

 protected:
  bool NextBlock() override;

 private:
  struct Filter {
    std::size_t slot;
    MissingValues missing;
  };
  struct Writable {
    std::int32_t variable;
    std::size_t slot;
    AddedColumn::Room room;  // for the rows of the current block
  };

  bool step();
  bool readSpan();
  void makeRoomForWritten(std::size_t rows);
  void selectCases();
  void takeWritten() noexcept;

  std::shared_ptr<Dataset> dataset_;
  std::vector<std::uint32_t> slots_;
  std::optional<Filter> filter_;
  std::vector<Writable> writables_;
  const bool stepsSingly_;  // the journal is on: every step is to be seen
  std::optional<DatasetPass> pass_;

  OBS* first_ = nullptr;             // of the cases that are delivered of the current block
  OBS* behind_ = nullptr;            // behind the last of them
  std::vector<std::uint32_t> rows_;  // filtered: per delivered case its row within the block
};

}  // namespace workbench::data
