// PostgresDatabase: one state of a database of a PostgreSQL server, which every connection to it sees, however many
// there are and whatever is written meanwhile.
//
// One transaction that only reads is open as long as the object is there; further connections take over what it sees.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "workbench/data/databases/postgres_connection.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class PostgresDatabase {
 public:
  // The database of that reference, its table left out of account. Those that were opened last stay open until the
  // process ends, so that all that is read of one in a run is one state of it.
  static Outcome<std::shared_ptr<const PostgresDatabase>> open(const std::string& reference);

  // For problems: the reference with hidden passwords, without a table.
  const std::string& shown() const { return shown_; }
  // Tells this state from every other one of every other database.
  const std::string& identity() const { return identity_; }
  const std::vector<std::string>& searchPath() const { return connection_->searchPath(); }

  // May be called on any thread.
  Outcome<PostgresRows> rows(const std::string& sql) const;
  // Another connection.
  Outcome<std::unique_ptr<PostgresConnection>> connect() const;

 private:
  PostgresDatabase() = default;
  Outcome<Done> begin();
  bool isLost() const;
  Problem problemBehind(const Problem& problem) const;

  friend class OpenDatabases;
  std::string shown_;
  std::string snapshot_;
  std::string identity_;
  std::unique_ptr<PostgresConnection> connection_;
  mutable std::mutex mutex_;  // of the connection
};

}  // namespace workbench::data
