#include "workbench/data/columnar/duckdb_tables.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {

Outcome<std::vector<DuckDbTable>> tablesOf(const std::string& database) {
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(fmt::format(
      "SELECT schema_name, table_name AS name, coalesce(comment, '') FROM duckdb_tables() WHERE database_name = {0} "
      "UNION ALL SELECT schema_name, view_name, coalesce(comment, '') FROM duckdb_views() WHERE database_name = {0} "
      "AND NOT internal ORDER BY ALL",
      sqlText(database)));
  if (!query) return query.problem();
  std::vector<DuckDbTable> tables;
  const Outcome<Done> read = (*query)->eachChunk([&](const DuckDbQuery& chunk) {
    for (std::size_t row = 0; row < chunk.rows(); ++row) {
      tables.push_back(
          {{std::string(chunk.column(0)[row]), std::string(chunk.column(1)[row])}, std::string(chunk.column(2)[row])});
    }
  });
  if (!read) return read.problem();
  return tables;
}

Outcome<std::unordered_map<std::string, std::string>> commentsOnColumns(const std::string& database,
                                                                        const DuckDbTableName& table) {
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(
      fmt::format("SELECT column_name, comment FROM duckdb_columns() WHERE database_name = {} AND schema_name = {} "
                  "AND table_name = {} AND comment IS NOT NULL",
                  sqlText(database), sqlText(table.schema), sqlText(table.name)));
  if (!query) return query.problem();
  std::unordered_map<std::string, std::string> comments;
  const Outcome<Done> read = (*query)->eachChunk([&](const DuckDbQuery& chunk) {
    for (std::size_t row = 0; row < chunk.rows(); ++row) comments.emplace(chunk.column(0)[row], chunk.column(1)[row]);
  });
  if (!read) return read.problem();
  return comments;
}

Outcome<DuckDbTableName> tableToWrite(const std::string& database, const std::string& wanted) {
  const Outcome<std::vector<DuckDbTable>> tables = tablesOf(database);
  if (!tables) return tables.problem();
  const auto found =
      std::find_if(tables->begin(), tables->end(), [&](const DuckDbTable& table) { return table.shown() == wanted; });
  if (found != tables->end()) return DuckDbTableName(*found);
  const std::size_t point = wanted.find('.');
  if (point == std::string::npos) return DuckDbTableName{"main", wanted};
  DuckDbTableName inSchema{wanted.substr(0, point), wanted.substr(point + 1)};
  const Outcome<std::optional<std::string>> schema =
      firstText(fmt::format("SELECT schema_name FROM duckdb_schemas() WHERE database_name = {} AND schema_name = {}",
                            sqlText(database), sqlText(inSchema.schema)));
  if (!schema) return schema.problem();
  return *schema ? inSchema : DuckDbTableName{"main", wanted};
}

}  // namespace workbench::data
