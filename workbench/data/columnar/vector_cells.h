// VectorCells: some values of a column, one after another, as DuckDB hands them out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "workbench/data/cells/row_presence.h"
#include "workbench/data/files/duckdb_query.h"

namespace workbench::data {

struct VectorCells {
  static constexpr std::size_t longestInlined = 12;  // bytes of a text that lies in its duckdb_string_t

  const void* values = nullptr;
  RowPresence presence;

  bool has(std::size_t row) const { return presence.has(row); }
  template <class Value>
  const Value* as() const {
    return static_cast<const Value*>(values);
  }
  // Requires, here and below: they are texts. The length is in bytes; that row has one.
  std::size_t textLength(std::size_t row) const { return as<duckdb_string_t>()[row].value.inlined.length; }
  std::string_view text(std::size_t row) const {
    return DuckDbQuery::Column{as<duckdb_string_t>(), presence.bits}[row];
  }
};

}  // namespace workbench::data
