// SqliteCells: rows of SQLite as cells: the exact texts of numbers, texts, digits for bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/data/databases/sqlite_connection.h"
#include "workbench/data/files/cell_batch.h"
#include "workbench/data/files/described_columns.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// What SQLite makes of a declared type, by the parts of its name.
KnownColumn sqliteColumn(std::string name, std::string declaredType);

class SqliteCells {
 public:
  // The columns of the statement; the path is for messages.
  SqliteCells(std::string path, std::vector<KnownColumn> columns)
      : path_(std::move(path)), columns_(std::move(columns)), hasBytes_(columns_.size()) {}

  std::size_t columns() const { return columns_.size(); }
  // Adds the cells of the statement's current row. A problem when a text is no UTF-8 or longer than is held.
  Outcome<Done> add(SqliteStatement& row, std::uint64_t number, CellBatch& batch);
  // Columns that hold bytes. Sentences.
  std::vector<std::string> warnings() const;

 private:
  std::string path_;
  std::vector<KnownColumn> columns_;
  std::vector<bool> hasBytes_;
  std::string text_;
};

}  // namespace workbench::data
