#include "workbench/data/files/duckdb_query.h"

#include <fmt/format.h>

#include <array>
#include <utility>

namespace workbench::data {
namespace {

constexpr auto databaseSettings = std::to_array<std::pair<const char*, const char*>>({
    {"threads", "1"},        // whoever fetches does the reading; a second thread made both wait for each other
    {"temp_directory", ""},  // what is read may come from a protected file
    {"enable_external_file_cache", "false"},  // it would recognise a file by its path, and ours are descriptors
    {"autoinstall_known_extensions", "false"},
    {"autoload_known_extensions", "false"},
});

Problem duckDbProblem(std::string_view what) {
  return Problem{fmt::format("DuckDB reports: {}", what.substr(0, what.find('\n'))), "", ""};
}

Outcome<duckdb_database> openDatabase(const DuckDbLibrary& library) {
  duckdb_config settings = nullptr;
  if (library.duckdb_create_config(&settings) != DuckDBSuccess) return duckDbProblem("no configuration can be made");
  for (const auto& [name, value] : databaseSettings) {
    if (library.duckdb_set_config(settings, name, value) != DuckDBSuccess) {
      library.duckdb_destroy_config(&settings);
      return duckDbProblem(fmt::format("the setting {} is not known", name));
    }
  }
  duckdb_database database = nullptr;
  char* error = nullptr;
  const duckdb_state state = library.duckdb_open_ext(nullptr, &database, settings, &error);
  library.duckdb_destroy_config(&settings);
  if (state == DuckDBSuccess) return database;
  Problem problem = duckDbProblem(error != nullptr ? error : "the database cannot be opened");
  library.duckdb_free(error);
  return problem;
}

// Open until the process ends: a thread of ours may still read from it while static objects are destroyed.
const Outcome<duckdb_database>& sharedDatabase(const DuckDbLibrary& library) {
  static const Outcome<duckdb_database> database = openDatabase(library);
  return database;
}

}  // namespace

Outcome<std::unique_ptr<DuckDbQuery>> DuckDbQuery::start(const std::string& sql) {
  const Outcome<const DuckDbLibrary*> library = duckDbLibrary();
  if (!library) return library.problem();
  const Outcome<duckdb_database>& database = sharedDatabase(**library);
  if (!database) return database.problem();
  std::unique_ptr<DuckDbQuery> query(new DuckDbQuery(**library));
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
  if (library_.duckdb_connect(database, &connection_) != DuckDBSuccess) return duckDbProblem("no connection");
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
  duckdb_vector vector = library_.duckdb_data_chunk_get_vector(chunk_, index);
  return {static_cast<const duckdb_string_t*>(library_.duckdb_vector_get_data(vector)),
          library_.duckdb_vector_get_validity(vector)};
}

std::string sqlText(std::string_view text) {
  std::string literal = "'";
  for (const char character : text) {
    literal += character;
    if (character == '\'') literal += character;
  }
  literal += '\'';
  return literal;
}

}  // namespace workbench::data
