// Runs one SQL query through DuckDB with two threads and prints its one row as a JSON object. The benchmark's
// yardstick.
//
// Usage: bench_duckdb_join QUERY.sql [THREADS], in the folder of the files that the query names. Every column of the
// row is a count.

#include <duckdb.h>
#include <fmt/format.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace {

// A DuckDB database with one connection, in memory.
class Database {
 public:
  explicit Database(const std::string& threads) {
    duckdb_config settings = nullptr;
    duckdb_create_config(&settings);
    duckdb_set_config(settings, "threads", threads.c_str());
    char* trouble = nullptr;
    const bool isOpen = duckdb_open_ext(nullptr, &database_, settings, &trouble) == DuckDBSuccess;
    duckdb_destroy_config(&settings);
    if (!isOpen) throw std::runtime_error(fmt::format("DuckDB cannot be opened: {}", trouble));
    if (duckdb_connect(database_, &connection_) != DuckDBSuccess) throw std::runtime_error("DuckDB cannot be reached.");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() {
    duckdb_disconnect(&connection_);
    duckdb_close(&database_);
  }

  // The counts of a query that yields one row of them, by column name.
  nlohmann::ordered_json counts(const std::string& query) const {
    duckdb_result result;
    const auto destroy = [](duckdb_result* what) { duckdb_destroy_result(what); };
    const std::unique_ptr<duckdb_result, decltype(destroy)> holder(&result, destroy);
    if (duckdb_query(connection_, query.c_str(), &result) != DuckDBSuccess) {
      throw std::runtime_error(duckdb_result_error(&result));
    }
    duckdb_data_chunk chunk = duckdb_fetch_chunk(result);
    if (chunk == nullptr || duckdb_data_chunk_get_size(chunk) != 1) throw std::runtime_error("One row was expected.");
    nlohmann::ordered_json row;
    for (idx_t column = 0; column < duckdb_column_count(&result); ++column) {
      if (duckdb_column_type(&result, column) != DUCKDB_TYPE_BIGINT) throw std::runtime_error("Counts were expected.");
      const void* values = duckdb_vector_get_data(duckdb_data_chunk_get_vector(chunk, column));
      row[duckdb_column_name(&result, column)] = *static_cast<const std::int64_t*>(values);
    }
    duckdb_destroy_data_chunk(&chunk);
    return row;
  }

 private:
  duckdb_database database_ = nullptr;
  duckdb_connection connection_ = nullptr;
};

std::string textOf(const char* path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(fmt::format("{} cannot be read.", path));
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count < 2) throw std::runtime_error("Usage: bench_duckdb_join QUERY.sql [THREADS]");
    const Database database(count > 2 ? arguments[2] : "2");
    fmt::print("{}\n", database.counts(textOf(arguments[1])).dump());
    return 0;
  } catch (const std::exception& trouble) {
    fmt::print(stderr, "bench_duckdb_join: {}\n", trouble.what());
    return 2;
  }
}
