// What stands behind "#" in the name of data: one of the tables that a file holds ("study.duckdb#visits").
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench::data {

struct TableReference {
  std::string file;
  std::string table;  // empty: none is named
};

// The signs in the name of a file that is there belong to its name; the first behind it parts the table.
TableReference tableReference(std::string_view path);

// A data package ("datapackage.json") and perhaps one of its resources; nothing when the path names other data.
std::optional<TableReference> packageReference(std::string_view path);

}  // namespace workbench::data
