#include "workbench/data/files/duckdb_row_queue.h"

#include <fmt/format.h>

#include <cstdint>
#include <utility>

#include "workbench/data/files/duckdb_database.h"
#include "workbench/text/wording.h"

namespace workbench::data {

// What DuckDB calls when a statement reads a queue as a table. The queue is named by its address: only statements of
// ours ever run.
struct DuckDbRowTable {
  static constexpr const char* name = "queued_rows";

  static void bind(duckdb_bind_info info) {
    const DuckDbLibrary& library = **duckDbLibrary();
    duckdb_value address = library.duckdb_bind_get_parameter(info, 0);
    auto* const queue = reinterpret_cast<DuckDbRowQueue*>(library.duckdb_get_uint64(address));
    library.duckdb_destroy_value(&address);
    for (const DuckDbColumn& column : queue->columns_) {
      duckdb_logical_type type = library.duckdb_create_logical_type(column.type);
      library.duckdb_bind_add_result_column(info, column.name.c_str(), type);
      library.duckdb_destroy_logical_type(&type);
    }
    library.duckdb_bind_set_bind_data(info, queue, nullptr);
  }

  static void begin(duckdb_init_info info) { (*duckDbLibrary())->duckdb_init_set_max_threads(info, 1); }

  static void read(duckdb_function_info info, duckdb_data_chunk chunk) {
    const DuckDbLibrary& library = **duckDbLibrary();
    auto* const queue = static_cast<DuckDbRowQueue*>(library.duckdb_function_get_bind_data(info));
    if (!queue->next(chunk))
      library.duckdb_function_set_error(info, text::sentence("The rows were abandoned.").c_str());
  }

  static Outcome<Done> enable() {
    const Outcome<duckdb_database> database = duckDbDatabase();
    if (!database) return database.problem();
    const DuckDbLibrary& library = **duckDbLibrary();
    duckdb_connection connection = nullptr;
    if (library.duckdb_connect(*database, &connection) != DuckDBSuccess)
      return duckDbProblem(text::sentence("no connection"));
    duckdb_table_function function = library.duckdb_create_table_function();
    duckdb_logical_type address = library.duckdb_create_logical_type(DUCKDB_TYPE_UBIGINT);
    library.duckdb_table_function_set_name(function, name);
    library.duckdb_table_function_add_parameter(function, address);
    library.duckdb_table_function_set_bind(function, bind);
    library.duckdb_table_function_set_init(function, begin);
    library.duckdb_table_function_set_function(function, read);
    const duckdb_state state = library.duckdb_register_table_function(connection, function);
    library.duckdb_destroy_logical_type(&address);
    library.duckdb_destroy_table_function(&function);
    library.duckdb_disconnect(&connection);
    if (state != DuckDBSuccess) return duckDbProblem(text::sentence("no table function can be made"));
    return Done{};
  }
};

Outcome<Done> DuckDbRowQueue::enable() {
  static const Outcome<Done> enabled = DuckDbRowTable::enable();
  return enabled;
}

DuckDbRowQueue::DuckDbRowQueue(std::vector<DuckDbColumn> columns)
    : library_(**duckDbLibrary()), columns_(std::move(columns)) {}

std::string DuckDbRowQueue::table() const {
  return fmt::format("{}({}::UBIGINT)", DuckDbRowTable::name, reinterpret_cast<std::uintptr_t>(this));
}

std::unique_ptr<DuckDbRows> DuckDbRowQueue::firstRows() const {
  return std::make_unique<DuckDbRows>(library_, columns_);
}

bool DuckDbRowQueue::exchange(std::unique_ptr<DuckDbRows>& rows) {
  const bool isWanted = give(rows);
  if (rows == nullptr) {
    rows = firstRows();
  } else {
    rows->clear();
  }
  return isWanted;
}

// Leaves rows that were read in the place of those that are given away, or none.
bool DuckDbRowQueue::give(std::unique_ptr<DuckDbRows>& rows) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return waiting_.size() < mostWaiting || isClosed_; });
  if (isClosed_) return false;
  waiting_.push_back(std::move(rows));
  if (!read_.empty()) {
    rows = std::move(read_.back());
    read_.pop_back();
  }
  changed_.notify_all();
  return true;
}

void DuckDbRowQueue::end(std::unique_ptr<DuckDbRows> rows) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back(std::move(rows));
  state_ = State::ended;
  changed_.notify_all();
}

void DuckDbRowQueue::abandon() {
  const std::lock_guard lock(mutex_);
  state_ = State::abandoned;
  changed_.notify_all();
}

void DuckDbRowQueue::close() {
  const std::lock_guard lock(mutex_);
  isClosed_ = true;
  changed_.notify_all();
}

bool DuckDbRowQueue::next(duckdb_data_chunk chunk) {
  std::unique_lock lock(mutex_);
  if (current_) read_.push_back(std::move(current_));
  changed_.wait(lock, [this] { return !waiting_.empty() || state_ != State::open; });
  if (state_ == State::abandoned) return false;
  if (!waiting_.empty()) {
    current_ = std::move(waiting_.front());
    waiting_.pop_front();
    changed_.notify_all();
    current_->handTo(chunk);
  }
  return true;
}

}  // namespace workbench::data
