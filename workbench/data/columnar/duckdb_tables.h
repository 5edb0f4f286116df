// The tables of a DuckDB database that is attached: which there are, and which one a user's name means.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct DuckDbTableName {
  std::string schema = "main";
  std::string name;

  // As users name it.
  std::string shown() const { return schema == "main" ? name : schema + "." + name; }
};

struct DuckDbTable : DuckDbTableName {
  std::string comment;
};

// Tables and views, in the order of their names. The database by its name in SQL.
Outcome<std::vector<DuckDbTable>> tablesOf(const std::string& database);

// The comments on its columns, by their names; those without one are left out.
Outcome<std::unordered_map<std::string, std::string>> commentsOnColumns(const std::string& database,
                                                                        const DuckDbTableName& table);

// Where a table is written that is named so: the table of that name; else a new one, in the schema that stands before a
// point where there is such a schema.
Outcome<DuckDbTableName> tableToWrite(const std::string& database, const std::string& wanted);

}  // namespace workbench::data
