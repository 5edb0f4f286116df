#include "workbench/data/columnar/stored_source.h"

#include <fmt/format.h>

#include "workbench/data/columnar/stored_rows.h"
#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {

Outcome<StoredOutline> StoredSource::outline() const {
  StoredOutline outline;
  Outcome<std::unique_ptr<DuckDbQuery>> columns =
      DuckDbQuery::start(fmt::format("SELECT column_name, column_type FROM (DESCRIBE SELECT * FROM {})", relation()));
  if (!columns) return columns.problem();
  const Outcome<Done> read = (*columns)->eachChunk([&](const DuckDbQuery& chunk) {
    for (std::size_t row = 0; row < chunk.rows(); ++row)
      outline.columns.emplace_back(chunk.column(0)[row], chunk.column(1)[row]);
  });
  if (!read) return read.problem();
  // Told by what the files or the database say of themselves.
  Outcome<std::unique_ptr<DuckDbQuery>> cases = DuckDbQuery::start(fmt::format("SELECT count(*) FROM {}", relation()));
  if (!cases) return cases.problem();
  const Outcome<bool> isThere = (*cases)->nextChunk();
  if (!isThere) return isThere.problem();
  outline.cases = *static_cast<const std::int64_t*>((*cases)->values(0).first);
  return outline;
}

Outcome<std::unique_ptr<StoredRows>> StoredSource::rows(const WantedRows& wanted) const {
  return queriedRows(relation(), wanted.columns);
}

}  // namespace workbench::data
