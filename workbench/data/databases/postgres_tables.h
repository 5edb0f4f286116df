// The tables of a PostgreSQL database, as its catalogue has them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/data/databases/postgres_columns.h"
#include "workbench/data/databases/postgres_database.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

struct PostgresTable {
  std::string id;  // of the catalogue
  std::string schema;
  std::string name;
  std::string comment;
  bool isStored = false;     // not a view, nor on another server
  bool isPartition = false;  // of another table
  bool hasChildren = false;  // tables that inherit from it, whose rows are its rows, too
  std::string shown;         // what a user writes: without the schema, where that is not needed
};

// The one that is wanted ("table", "schema.table"), or the only one where none is.
Outcome<PostgresTable> postgresTable(const PostgresDatabase& database, const std::string& wanted);

Outcome<std::vector<PostgresColumn>> columnsOf(const PostgresDatabase& database, const PostgresTable& table);
// The columns of its primary key, in their order; empty: it has none, or one that does not hold for all of its rows.
Outcome<std::vector<PostgresColumn>> keyOf(const PostgresDatabase& database, const PostgresTable& table);

// The table's name as SQL has it.
std::string sqlNameOf(const PostgresTable& table);

}  // namespace workbench::data
