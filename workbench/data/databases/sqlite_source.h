// A table or view of a SQLite database file. Values have types of their own there, whatever their column declares.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/databases/row_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Where the dictionaries of a database's tables are kept in it: one row per table that has one.
inline constexpr const char* sqliteResourceTable = "statistics:resource";

// The path as written, with "#table" behind it. Without a table the file must hold just one.
Outcome<std::shared_ptr<const RowSource>> openSqliteTable(const std::string& path);

}  // namespace workbench::data
