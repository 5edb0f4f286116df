// DuckDbFeed: rows that are made here one after the other, and a statement of DuckDB that takes them in their order.
//
// The statement runs on a thread of its own; a few rows are under way at any time. When this is destroyed before the
// statement has got all rows, it ends and has failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "workbench/data/files/duckdb_row_queue.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class DuckDbFeed {
 public:
  // What is done on the statement's thread before and behind it, and on the other one when the statement ends before
  // it has got all rows: that has to throw.
  struct Around {
    std::function<void()> before = [] {};
    std::function<void()> behind = [] {};
    std::function<void()> endedEarly;
  };

  // Requires: DuckDbRowQueue::enable() went well; there is a column.
  DuckDbFeed(std::vector<DuckDbColumn> columns, Around around);
  ~DuckDbFeed();
  DuckDbFeed(const DuckDbFeed&) = delete;
  DuckDbFeed& operator=(const DuckDbFeed&) = delete;

  // The rows as a table, for the FROM clause of the statement.
  std::string table() const { return queue_.table(); }
  Outcome<Done> start(std::string statement);

  // The cells of the row that is being made, each set once before endRow().
  void setText(std::size_t column, std::string_view text) { rows_->setText(column, text); }
  template <class Value>
  void setValue(std::size_t column, Value value) {
    rows_->setValue(column, value);
  }
  void setMissing(std::size_t column) { rows_->setMissing(column); }
  void endRow();

  // No row can follow.
  void end() { queue_.end(std::move(rows_)); }
  // Waits for the statement: how many rows it wrote. Requires: it has got all rows, or has ended.
  const Outcome<std::uint64_t>& written();
  std::uint64_t rowsMade() const { return rowsMade_; }

 private:
  void run(const std::string& statement);

  Around around_;
  DuckDbRowQueue queue_;
  std::unique_ptr<DuckDbRows> rows_;  // those that are being made
  std::uint64_t rowsMade_ = 0;
  Outcome<std::uint64_t> written_ = std::uint64_t{0};  // the thread's as long as it runs
  std::thread thread_;
};

}  // namespace workbench::data
