// VectorCells: some values of a column, one after another, as DuckDB hands them out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {

struct VectorCells {
  const void* values = nullptr;
  const std::uint64_t* present = nullptr;  // a bit per row; null: all are

  bool has(std::size_t row) const { return present == nullptr || (present[row / 64] >> (row % 64) & 1) != 0; }
  template <class Value>
  const Value* as() const {
    return static_cast<const Value*>(values);
  }
  // Requires: they are texts.
  std::string_view text(std::size_t row) const { return DuckDbQuery::Column{as<duckdb_string_t>(), present}[row]; }
};

}  // namespace workbench::data
