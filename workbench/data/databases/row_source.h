// RowSource: a table of a database that a client library of its own reads, row by row, as one state of it.
//
// All cursors of a source see the same rows, whatever other programs write meanwhile. It keeps its connection as long
// as it is there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/files/cell_batch.h"
#include "workbench/data/files/described_columns.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// One pass over the rows. Used by one thread at a time.
class RowCursor {
 public:
  virtual ~RowCursor() = default;
  // Puts the next rows into the batch, a cell per column that was asked for, in that order, each in the line that is
  // its row's number; none at the end. A text that is no number, date or time whatever it looks like is marked as text.
  virtual Outcome<Done> next(CellBatch& batch) = 0;
  // What a user should know of the values that were met so far. Sentences.
  virtual std::vector<std::string> warnings() const { return {}; }
};

class RowSource {
 public:
  virtual ~RowSource() = default;

  virtual const std::string& path() const = 0;         // as written
  virtual std::vector<std::string> files() const = 0;  // that the table is stored in; none: it is elsewhere
  // What tells it from every other table and every other state of itself.
  virtual const std::string& identity() const = 0;
  virtual const std::vector<KnownColumn>& columns() const = 0;
  // The text of the resource that describes the table, where one is stored with it.
  virtual Outcome<std::optional<std::string>> resource() const = 0;
  virtual Outcome<std::int64_t> countRows() const = 0;
  // Over these columns, one at least. Several cursors may be open at once. The source outlives them.
  virtual Outcome<std::unique_ptr<RowCursor>> open(const std::vector<std::size_t>& columns) const = 0;
};

}  // namespace workbench::data
