// DatabaseTable: a table of a database with all that one look at every value of it has told, or what is known without.
// Does not change once it is shared.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/data/databases/row_source.h"
#include "workbench/data/files/column_evidence.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct DatabaseTable {
  std::shared_ptr<const RowSource> source;
  std::vector<ColumnEvidence> evidence;  // one per column
  std::int64_t cases = 0;
  std::vector<std::string> warnings;  // of the values
  bool isLookedAt = false;
};

using SharedDatabaseTable = std::shared_ptr<const DatabaseTable>;

// The table without a look at its values: the evidence says of what kind the columns are said to be, and no more.
SharedDatabaseTable outlineOf(std::shared_ptr<const RowSource> source);

// Looks at all values. A table that this process has looked at before is remembered, with its source.
Outcome<SharedDatabaseTable> lookAt(const SharedDatabaseTable& outline);

}  // namespace workbench::data
