#include "workbench/data/databases/postgres_database.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <list>
#include <utility>

#include "workbench/data/files/server_reference.h"
#include "workbench/data/files/sql_text.h"

namespace workbench::data {

namespace {

constexpr const char* beginReading = "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY";

}  // namespace

class OpenDatabases {
 public:
  // Two threads that want the same one get the same one.
  Outcome<std::shared_ptr<const PostgresDatabase>> find(const std::string& reference) {
    constexpr std::size_t most = 4;
    const std::lock_guard lock(mutex_);
    std::erase_if(databases_,
                  [&](const auto& database) { return database->shown() == reference && database->isLost(); });
    const auto found = std::find_if(databases_.begin(), databases_.end(),
                                    [&](const auto& database) { return database->shown() == reference; });
    if (found != databases_.end()) return *found;
    std::shared_ptr<PostgresDatabase> database(new PostgresDatabase);
    database->shown_ = reference;
    if (const Outcome<Done> begun = database->begin(); !begun) return begun.problem();
    databases_.push_front(database);
    if (databases_.size() > most) databases_.pop_back();
    return std::shared_ptr<const PostgresDatabase>(std::move(database));
  }

 private:
  std::mutex mutex_;
  std::list<std::shared_ptr<const PostgresDatabase>> databases_;
};

Outcome<std::shared_ptr<const PostgresDatabase>> PostgresDatabase::open(const std::string& reference) {
  static OpenDatabases databases;
  const std::string hidden = withHiddenPasswords(reference);
  return databases.find(hidden.substr(0, tableSignOf(hidden)));
}

Outcome<Done> PostgresDatabase::begin() {
  Outcome<std::unique_ptr<PostgresConnection>> connection = PostgresConnection::open(shown_);
  if (!connection) return connection.problem();
  connection_ = std::move(*connection);
  if (Outcome<Done> begun = connection_->run(beginReading); !begun) return begun;
  const Outcome<PostgresRows> snapshot = connection_->rows("SELECT pg_catalog.pg_export_snapshot()");
  if (!snapshot) return snapshot.problem();
  snapshot_ = snapshot->front().front();
  static std::atomic<int> number{0};
  identity_ = fmt::format("{}|{}|{}", shown_, ++number, snapshot_);
  return Done{};
}

// A connection knows that it is lost when it is used.
bool PostgresDatabase::isLost() const {
  const std::lock_guard lock(mutex_);
  return !connection_->run("SELECT 1");
}

// What an open transaction sees is gone when its connection is.
Problem PostgresDatabase::problemBehind(const Problem& problem) const {
  const std::lock_guard lock(mutex_);
  const Outcome<Done> isThere = connection_->run("SELECT 1");
  return isThere ? problem : isThere.problem();
}

Outcome<PostgresRows> PostgresDatabase::rows(const std::string& sql) const {
  const std::lock_guard lock(mutex_);
  return connection_->rows(sql);
}

Outcome<std::unique_ptr<PostgresConnection>> PostgresDatabase::connect() const {
  Outcome<std::unique_ptr<PostgresConnection>> connection = PostgresConnection::open(shown_);
  if (!connection) return connection;
  for (const std::string& statement :
       {std::string(beginReading), fmt::format("SET TRANSACTION SNAPSHOT {}", sqlText(snapshot_))}) {
    if (const Outcome<Done> ran = (*connection)->run(statement); !ran) return problemBehind(ran.problem());
  }
  return connection;
}

}  // namespace workbench::data
