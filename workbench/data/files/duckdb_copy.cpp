#include "workbench/data/files/duckdb_copy.h"

#include <fmt/format.h>

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
  if (Outcome<Done> started = copy->feed_.start(copyStatement(copy->feed_.table(), target, options)); !started) {
    Problem problem = started.problem();
    problem.where = path;
    return problem;
  }
  return copy;
}

DuckDbCopy::DuckDbCopy(std::unique_ptr<OutputFile> file, std::vector<DuckDbColumn> columns)
    : file_(std::move(file)),
      feed_(std::move(columns), {.before =
                                     [this] {
                                       if (pipe_) PackingPipe::keepSignalFromThisThread();
                                     },
                                 .behind =
                                     [this] {
                                       if (pipe_) pipe_->endText();
                                     },
                                 .endedEarly = [this] { finishStatement(); }}) {}

void DuckDbCopy::complete() {
  feed_.end();
  finishStatement();
  file_->complete();
}

void DuckDbCopy::commit() { file_->commit(); }

// Requires: the statement has ended, or has got all rows.
void DuckDbCopy::finishStatement() {
  const Outcome<std::uint64_t>& written = feed_.written();
  if (pipe_) pipe_->finish();  // comes first: when packing fails, the statement knows only that the pipe is broken
  if (!written) {
    // DuckDB's message has no number to tell by what went wrong. What keeps it from writing keeps us from it as well.
    if (!pipe_) file_->checkRoom();
    Problem problem = written.problem();
    problem.where = file_->path();
    throw ErrorText(problem.text());
  }
  if (*written != feed_.rowsMade()) {
    throw ErrorText(
        text::sentence("^1: ^2 rows were to be written, and ^3 were; please report this as a fault of this program.",
                       {file_->path(), fmt::to_string(feed_.rowsMade()), fmt::to_string(*written)}));
  }
}

}  // namespace workbench::data
