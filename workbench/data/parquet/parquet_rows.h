// ParquetRows: the rows of Parquet files that are stored in the common ways, decoded into vectors like DuckDB's.
//
// DuckDB reads every Parquet file, and takes as long for one look at all values as a comparison may take in all. What
// is out of the common is left to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/parquet/column_values.h"
#include "workbench/data/parquet/parquet_layout.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class ParquetRows {
 public:
  // A column that is wanted: its place in the file, its name in messages, and its type by DuckDB's name of it.
  struct Column {
    std::size_t index = 0;
    std::string name;
    std::string type;
    HandedOut handedOut = HandedOut::text;
  };
  struct File {
    int descriptor = -1;                    // stays open as long as the rows are read
    std::string name;                       // in messages
    const ParquetLayout* layout = nullptr;  // this and the next outlive the rows
    KeptPages* kept = nullptr;
  };

  // Null when something in the files is out of the common. Files are read one after another; all have `columns`
  // columns. At the first look pages are kept for those who read the rows next; whoever reads all columns of them
  // leaves none.
  static std::unique_ptr<ParquetRows> open(std::vector<File> files, std::size_t columns, std::vector<Column> wanted,
                                           bool isFirstLook);

  // Makes the next rows the current ones; false at the end. Fails when a file is damaged.
  Outcome<bool> next();
  std::size_t rows() const { return rows_; }
  // Of the wanted columns: values, and a bit per row that is there; null: all are.
  std::pair<const void*, const std::uint64_t*> values(std::size_t wanted) const {
    return {cursors_[wanted]->values(), cursors_[wanted]->present()};
  }

 private:
  ParquetRows() = default;
  void beginFile();
  void beginGroup();
  Problem damaged(const Column& column) const;

  bool isFirstLook_ = false;
  std::vector<File> files_;
  std::vector<Column> wanted_;
  std::size_t file_ = 0;
  std::size_t group_ = 0;  // the next one
  std::int64_t leftInGroup_ = 0;
  std::vector<std::unique_ptr<ColumnValues>> cursors_;  // of the wanted columns in the current file
  std::size_t rows_ = 0;
};

}  // namespace workbench::data
