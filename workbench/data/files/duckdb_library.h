// DuckDbLibrary: the functions of DuckDB's C interface that the workbench calls, in a table.
//
// The library is loaded when it is first needed, so that commands without data start without it. It is looked for
// beside the executable (in ../lib, then in the same folder), then by its name as the system finds libraries. It stays
// loaded.
#pragma once

#include <duckdb.h>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

#define WORKBENCH_DUCKDB_FUNCTIONS(ROW)  \
  ROW(duckdb_column_count)               \
  ROW(duckdb_connect)                    \
  ROW(duckdb_create_config)              \
  ROW(duckdb_data_chunk_get_size)        \
  ROW(duckdb_data_chunk_get_vector)      \
  ROW(duckdb_destroy_config)             \
  ROW(duckdb_destroy_data_chunk)         \
  ROW(duckdb_destroy_prepare)            \
  ROW(duckdb_destroy_result)             \
  ROW(duckdb_disconnect)                 \
  ROW(duckdb_execute_prepared_streaming) \
  ROW(duckdb_fetch_chunk)                \
  ROW(duckdb_free)                       \
  ROW(duckdb_library_version)            \
  ROW(duckdb_open_ext)                   \
  ROW(duckdb_prepare)                    \
  ROW(duckdb_prepare_error)              \
  ROW(duckdb_result_error)               \
  ROW(duckdb_set_config)                 \
  ROW(duckdb_vector_get_data)            \
  ROW(duckdb_vector_get_validity)

struct DuckDbLibrary {
#define WORKBENCH_DUCKDB_MEMBER(function) decltype(&::function) function = nullptr;
  WORKBENCH_DUCKDB_FUNCTIONS(WORKBENCH_DUCKDB_MEMBER)
#undef WORKBENCH_DUCKDB_MEMBER
};

// The library, loaded at the first call. May be called on any thread.
Outcome<const DuckDbLibrary*> duckDbLibrary();

}  // namespace workbench::data
