// DuckDbCopy: a file that DuckDB writes with a COPY statement, from rows that are made here one after the other.
//
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
#include <vector>

#include "workbench/data/files/duckdb_feed.h"
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
  DuckDbCopy(const DuckDbCopy&) = delete;
  DuckDbCopy& operator=(const DuckDbCopy&) = delete;

  // To which the rows are given.
  DuckDbFeed& rows() { return feed_; }

  void complete();  // no row can follow; the file is on the disk, whole
  void commit();    // requires: complete() was called

 private:
  DuckDbCopy(std::unique_ptr<OutputFile> file, std::vector<DuckDbColumn> columns);
  void finishStatement();

  std::unique_ptr<OutputFile> file_;
  std::unique_ptr<PackingPipe> pipe_;  // of a packed file
  DuckDbFeed feed_;
};

}  // namespace workbench::data
