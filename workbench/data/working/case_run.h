// CaseRun: cases in an order, in memory or in a spill file. RunWriter makes one in a spill file, RunCursor steps
// through one.
//
// A run does not change once it is made; several threads may step through it, each with a cursor of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "workbench/data/case_block.h"
#include "workbench/data/working/case_rows.h"
#include "workbench/data/working/spill_file.h"

namespace workbench::data {

class CaseRun {
 public:
  // Cases in memory: as they lie, or in the order of these rows (every row once).
  explicit CaseRun(CaseRows rows, std::vector<std::uint32_t> order = {});
  // Cases that lie in the file from its beginning on.
  CaseRun(SpillFile file, std::size_t caseSlots, std::size_t cases);

  std::size_t caseSlots() const { return caseSlots_; }
  std::size_t cases() const { return cases_; }
  // The blocks in which the cases lie one after another; null when they do not, or not in memory.
  const std::vector<CaseBlock>* blocks() const;

 private:
  friend class RunCursor;

  std::size_t caseSlots_;
  std::size_t cases_;
  std::optional<CaseRows> rows_;  // either these
  std::vector<std::uint32_t> order_;
  std::optional<SpillFile> file_;  // or this
};

class RunWriter {
 public:
  // Throws ErrorText, as add() and finish() do.
  explicit RunWriter(std::size_t caseSlots);

  // Appends cases that lie `stride` slots apart.
  void add(const OBS* cases, std::size_t count, std::size_t stride);
  // The run. Nothing may be added afterwards.
  CaseRun finish();

 private:
  void flush();

  SpillFile file_;
  CaseBlock block_;
  std::size_t written_ = 0;  // cases in the file
};

class RunCursor {
 public:
  // Of a run in a file so many bytes are read at once, one case at least. The run outlives the cursor. Throws
  // ErrorText.
  RunCursor(const CaseRun& run, std::size_t bytesAtOnce);

  // The case that the cursor stands on, valid until it steps on; null behind the last one.
  const OBS* current() const { return current_; }
  // Requires: it stands on a case. Throws ErrorText when the file cannot be read.
  void advance();

 private:
  void stepInOrder();
  void readOn();

  const CaseRun* run_;
  const OBS* current_ = nullptr;
  const OBS* end_ = nullptr;  // of the piece in which cases lie one after another
  std::size_t next_ = 0;      // behind the current case, or behind that piece: the number of a case
  std::optional<CaseBlock> piece_;
};

}  // namespace workbench::data
