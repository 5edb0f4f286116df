#include "workbench/data/files/duckdb_query.h"

#include "workbench/data/files/duckdb_database.h"
#include "workbench/text/wording.h"

namespace workbench::data {

Outcome<std::unique_ptr<DuckDbQuery>> DuckDbQuery::start(const std::string& sql) {
  const Outcome<duckdb_database> database = duckDbDatabase();
  if (!database) return database.problem();
  std::unique_ptr<DuckDbQuery> query(new DuckDbQuery(**duckDbLibrary()));
  if (Outcome<Done> executed = query->execute(*database, sql); !executed) return executed.problem();
  return query;
}

DuckDbQuery::~DuckDbQuery() {
  library_.duckdb_destroy_data_chunk(&chunk_);
  library_.duckdb_destroy_result(&result_);
  library_.duckdb_destroy_prepare(&statement_);
  library_.duckdb_disconnect(&connection_);
}

Outcome<Done> DuckDbQuery::execute(duckdb_database database, const std::string& sql) {
  if (library_.duckdb_connect(database, &connection_) != DuckDBSuccess)
    return duckDbProblem(text::sentence("no connection"));
  if (library_.duckdb_prepare(connection_, sql.c_str(), &statement_) != DuckDBSuccess) {
    return duckDbProblem(library_.duckdb_prepare_error(statement_));
  }
  if (library_.duckdb_execute_prepared_streaming(statement_, &result_) != DuckDBSuccess) {
    return duckDbProblem(library_.duckdb_result_error(&result_));
  }
  columns_ = library_.duckdb_column_count(&result_);
  return Done{};
}

Outcome<bool> DuckDbQuery::nextChunk() {
  library_.duckdb_destroy_data_chunk(&chunk_);
  rows_ = 0;
  chunk_ = library_.duckdb_fetch_chunk(result_);
  if (chunk_ == nullptr) {
    const char* error = library_.duckdb_result_error(&result_);
    if (error != nullptr && *error != '\0') return duckDbProblem(error);
    return false;
  }
  rows_ = library_.duckdb_data_chunk_get_size(chunk_);
  return rows_ != 0;
}

DuckDbQuery::Column DuckDbQuery::column(std::size_t index) const {
  const auto [texts, present] = values(index);
  return {static_cast<const duckdb_string_t*>(texts), present};
}

std::pair<const void*, const std::uint64_t*> DuckDbQuery::values(std::size_t index) const {
  duckdb_vector vector = library_.duckdb_data_chunk_get_vector(chunk_, index);
  return {library_.duckdb_vector_get_data(vector), library_.duckdb_vector_get_validity(vector)};
}

Outcome<std::optional<std::string>> firstText(const std::string& sql) {
  const Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(sql);
  if (!query) return query.problem();
  const Outcome<bool> isThere = (*query)->nextChunk();
  if (!isThere) return isThere.problem();
  if (!*isThere) return std::optional<std::string>();
  return std::optional(std::string((*query)->column(0)[0]));
}

Outcome<std::uint64_t> rowsWritten(const std::string& sql) {
  const Outcome<duckdb_database> database = duckDbDatabase();
  if (!database) return database.problem();
  const DuckDbLibrary& library = **duckDbLibrary();
  duckdb_connection connection = nullptr;
  if (library.duckdb_connect(*database, &connection) != DuckDBSuccess)
    return duckDbProblem(text::sentence("no connection"));
  duckdb_result result{};
  const bool isDone = library.duckdb_query(connection, sql.c_str(), &result) == DuckDBSuccess;
  const Outcome<std::uint64_t> written = isDone ? Outcome<std::uint64_t>(library.duckdb_rows_changed(&result))
                                                : duckDbProblem(library.duckdb_result_error(&result));
  library.duckdb_destroy_result(&result);
  library.duckdb_disconnect(&connection);
  return written;
}

}  // namespace workbench::data
