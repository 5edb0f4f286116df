// StoredTable: a stored table with all that one look at every value of it has told, or what is known without. Does not
// change once it is shared.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/data/columnar/stored_column.h"
#include "workbench/data/columnar/stored_source.h"
#include "workbench/data/files/column_evidence.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct StoredTable {
  std::shared_ptr<const StoredSource> source;
  std::string identity;  // of the source when it was looked at
  std::vector<StoredColumn> columns;
  std::vector<ColumnEvidence> evidence;  // one per column
  std::vector<bool> rises;               // as StoredEvidence says
  std::int64_t cases = 0;
};

// The table without a look at its values: the evidence says of what kind the columns are said to be, and no more.
Outcome<std::shared_ptr<const StoredTable>> outlineOf(std::shared_ptr<const StoredSource> source);

// Looks at all values of a table that is known in outline. One that this process has looked at before is remembered.
Outcome<std::shared_ptr<const StoredTable>> lookAt(const StoredTable& outline);

// How many bytes the longest value of each of these columns takes as a text.
Outcome<std::vector<std::size_t>> longestTexts(const StoredTable& table, const std::vector<std::size_t>& columns);

// A problem of DuckDB's with the table, as one of the place where it is stored.
Problem storedProblem(Problem problem, const StoredSource& source);

}  // namespace workbench::data
