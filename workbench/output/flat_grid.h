// FlatGrid: the headers of a grid without spans, for formats whose cells cover one row and one column.
//
// Requires: the layout outlives it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "workbench/output/table_layout.h"

namespace workbench::output {

class FlatGrid {
 public:
  explicit FlatGrid(const TableLayout& layout);

  using Show = std::function<std::string(const HeaderCell&)>;

  // The headers above a column in one text, the outermost first: "Datasets / Active".
  std::string columnHeader(std::int32_t column, const Show& show) const;
  // The title over a level of the row headers; null where none stands.
  const HeaderCell* corner(std::int32_t level) const { return corner_[static_cast<std::size_t>(level)]; }
  // The header of a row on a level; null where there is none. It starts there when its row and column say so.
  const HeaderCell* rowHeader(std::int32_t row, std::int32_t level) const;

 private:
  const TableLayout& layout_;
  std::vector<std::vector<const HeaderCell*>> above_;  // per column
  std::vector<const HeaderCell*> corner_;              // per level
  std::vector<const HeaderCell*> rowHeaders_;          // row by row, all levels
};

}  // namespace workbench::output
