// DuckDbCopy: a file that DuckDB writes with a COPY statement, from rows that are made here one after the other.
//
// The statement runs on a thread of its own and takes the rows in their order; a few of them are under way at any time.
// DuckDB writes the file as it is, or text into a pipe from which it is packed.
// The file stands in a private place until commit, and when this is destroyed before, the statement ends and nothing
// stays on disk. Where a call finds that the statement failed it throws ErrorText naming the file; after that only
// destruction makes sense.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "workbench/data/files/duckdb_row_queue.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/output_file.h"
#include "workbench/data/files/packing_pipe.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class DuckDbCopy {
 public:
  // The options say what kind of file it is, as SQL: "FORMAT csv, HEADER true". With a password the file is protected.
  // Requires: there is a column; the options name no packing.
  static Outcome<std::unique_ptr<DuckDbCopy>> start(const std::string& path, Packing packing,
                                                    std::vector<DuckDbColumn> columns, std::string_view options,
                                                    const Secret& password = {});
  ~DuckDbCopy();
  DuckDbCopy(const DuckDbCopy&) = delete;
  DuckDbCopy& operator=(const DuckDbCopy&) = delete;

  // The cells of the row that is being made, each set once before endRow().
  void setText(std::size_t column, std::string_view text) { rows_->setText(column, text); }
  template <class Value>
  void setValue(std::size_t column, Value value) {
    rows_->setValue(column, value);
  }
  void setMissing(std::size_t column) { rows_->setMissing(column); }
  void endRow();

  void complete();  // no row can follow; the file is on the disk, whole
  void commit();    // requires: complete() was called

 private:
  DuckDbCopy(std::unique_ptr<OutputFile> file, std::vector<DuckDbColumn> columns);
  void runStatement(const std::string& statement);
  void finishStatement();

  std::unique_ptr<OutputFile> file_;
  std::unique_ptr<PackingPipe> pipe_;  // of a packed file
  DuckDbRowQueue queue_;
  std::unique_ptr<DuckDbRows> rows_;  // those that are being made
  std::uint64_t rowsMade_ = 0;
  Outcome<std::uint64_t> written_ = std::uint64_t{0};  // rows; the thread's as long as it runs
  std::thread thread_;
};

}  // namespace workbench::data
