// Files that DuckDB writes for tests, as other programs would have.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/data/files/file_fixture.h"
#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {

// Runs a statement, or fails the test.
inline void runSql(const std::string& sql) {
  const Outcome<std::uint64_t> ran = rowsWritten(sql);
  if (!ran) ADD_FAILURE() << ran.problem().text() << "\n" << sql;
}

// A Parquet file with what the query gives.
inline std::string parquetOf(const TestFolder& folder, const std::string& name, const std::string& query) {
  std::string path = folder.path(name);
  runSql(fmt::format("COPY ({}) TO {} (FORMAT parquet)", query, sqlText(path)));
  return path;
}

inline std::string warningsOf(const SharedFile& file) {
  return file == nullptr ? "not opened" : fmt::format("{}", fmt::join(file->warnings(), " "));
}

}  // namespace workbench::data
