#include "workbench/data/columnar/parquet_footer.h"

#include <fmt/format.h>

#include <memory>

#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {

Outcome<std::vector<FooterColumn>> columnsInFooter(const std::string& file) {
  const Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(
      fmt::format("SELECT column_name, column_type, column_name NOT IN (SELECT name FROM parquet_schema({0})) "
                  "FROM (DESCRIBE FROM read_parquet({0}, hive_partitioning = false))",
                  sqlText(file)));
  if (!query) return query.problem();
  std::vector<FooterColumn> columns;
  const Outcome<Done> read = (*query)->eachChunk([&](const DuckDbQuery& chunk) {
    const auto* const isNamedByDuckDb = static_cast<const bool*>(chunk.values(2).first);
    for (std::size_t row = 0; row < chunk.rows(); ++row) {
      columns.push_back({std::string(chunk.column(0)[row]), std::string(chunk.column(1)[row]), isNamedByDuckDb[row]});
    }
  });
  if (!read) return read.problem();
  return columns;
}

Outcome<std::optional<std::string>> resourceInFooter(const std::string& file) {
  return firstText(fmt::format("SELECT decode(value) FROM parquet_kv_metadata({}) WHERE key = encode({})",
                               sqlText(file), sqlText(resourceKey)));
}

Outcome<std::string> stateInFooter(const std::string& file) {
  const Outcome<std::optional<std::string>> state = firstText(
      fmt::format("SELECT CAST(hash(list(part)) AS VARCHAR) FROM parquet_metadata({}) AS part", sqlText(file)));
  if (!state) return state.problem();
  return **state;  // an aggregate always gives a row
}

}  // namespace workbench::data
