// StoredLook: one look at every value of a stored table, and what it tells.
#pragma once

#include <cstdint>
#include <vector>

#include "workbench/data/columnar/stored_column.h"
#include "workbench/data/columnar/stored_source.h"
#include "workbench/data/files/column_evidence.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct StoredLook {
  std::vector<ColumnEvidence> evidence;  // one per column
  std::vector<bool> rises;               // as StoredEvidence says
  std::int64_t cases = 0;
};

// `columns` are all of the table's. Columns that can be read on their own are looked at by several threads.
Outcome<StoredLook> lookAtAllValues(const StoredSource& source, const std::vector<StoredColumn>& columns);

}  // namespace workbench::data
