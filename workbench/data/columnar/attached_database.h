// AttachedDatabase: a database file of DuckDB, open for reading through the workbench's own DuckDB as long as this is
// there. One that is open already is shared: DuckDB opens no file twice.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

class AttachedDatabase {
 public:
  static Outcome<std::shared_ptr<const AttachedDatabase>> open(const std::string& path);
  ~AttachedDatabase();
  AttachedDatabase(const AttachedDatabase&) = delete;
  AttachedDatabase& operator=(const AttachedDatabase&) = delete;

  const std::string& name() const { return name_; }  // of the database in SQL

 private:
  explicit AttachedDatabase(std::string name) : name_(std::move(name)) {}
  std::string name_;
};

}  // namespace workbench::data
