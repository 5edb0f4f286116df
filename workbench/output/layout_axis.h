// LayoutAxis: the rows, the columns or the layers of a table's grid, each line a combination of categories of the
// dimensions that stand there, the outermost first.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench::output {

// One dimension with what its layout needs.
struct AxisDimension {
  const Dimension* dimension = nullptr;
  std::size_t number = 0;  // in the table
  bool showsTitle = true;
  std::vector<std::string> titles;                // per node, as shown
  std::vector<std::int32_t> leaves;               // in the order shown
  std::vector<std::int32_t> positions;            // per node, among the leaves
  std::vector<std::vector<std::int32_t>> levels;  // per leaf position the nodes whose titles are shown, outermost first
  std::int32_t depth = 1;                         // the most levels of any leaf
};

struct AxisLines {
  std::int32_t count = 0;
  std::vector<std::int32_t> positions;   // per line and dimension of the axis the leaf's position
  std::vector<std::int32_t> lineOfCell;  // per cell that was asked for
};

// The lines of an axis for the given cells of the table. An axis without dimensions is one line; one with a single
// dimension has all its leaves, any other the combinations that have a cell.
AxisLines axisLines(const Table& table, const std::vector<AxisDimension>& dimensions,
                    std::span<const std::uint32_t> cells);

// A header along an axis: from `line` over `lines` lines, on level `level` over `levels` levels.
struct AxisHeader {
  std::size_t dimension = 0;  // of the axis
  std::int32_t node = 0;
  std::int32_t line = 0;
  std::int32_t lines = 1;
  std::int32_t level = 0;
  std::int32_t levels = 1;
};

// All headers, level by level. With titles, a dimension's own title is a level of its own before its categories.
std::vector<AxisHeader> axisHeaders(const std::vector<AxisDimension>& dimensions, const AxisLines& lines,
                                    bool withTitles);

// The levels that axisHeaders fills.
std::int32_t axisLevels(const std::vector<AxisDimension>& dimensions, bool withTitles);

}  // namespace workbench::output
