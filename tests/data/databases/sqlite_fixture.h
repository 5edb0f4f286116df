// SQLite databases for tests, as other programs would have made them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/data/files/file_fixture.h"
#include "workbench/data/databases/sqlite_connection.h"

namespace workbench::data {

using SharedSqlite = std::shared_ptr<const SqliteConnection>;

// Open as long as it is held; the statements have been run, or the test has failed.
inline SharedSqlite sqliteWith(const std::string& path, const std::vector<std::string>& statements) {
  auto connection = SqliteConnection::openForWriting(path, path);
  if (!connection) {
    ADD_FAILURE() << connection.problem().text();
    return nullptr;
  }
  for (const std::string& statement : statements) {
    const Outcome<Done> ran = (*connection)->run(statement);
    if (!ran) ADD_FAILURE() << ran.problem().text() << "\n" << statement;
  }
  return *connection;
}

// A database that the statements have made.
inline std::string sqliteOf(const TestFolder& folder, const std::string& name,
                            const std::vector<std::string>& statements) {
  sqliteWith(folder.path(name), statements);
  return folder.path(name);
}

}  // namespace workbench::data
