// StoredRows: the rows of a stored table, some at a time, each column as a vector of its carrier.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "workbench/data/columnar/stored_column.h"
#include "workbench/data/columnar/vector_cells.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// A column that is wanted of a table.
struct WantedColumn {
  std::size_t index = 0;  // in the table
  const StoredColumn* column = nullptr;
  bool asText = false;  // as the text of its value, whatever its carrier
};

struct WantedRows {
  std::size_t tableColumns = 0;
  std::vector<WantedColumn> columns;  // of these
  bool isFirstLook = false;           // they will be read once more
};

class StoredRows {
 public:
  virtual ~StoredRows() = default;

  // Makes the next rows the current ones; false at the end. What the former ones held is gone.
  virtual Outcome<bool> next() = 0;
  virtual std::size_t rows() const = 0;
  // Of the wanted columns, in their order.
  virtual VectorCells values(std::size_t wanted) const = 0;
  // Whether each column can be asked for on its own, at the same time as others, at no more cost.
  virtual bool areColumnsApart() const { return false; }
};

// The rows as DuckDB hands them out. `relation` is the table in a FROM clause.
Outcome<std::unique_ptr<StoredRows>> queriedRows(const std::string& relation, const std::vector<WantedColumn>& wanted);

}  // namespace workbench::data
