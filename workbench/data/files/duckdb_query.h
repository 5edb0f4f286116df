// DuckDbQuery: the rows of a query, chunk by chunk, in their order.
//
// Each query runs over a connection of its own. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/data/files/duckdb_library.h"
#include "workbench/data/files/sql_text.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

class DuckDbQuery {
 public:
  static Outcome<std::unique_ptr<DuckDbQuery>> start(const std::string& sql);
  ~DuckDbQuery();
  DuckDbQuery(const DuckDbQuery&) = delete;
  DuckDbQuery& operator=(const DuckDbQuery&) = delete;

  std::size_t columns() const { return columns_; }

  // Makes the next chunk the current one; false at the end. What the former chunk held is gone.
  Outcome<bool> nextChunk();
  std::size_t rows() const { return rows_; }
  // Gives the query to a callable once per chunk that is left, each being the current one then.
  template <class Visit>
  Outcome<Done> eachChunk(Visit visit) {
    while (true) {
      const Outcome<bool> isThere = nextChunk();
      if (!isThere) return isThere.problem();
      if (!*isThere) return Done{};
      visit(static_cast<const DuckDbQuery&>(*this));
    }
  }

  // One column of texts in the current chunk.
  struct Column {
    const duckdb_string_t* values = nullptr;
    const std::uint64_t* present = nullptr;  // a bit per row; null: all are

    std::string_view operator[](std::size_t row) const {
      if (present != nullptr && (present[row / 64] >> (row % 64) & 1) == 0) return "";  // never a null pointer
      const duckdb_string_t& value = values[row];
      constexpr std::uint32_t longestInlined = 12;
      const std::uint32_t length = value.value.inlined.length;
      return {length <= longestInlined ? value.value.inlined.inlined : value.value.pointer.ptr, length};
    }
  };
  // Requires: the column's values are texts.
  Column column(std::size_t index) const;
  // The values of any column: one after another in the current chunk as DuckDB lays them down, and a bit per row that
  // is there; null: all are.
  std::pair<const void*, const std::uint64_t*> values(std::size_t index) const;

 private:
  explicit DuckDbQuery(const DuckDbLibrary& library) : library_(library) {}
  Outcome<Done> execute(duckdb_database database, const std::string& sql);

  const DuckDbLibrary& library_;
  duckdb_connection connection_ = nullptr;
  duckdb_prepared_statement statement_ = nullptr;
  duckdb_result result_{};
  duckdb_data_chunk chunk_ = nullptr;
  std::size_t columns_ = 0;
  std::size_t rows_ = 0;
};

// What a query gives first; nothing: it gives no row. Requires: its first column is one of texts.
Outcome<std::optional<std::string>> firstText(const std::string& sql);

// Runs a statement to its end: how many rows it wrote.
Outcome<std::uint64_t> rowsWritten(const std::string& sql);

}  // namespace workbench::data
