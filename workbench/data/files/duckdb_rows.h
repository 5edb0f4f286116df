// DuckDbRows: some rows on their way into DuckDB, in vectors of DuckDB's own.
//
// Row after row is made cell by cell; then DuckDB takes the vectors by reference, without a copy. Room is for as many
// rows as DuckDB takes at once, fewer when they are wide, so that memory is bounded whatever a row has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/files/duckdb_library.h"

namespace workbench::data {

struct DuckDbColumn {
  std::string name;  // neither empty nor that of another column, ASCII letters without regard to case
  duckdb_type type;  // one without parameters
};

class DuckDbRows {
 public:
  // Requires: there is a column.
  DuckDbRows(const DuckDbLibrary& library, const std::vector<DuckDbColumn>& columns);
  ~DuckDbRows();
  DuckDbRows(const DuckDbRows&) = delete;
  DuckDbRows& operator=(const DuckDbRows&) = delete;

  // The cells of the row that is being made, each set once before endRow(). Requires: there is room for the row.
  void setText(std::size_t column, std::string_view text);  // of a VARCHAR column; the text is copied
  template <class Value>                                    // of a column whose type DuckDB lays down as such values
  void setValue(std::size_t column, Value value) {
    if (values_[column] == nullptr) values_[column] = library_.duckdb_vector_get_data(vectors_[column]);
    static_cast<Value*>(values_[column])[rows_] = value;
  }
  void setMissing(std::size_t column);
  void endRow() { ++rows_; }

  // Whether there is no room for one more row.
  bool isFull() const { return rows_ >= mostRows_ || textBytes_ >= mostTextBytes; }
  void clear();

  // Makes a chunk of the same columns hold the rows. They have to stay as they are while it does.
  void handTo(duckdb_data_chunk chunk) const;

 private:
  static constexpr std::size_t mostTextBytes = std::size_t{1} << 22;

  const DuckDbLibrary& library_;
  duckdb_data_chunk chunk_ = nullptr;
  std::vector<duckdb_vector> vectors_;    // of the columns
  std::vector<void*> values_;             // where the columns' values lie; null as long as none is set
  std::vector<std::uint64_t*> presence_;  // a bit per row of a column; null as long as no cell is missing
  std::size_t mostRows_;
  std::size_t rows_ = 0;
  std::size_t textBytes_ = 0;
};

}  // namespace workbench::data
