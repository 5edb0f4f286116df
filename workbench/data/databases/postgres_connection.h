// PostgresConnection: a connection to a database of a PostgreSQL server. Texts are UTF-8 on it (the server refuses what
// cannot be), and every value's text is the same whatever the server, the database or the user is set to.
//
// Used by one thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/databases/postgres_library.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

using PostgresRows = std::vector<std::vector<std::string>>;  // a null is an empty text

class PostgresConnection {
 public:
  // To the database that the reference names (server_reference.h), its passwords hidden or not, its table left out of
  // account. Problems show it with hidden ones.
  static Outcome<std::unique_ptr<PostgresConnection>> open(const std::string& reference);
  ~PostgresConnection();
  PostgresConnection(const PostgresConnection&) = delete;
  PostgresConnection& operator=(const PostgresConnection&) = delete;

  // The schemas in which a table without a schema is looked for, in this order.
  const std::vector<std::string>& searchPath() const { return searchPath_; }

  // Runs statements to their end.
  Outcome<Done> run(const std::string& sql) const;
  Outcome<PostgresRows> rows(const std::string& sql) const;

  // A COPY to this side: line by line, of which one lies in memory. A line, with its end, is valid until the next call;
  // nothing when there is none any more.
  Outcome<Done> startCopy(const std::string& sql) const;
  Outcome<std::optional<std::string_view>> nextLine();

 private:
  PostgresConnection(const PostgresLibrary& library, std::string shown) : library_(library), shown_(std::move(shown)) {}
  Outcome<Done> connect(const std::string& reference);
  Outcome<Done> checkReference(const std::string& uri) const;
  Outcome<Done> settle();
  bool isLost() const;
  Problem problem() const;
  Problem problem(const PGresult* result) const;

  struct Clear {
    const PostgresLibrary& library;
    void operator()(PGresult* result) const { library.PQclear(result); }
  };
  using Result = std::unique_ptr<PGresult, Clear>;
  Result resultOf(const std::string& sql) const { return {library_.PQexec(handle_, sql.c_str()), Clear{library_}}; }
  Outcome<std::optional<std::string_view>> endOfCopy();

  const PostgresLibrary& library_;
  std::string shown_;
  PGconn* handle_ = nullptr;
  char* line_ = nullptr;
  std::vector<std::string> searchPath_;
};

}  // namespace workbench::data
