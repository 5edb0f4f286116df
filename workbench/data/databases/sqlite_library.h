// SqliteLibrary: the functions of SQLite's C interface that the workbench calls, in a table. The library is loaded when
// it is first needed, by its name as the system finds libraries, and stays loaded.
#pragma once

#include <sqlite3.h>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

#define WORKBENCH_SQLITE_FUNCTIONS(ROW) \
  ROW(sqlite3_backup_finish)            \
  ROW(sqlite3_backup_init)              \
  ROW(sqlite3_backup_step)              \
  ROW(sqlite3_bind_double)              \
  ROW(sqlite3_bind_null)                \
  ROW(sqlite3_bind_text64)              \
  ROW(sqlite3_busy_timeout)             \
  ROW(sqlite3_close_v2)                 \
  ROW(sqlite3_column_blob)              \
  ROW(sqlite3_column_bytes)             \
  ROW(sqlite3_column_count)             \
  ROW(sqlite3_column_decltype)          \
  ROW(sqlite3_column_double)            \
  ROW(sqlite3_column_int64)             \
  ROW(sqlite3_column_name)              \
  ROW(sqlite3_column_text)              \
  ROW(sqlite3_column_type)              \
  ROW(sqlite3_errcode)                  \
  ROW(sqlite3_errmsg)                   \
  ROW(sqlite3_errstr)                   \
  ROW(sqlite3_finalize)                 \
  ROW(sqlite3_open_v2)                  \
  ROW(sqlite3_prepare_v3)               \
  ROW(sqlite3_reset)                    \
  ROW(sqlite3_step)

struct SqliteLibrary {
#define WORKBENCH_SQLITE_MEMBER(function) decltype(&::function) function = nullptr;
  WORKBENCH_SQLITE_FUNCTIONS(WORKBENCH_SQLITE_MEMBER)
#undef WORKBENCH_SQLITE_MEMBER
};

// The library, loaded at the first call. May be called on any thread.
Outcome<const SqliteLibrary*> sqliteLibrary();

}  // namespace workbench::data
