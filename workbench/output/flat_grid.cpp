#include "workbench/output/flat_grid.h"

namespace workbench::output {

FlatGrid::FlatGrid(const TableLayout& layout)
    : layout_(layout),
      above_(static_cast<std::size_t>(layout.columns)),
      corner_(static_cast<std::size_t>(layout.headerColumns), nullptr),
      rowHeaders_(static_cast<std::size_t>(layout.rows) * static_cast<std::size_t>(layout.headerColumns), nullptr) {
  for (const HeaderCell& cell : layout.columnHeaders) {  // from the top down
    for (std::int32_t column = cell.column; column < cell.column + cell.columnSpan; ++column) {
      above_[static_cast<std::size_t>(column)].push_back(&cell);
    }
  }
  for (const HeaderCell& cell : layout.corner) {
    for (std::int32_t level = cell.column; level < cell.column + cell.columnSpan; ++level) {
      corner_[static_cast<std::size_t>(level)] = &cell;
    }
  }
  for (const HeaderCell& cell : layout.rowHeaders) {
    for (std::int32_t row = cell.row; row < cell.row + cell.rowSpan; ++row) {
      for (std::int32_t level = cell.column; level < cell.column + cell.columnSpan; ++level) {
        rowHeaders_[static_cast<std::size_t>(row) * corner_.size() + static_cast<std::size_t>(level)] = &cell;
      }
    }
  }
}

std::string FlatGrid::columnHeader(std::int32_t column, const Show& show) const {
  std::string all;
  for (const HeaderCell* cell : above_[static_cast<std::size_t>(column)]) {
    const std::string text = show(*cell);
    if (!all.empty() && !text.empty()) all += " / ";
    all += text;
  }
  return all;
}

const HeaderCell* FlatGrid::rowHeader(std::int32_t row, std::int32_t level) const {
  return rowHeaders_[static_cast<std::size_t>(row) * corner_.size() + static_cast<std::size_t>(level)];
}

}  // namespace workbench::output
