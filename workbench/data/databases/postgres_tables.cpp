#include "workbench/data/databases/postgres_tables.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/data/files/sql_text.h"
#include "workbench/data/files/table_choice.h"

namespace workbench::data {
namespace {

constexpr const char* tablesQuery =
    "SELECT c.oid, n.nspname, c.relname, coalesce(pg_catalog.obj_description(c.oid, 'pg_class'), ''), c.relkind, "
    "c.relispartition, c.relhassubclass FROM pg_catalog.pg_class AS c JOIN pg_catalog.pg_namespace AS n ON n.oid = "
    "c.relnamespace WHERE c.relkind IN ('r', 'p', 'm', 'v', 'f') AND n.nspname !~ '^pg_' AND n.nspname <> "
    "'information_schema' ORDER BY n.nspname, c.relname";

// The type of a domain is that of which it is made, through all domains between.
constexpr const char* columnsQuery =
    "WITH RECURSIVE base (number, type) AS (SELECT attnum, atttypid FROM pg_catalog.pg_attribute WHERE attrelid = {0} "
    "UNION ALL SELECT b.number, t.typbasetype FROM base AS b JOIN pg_catalog.pg_type AS t ON t.oid = b.type WHERE "
    "t.typtype "
    "= 'd') SELECT a.attname, pg_catalog.format_type(a.atttypid, a.atttypmod), CASE WHEN t.typnamespace = "
    "'pg_catalog'::pg_catalog.regnamespace THEN t.typname ELSE '' END, t.typcategory, "
    "coalesce(pg_catalog.col_description(a.attrelid, a.attnum), '') FROM pg_catalog.pg_attribute AS a JOIN base AS b "
    "ON "
    "b.number = a.attnum JOIN pg_catalog.pg_type AS t ON t.oid = b.type AND t.typtype <> 'd' {1} WHERE a.attrelid = "
    "{0} "
    "AND a.attnum > 0 AND NOT a.attisdropped ORDER BY {2}";

constexpr const char* keyJoin =
    "JOIN (SELECT k.number, k.place FROM pg_catalog.pg_index AS i, pg_catalog.unnest(i.indkey::pg_catalog.int2[]) WITH "
    "ORDINALITY AS k (number, place) WHERE i.indrelid = {} AND i.indisprimary AND k.place <= i.indnkeyatts) AS key ON "
    "key.number = a.attnum";

bool isTrue(const std::string& cell) { return cell == "t"; }

// The first schema of the path that has a table of the name.
bool isFoundByName(const PostgresTable& table, const std::vector<PostgresTable>& tables,
                   const std::vector<std::string>& searchPath) {
  for (const std::string& schema : searchPath) {
    if (schema == table.schema) return true;
    const bool isHidden = std::any_of(tables.begin(), tables.end(), [&](const PostgresTable& other) {
      return other.schema == schema && other.name == table.name;
    });
    if (isHidden) return false;
  }
  return false;
}

std::string fullName(const PostgresTable& table) { return table.schema + "." + table.name; }

Outcome<std::vector<PostgresTable>> tablesOf(const PostgresDatabase& database) {
  const Outcome<PostgresRows> rows = database.rows(tablesQuery);
  if (!rows) return rows.problem();
  std::vector<PostgresTable> tables;
  for (const std::vector<std::string>& row : *rows) {
    const bool isStored = row[4] != "v" && row[4] != "f";
    tables.push_back({row[0], row[1], row[2], row[3], isStored, isTrue(row[5]), row[4] == "r" && isTrue(row[6]), ""});
  }
  for (PostgresTable& table : tables) {
    table.shown = isFoundByName(table, tables, database.searchPath()) ? table.name : fullName(table);
  }
  return tables;
}

Outcome<std::vector<PostgresColumn>> columnsBy(const PostgresDatabase& database, const std::string& query) {
  const Outcome<PostgresRows> rows = database.rows(query);
  if (!rows) return rows.problem();
  std::vector<PostgresColumn> columns;
  for (const std::vector<std::string>& row : *rows) columns.push_back({row[0], row[1], row[2], row[3], row[4]});
  return columns;
}

}  // namespace

Outcome<PostgresTable> postgresTable(const PostgresDatabase& database, const std::string& wanted) {
  const Outcome<std::vector<PostgresTable>> tables = tablesOf(database);
  if (!tables) return tables.problem();
  // A name with its schema is never that of another table with a point in it.
  for (const PostgresTable& table : *tables) {
    if (fullName(table) == wanted) return table;
  }
  std::vector<std::string> names;
  for (const PostgresTable& table : *tables) {
    if (!table.isPartition || table.shown == wanted) names.push_back(table.shown);
  }
  const Outcome<std::string> name = chosenTable(names, wanted, database.shown());
  if (!name) return name.problem();
  return *std::find_if(tables->begin(), tables->end(),
                       [&](const PostgresTable& table) { return table.shown == *name; });
}

Outcome<std::vector<PostgresColumn>> columnsOf(const PostgresDatabase& database, const PostgresTable& table) {
  return columnsBy(database, fmt::format(fmt::runtime(columnsQuery), table.id, "", "a.attnum"));
}

Outcome<std::vector<PostgresColumn>> keyOf(const PostgresDatabase& database, const PostgresTable& table) {
  if (table.hasChildren) return std::vector<PostgresColumn>();
  const std::string join = fmt::format(fmt::runtime(keyJoin), table.id);
  return columnsBy(database, fmt::format(fmt::runtime(columnsQuery), table.id, join, "key.place"));
}

std::string sqlNameOf(const PostgresTable& table) { return sqlName(table.schema) + "." + sqlName(table.name); }

}  // namespace workbench::data
