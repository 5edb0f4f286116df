// SqliteConnection: a database file of SQLite, open; SqliteStatement: a statement over it, row by row.
//
// A connection may be used on several threads, one call after the other; a statement by one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/databases/sqlite_library.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class SqliteConnection {
 public:
  // Problems name `shown`. A database that is read is not changed, nor are the files beside it but for those that
  // SQLite keeps there while a database is open that is written in that way (".db-wal", ".db-shm").
  static Outcome<std::shared_ptr<const SqliteConnection>> openForReading(const std::string& file,
                                                                         const std::string& shown);
  // Makes the file when there is none.
  static Outcome<std::shared_ptr<const SqliteConnection>> openForWriting(const std::string& file,
                                                                         const std::string& shown);
  ~SqliteConnection();
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  const SqliteLibrary& library() const { return library_; }
  sqlite3* handle() const { return handle_; }
  // Runs one statement to its end.
  Outcome<Done> run(std::string_view sql) const;
  // What SQLite says of the last failure.
  Problem problem() const;

 private:
  SqliteConnection(const SqliteLibrary& library, std::string shown) : library_(library), shown_(std::move(shown)) {}
  static Outcome<std::shared_ptr<const SqliteConnection>> open(const std::string& file, const std::string& shown,
                                                               int flags);

  const SqliteLibrary& library_;
  std::string shown_;
  sqlite3* handle_ = nullptr;
};

class SqliteStatement {
 public:
  static Outcome<std::unique_ptr<SqliteStatement>> prepare(std::shared_ptr<const SqliteConnection> connection,
                                                           std::string_view sql);
  ~SqliteStatement();
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  // The parameters, from 1. Texts are copied.
  void bind(int parameter, std::string_view text);
  void bind(int parameter, double number);
  void bindNull(int parameter);

  // Goes to the next row; false at the end.
  Outcome<bool> next();
  // To be run anew, with the parameters that it has.
  void reset();

  // Of the current row; columns count from 0. Texts are valid until the next call for the statement.
  int columns() const;
  std::string name(int column) const;
  std::string declaredType(int column) const;  // empty: none
  int type(int column) const;                  // SQLITE_INTEGER and so on
  std::int64_t integer(int column) const;
  double real(int column) const;
  std::string_view text(int column);
  std::string_view blob(int column);

 private:
  SqliteStatement(std::shared_ptr<const SqliteConnection> connection, sqlite3_stmt* statement)
      : connection_(std::move(connection)), library_(connection_->library()), statement_(statement) {}

  std::shared_ptr<const SqliteConnection> connection_;
  const SqliteLibrary& library_;
  sqlite3_stmt* statement_;
};

// A name in its quotes.
std::string sqliteName(std::string_view name);

}  // namespace workbench::data
