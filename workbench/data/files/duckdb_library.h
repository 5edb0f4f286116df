// DuckDbLibrary: the functions of DuckDB's C interface that the workbench calls, in a table.
//
// The library is loaded when it is first needed, so that commands without data start without it. It is looked for
// beside the executable (in ../lib, then in the same folder), then by its name as the system finds libraries. It stays
// loaded.
#pragma once

#include <duckdb.h>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

#define WORKBENCH_DUCKDB_FUNCTIONS(ROW)        \
  ROW(duckdb_bind_add_result_column)           \
  ROW(duckdb_bind_get_parameter)               \
  ROW(duckdb_bind_set_bind_data)               \
  ROW(duckdb_column_count)                     \
  ROW(duckdb_connect)                          \
  ROW(duckdb_create_config)                    \
  ROW(duckdb_create_data_chunk)                \
  ROW(duckdb_create_logical_type)              \
  ROW(duckdb_create_table_function)            \
  ROW(duckdb_data_chunk_get_size)              \
  ROW(duckdb_data_chunk_get_vector)            \
  ROW(duckdb_data_chunk_reset)                 \
  ROW(duckdb_data_chunk_set_size)              \
  ROW(duckdb_destroy_config)                   \
  ROW(duckdb_destroy_data_chunk)               \
  ROW(duckdb_destroy_logical_type)             \
  ROW(duckdb_destroy_prepare)                  \
  ROW(duckdb_destroy_result)                   \
  ROW(duckdb_destroy_table_function)           \
  ROW(duckdb_destroy_value)                    \
  ROW(duckdb_disconnect)                       \
  ROW(duckdb_execute_prepared_streaming)       \
  ROW(duckdb_fetch_chunk)                      \
  ROW(duckdb_free)                             \
  ROW(duckdb_function_get_bind_data)           \
  ROW(duckdb_function_set_error)               \
  ROW(duckdb_get_uint64)                       \
  ROW(duckdb_init_set_max_threads)             \
  ROW(duckdb_library_version)                  \
  ROW(duckdb_open_ext)                         \
  ROW(duckdb_prepare)                          \
  ROW(duckdb_prepare_error)                    \
  ROW(duckdb_query)                            \
  ROW(duckdb_register_table_function)          \
  ROW(duckdb_result_error)                     \
  ROW(duckdb_rows_changed)                     \
  ROW(duckdb_set_config)                       \
  ROW(duckdb_table_function_add_parameter)     \
  ROW(duckdb_table_function_set_bind)          \
  ROW(duckdb_table_function_set_function)      \
  ROW(duckdb_table_function_set_init)          \
  ROW(duckdb_table_function_set_name)          \
  ROW(duckdb_vector_assign_string_element_len) \
  ROW(duckdb_vector_ensure_validity_writable)  \
  ROW(duckdb_vector_get_data)                  \
  ROW(duckdb_vector_get_validity)              \
  ROW(duckdb_vector_reference_vector)          \
  ROW(duckdb_vector_size)

struct DuckDbLibrary {
#define WORKBENCH_DUCKDB_MEMBER(function) decltype(&::function) function = nullptr;
  WORKBENCH_DUCKDB_FUNCTIONS(WORKBENCH_DUCKDB_MEMBER)
#undef WORKBENCH_DUCKDB_MEMBER
};

// The library, loaded at the first call. May be called on any thread.
Outcome<const DuckDbLibrary*> duckDbLibrary();

}  // namespace workbench::data
