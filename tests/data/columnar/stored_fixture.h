// Files that DuckDB writes for tests, as other programs would have.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

// Gives a column of a file another name as long as its own. Other programs write names that differ in case only; DuckDB
// changes such names, but the footer, where they stand as they are, takes any.
inline void renameColumn(const TestFolder& folder, std::string_view file, std::string_view from, std::string_view to) {
  std::string bytes = folder.read(file);
  ASSERT_NE(bytes.find(from), std::string::npos);
  for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from))
    bytes.replace(at, from.size(), to);
  folder.write(file, bytes);
}

// A database with the tables that the statements make in "made".
inline std::string duckDbOf(const TestFolder& folder, const std::string& name,
                            const std::vector<std::string>& statements) {
  std::string path = folder.path(name);
  runSql(fmt::format("ATTACH {} AS made", sqlText(path)));
  for (const std::string& statement : statements) runSql(statement);
  runSql("DETACH made");
  return path;
}

}  // namespace workbench::data
