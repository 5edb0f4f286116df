#include "workbench/data/files/duckdb_copy.h"

#include <fmt/format.h>

#include <system_error>
#include <utility>

#include "host/messages.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// DuckDB writes into the file or pipe that is there. Left to itself it would write another one beside it and rename
// that.
std::string copyStatement(const std::string& table, const std::string& path, std::string_view options) {
  return fmt::format("COPY (FROM {}) TO {} ({}, USE_TMP_FILE false)", table, sqlText(path), options);
}

}  // namespace

Outcome<std::unique_ptr<DuckDbCopy>> DuckDbCopy::start(const std::string& path, Packing packing,
                                                       std::vector<DuckDbColumn> columns, std::string_view options,
                                                       const Secret& password) {
  if (const Outcome<Done> enabled = DuckDbRowQueue::enable(); !enabled) return enabled.problem();
  Outcome<std::unique_ptr<OutputFile>> file = OutputFile::create(path, password);
  if (!file) return file.problem();
  std::unique_ptr<DuckDbCopy> copy(new DuckDbCopy(std::move(*file), std::move(columns)));
  if (packing != Packing::none || !copy->file_->canBeOpened()) {
    Outcome<std::unique_ptr<PackingPipe>> pipe = PackingPipe::open(*copy->file_, packing);
    if (!pipe) return pipe.problem();
    copy->pipe_ = std::move(*pipe);
  }
  const std::string target = copy->pipe_ ? copy->pipe_->descriptorPath() : copy->file_->descriptorPath();
  const std::string statement = copyStatement(copy->queue_.table(), target, options);
  try {
    copy->thread_ = std::thread([writer = copy.get(), statement] { writer->runStatement(statement); });
  } catch (const std::system_error& error) {
    return Problem{text::sentence("The file cannot be written (^1).", {error.what()}), path, ""};
  }
  return copy;
}

DuckDbCopy::DuckDbCopy(std::unique_ptr<OutputFile> file, std::vector<DuckDbColumn> columns)
    : file_(std::move(file)), queue_(std::move(columns)), rows_(queue_.firstRows()) {}

DuckDbCopy::~DuckDbCopy() {
  queue_.abandon();
  if (thread_.joinable()) thread_.join();
}

void DuckDbCopy::endRow() {
  rows_->endRow();
  ++rowsMade_;
  if (rows_->isFull() && !queue_.exchange(rows_)) finishStatement();
}

void DuckDbCopy::complete() {
  queue_.end(std::move(rows_));
  finishStatement();
  file_->complete();
}

void DuckDbCopy::commit() { file_->commit(); }

void DuckDbCopy::runStatement(const std::string& statement) {
  if (pipe_) PackingPipe::keepSignalFromThisThread();
  written_ = rowsWritten(statement);
  if (pipe_) pipe_->endText();
  queue_.close();
}

// Requires: the statement has ended, or has got all rows.
void DuckDbCopy::finishStatement() {
  if (thread_.joinable()) thread_.join();
  if (pipe_) pipe_->finish();  // comes first: when packing fails, the statement knows only that the pipe is broken
  if (!written_) {
    // DuckDB's message has no number to tell by what went wrong. What keeps it from writing keeps us from it as well.
    if (!pipe_) file_->checkRoom();
    Problem problem = written_.problem();
    problem.where = file_->path();
    throw ErrorText(problem.text());
  }
  if (*written_ != rowsMade_) {
    throw ErrorText(
        text::sentence("^1: ^2 rows were to be written, and ^3 were; please report this as a fault of this program.",
                       {file_->path(), fmt::to_string(rowsMade_), fmt::to_string(*written_)}));
  }
}

}  // namespace workbench::data
