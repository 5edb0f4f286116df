#include "workbench/data/files/duckdb_feed.h"

#include <system_error>
#include <utility>

#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/wording.h"

namespace workbench::data {

DuckDbFeed::DuckDbFeed(std::vector<DuckDbColumn> columns, Around around)
    : around_(std::move(around)), queue_(std::move(columns)), rows_(queue_.firstRows()) {}

DuckDbFeed::~DuckDbFeed() {
  queue_.abandon();
  if (thread_.joinable()) thread_.join();
}

Outcome<Done> DuckDbFeed::start(std::string statement) {
  try {
    thread_ = std::thread([this, statement = std::move(statement)] { run(statement); });
  } catch (const std::system_error& error) {
    return Problem{text::sentence("The file cannot be written (^1).", {error.what()}), "", ""};
  }
  return Done{};
}

void DuckDbFeed::endRow() {
  rows_->endRow();
  ++rowsMade_;
  if (rows_->isFull() && !queue_.exchange(rows_)) around_.endedEarly();
}

const Outcome<std::uint64_t>& DuckDbFeed::written() {
  if (thread_.joinable()) thread_.join();
  return written_;
}

void DuckDbFeed::run(const std::string& statement) {
  around_.before();
  written_ = rowsWritten(statement);
  around_.behind();
  queue_.close();
}

}  // namespace workbench::data
