// The one database of DuckDB, in the memory of the process, in which all statements run.
//
// It holds no data: nothing is kept of what passes through, nothing is spilled to disk, and no extension is loaded. It
// has no thread of its own: a statement runs on the thread that calls for it, and rows keep their order.
#pragma once

#include <string_view>

#include "workbench/data/files/duckdb_library.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Opened at the first call; stays open. May be called on any thread.
Outcome<duckdb_database> duckDbDatabase();

// What DuckDB says of a failure, its first line.
Problem duckDbProblem(std::string_view what);

}  // namespace workbench::data
