// DuckDbRowQueue: rows between the thread that makes them and a statement of DuckDB that reads them, in their order.
//
// To the statement the queue is a table. Few rows are under way at any time: who makes them waits until the statement
// has taken some, and the statement until there are some.
//
// Requires: one thread makes rows, another one runs one statement over them; the queue outlives both.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "workbench/data/files/duckdb_rows.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class DuckDbRowQueue {
 public:
  // Makes such queues known to DuckDB; once is enough for the process. Any other use requires that it went well.
  static Outcome<Done> enable();

  explicit DuckDbRowQueue(std::vector<DuckDbColumn> columns);

  // The queue as a table, for the FROM clause of the statement.
  std::string table() const;

  // For the thread that makes rows; the statement may have ended before.
  std::unique_ptr<DuckDbRows> firstRows() const;
  // Gives rows away and gets empty ones, as soon as there is room. False when the statement has ended: nobody takes the
  // rows, and they are empty too.
  bool exchange(std::unique_ptr<DuckDbRows>& rows);
  // Gives the last rows away, which may be none.
  void end(std::unique_ptr<DuckDbRows> rows);
  // Lets the statement fail unless it has got all rows.
  void abandon();

  // For the thread that runs the statement, as soon as it has ended in any way.
  void close();

 private:
  friend struct DuckDbRowTable;
  enum class State { open, ended, abandoned };
  static constexpr std::size_t mostWaiting = 2;

  bool give(std::unique_ptr<DuckDbRows>& rows);
  // Puts the next rows into the chunk, none at the end; false when there will be no end.
  bool next(duckdb_data_chunk chunk);

  const DuckDbLibrary& library_;
  const std::vector<DuckDbColumn> columns_;
  std::mutex mutex_;
  std::condition_variable changed_;
  State state_ = State::open;
  bool isClosed_ = false;
  std::deque<std::unique_ptr<DuckDbRows>> waiting_;
  std::vector<std::unique_ptr<DuckDbRows>> read_;  // free for other rows
  std::unique_ptr<DuckDbRows> current_;            // in the chunk that the statement has got
};

}  // namespace workbench::data
