#include "workbench/output/table_layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "workbench/output/layout_axis.h"

namespace workbench::output {
namespace {

constexpr int placeColumns = static_cast<int>(BpPlace::columns);
constexpr int placeLayers = static_cast<int>(BpPlace::layers);

// The dimensions of a table by the place where they stand, each list in the order of nesting.
struct Axes {
  std::vector<AxisDimension> rows;
  std::vector<AxisDimension> columns;
  std::vector<AxisDimension> layers;
};

std::vector<std::string> nodeTitles(const Dimension& dimension, const text::Wording& wording, TextStyle style) {
  std::vector<std::string> titles(dimension.nodes.size());
  titles[0] = shown(dimension.title, wording, style);
  for (const Category& group : dimension.nodes) {
    std::vector<const Text*> texts;
    for (const std::int32_t child : group.children) {
      texts.push_back(&dimension.nodes[static_cast<std::size_t>(child)].title);
    }
    const std::vector<std::string> together = shownTogether(texts, wording, style);
    for (std::size_t index = 0; index < together.size(); ++index) {
      titles[static_cast<std::size_t>(group.children[index])] = together[index];
    }
  }
  return titles;
}

// Per leaf in the order shown the nodes from the outermost group with a title down to the leaf.
std::vector<std::vector<std::int32_t>> leafLevels(const Dimension& dimension, const std::vector<std::int32_t>& leaves) {
  std::vector<std::int32_t> parents(dimension.nodes.size(), -1);
  for (std::size_t node = 0; node < dimension.nodes.size(); ++node) {
    for (const std::int32_t child : dimension.nodes[node].children) {
      parents[static_cast<std::size_t>(child)] = static_cast<std::int32_t>(node);
    }
  }
  std::vector<std::vector<std::int32_t>> all;
  all.reserve(leaves.size());
  for (const std::int32_t leaf : leaves) {
    std::vector<std::int32_t> levels{leaf};
    for (std::int32_t node = parents[static_cast<std::size_t>(leaf)]; node > 0;
         node = parents[static_cast<std::size_t>(node)]) {
      if (dimension.nodes[static_cast<std::size_t>(node)].showTitle) levels.push_back(node);
    }
    std::reverse(levels.begin(), levels.end());
    all.push_back(std::move(levels));
  }
  return all;
}

AxisDimension axisDimension(const Table& table, std::size_t number, const text::Wording& wording, TextStyle style) {
  AxisDimension axis;
  axis.dimension = &table.dimensions[number];
  axis.number = number;
  axis.showsTitle = !(axis.dimension->position && axis.dimension->position->flags[0]);
  axis.titles = nodeTitles(*axis.dimension, wording, style);
  axis.leaves = axis.dimension->leaves();
  axis.positions = axis.dimension->leafPositions();
  axis.levels = leafLevels(*axis.dimension, axis.leaves);
  for (const std::vector<std::int32_t>& levels : axis.levels) {
    axis.depth = std::max(axis.depth, static_cast<std::int32_t>(levels.size()));
  }
  return axis;
}

Axes axesOf(const Table& table, const text::Wording& wording, TextStyle style) {
  // By index, then by time of making; a dimension that was never placed stands innermost.
  std::vector<std::size_t> order(table.dimensions.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto nesting = [&](std::size_t number) {
    const std::optional<Position>& position = table.dimensions[number].position;
    return std::pair(!position.has_value(), position ? position->index : 0);
  };
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t left, std::size_t right) { return nesting(left) < nesting(right); });

  Axes axes;
  for (const std::size_t number : order) {
    const std::optional<Position>& position = table.dimensions[number].position;
    const int place = position ? position->place : static_cast<int>(BpPlace::rows);
    std::vector<AxisDimension>& axis =
        place == placeColumns ? axes.columns : (place == placeLayers ? axes.layers : axes.rows);
    axis.push_back(axisDimension(table, number, wording, style));
  }
  return axes;
}

void placeCells(TableLayout& layout, const AxisLines& rows, const AxisLines& columns,
                std::span<const std::uint32_t> cells) {
  layout.rowStarts.assign(static_cast<std::size_t>(rows.count) + 1, 0);
  for (const std::int32_t row : rows.lineOfCell) ++layout.rowStarts[static_cast<std::size_t>(row) + 1];
  std::partial_sum(layout.rowStarts.begin(), layout.rowStarts.end(), layout.rowStarts.begin());
  std::vector<std::size_t> next(layout.rowStarts.begin(), layout.rowStarts.end() - 1);
  layout.placedCells.resize(cells.size());
  for (std::size_t index = 0; index < cells.size(); ++index) {
    std::size_t& place = next[static_cast<std::size_t>(rows.lineOfCell[index])];
    layout.placedCells[place++] = {columns.lineOfCell[index], cells[index]};
  }
  for (std::int32_t row = 0; row < rows.count; ++row) {
    const auto start =
        layout.placedCells.begin() + static_cast<std::ptrdiff_t>(layout.rowStarts[static_cast<std::size_t>(row)]);
    const auto end =
        layout.placedCells.begin() + static_cast<std::ptrdiff_t>(layout.rowStarts[static_cast<std::size_t>(row) + 1]);
    std::sort(start, end, [](const PlacedCell& left, const PlacedCell& right) { return left.column < right.column; });
  }
}

bool standsBefore(const HeaderCell& left, const HeaderCell& right) {
  return std::pair(left.row, left.column) < std::pair(right.row, right.column);
}

HeaderCell headerCell(const std::vector<AxisDimension>& axis, const AxisHeader& header) {
  const AxisDimension& dimension = axis[header.dimension];
  const std::size_t node = static_cast<std::size_t>(header.node);
  HeaderCell cell;
  cell.text = dimension.titles[node];
  cell.notes = dimension.dimension->nodes[node].notes;
  cell.title = &dimension.dimension->nodes[node].title;
  return cell;
}

void placeHeaders(TableLayout& layout, const Axes& axes, const AxisLines& rows, const AxisLines& columns) {
  layout.headerRows = axisLevels(axes.columns, true);
  layout.headerColumns = axisLevels(axes.rows, false);
  for (const AxisHeader& header : axisHeaders(axes.columns, columns, true)) {
    HeaderCell cell = headerCell(axes.columns, header);
    cell.row = header.level;
    cell.rowSpan = header.levels;
    cell.column = header.line;
    cell.columnSpan = header.lines;
    layout.columnHeaders.push_back(std::move(cell));
  }
  for (const AxisHeader& header : axisHeaders(axes.rows, rows, false)) {
    HeaderCell cell = headerCell(axes.rows, header);
    cell.row = header.line;
    cell.rowSpan = header.lines;
    cell.column = header.level;
    cell.columnSpan = header.levels;
    layout.rowHeaders.push_back(std::move(cell));
  }
  std::stable_sort(layout.columnHeaders.begin(), layout.columnHeaders.end(), standsBefore);
  std::stable_sort(layout.rowHeaders.begin(), layout.rowHeaders.end(), standsBefore);

  std::int32_t column = 0;
  for (const AxisDimension& dimension : axes.rows) {
    if (dimension.showsTitle) {
      if (layout.headerRows == 0) layout.headerRows = 1;
      layout.corner.push_back(
          {dimension.titles[0], {}, 0, column, layout.headerRows, dimension.depth, &dimension.dimension->title});
    }
    column += dimension.depth;
  }
}

// Of cases as rows: the columns in groups that stand before the first one in none.
std::int32_t keyColumnsOf(const Axes& axes) {
  const auto hasCases = [](const AxisDimension& dimension) {
    return dimension.dimension->position && dimension.dimension->position->flags[1];
  };
  if (axes.rows.size() != 1 || axes.columns.size() != 1 || !hasCases(axes.rows.front())) return 0;
  const std::vector<std::vector<std::int32_t>>& levels = axes.columns.front().levels;
  const auto plain = std::find_if(levels.begin(), levels.end(),
                                  [](const std::vector<std::int32_t>& nodes) { return nodes.size() == 1; });
  return plain == levels.end() ? 0 : static_cast<std::int32_t>(plain - levels.begin());
}

std::vector<std::string> layerLines(const std::vector<AxisDimension>& dimensions, const AxisLines& lines,
                                    std::int32_t line) {
  std::vector<std::string> texts;
  for (std::size_t number = 0; number < dimensions.size(); ++number) {
    const AxisDimension& dimension = dimensions[number];
    const std::size_t position =
        static_cast<std::size_t>(lines.positions[static_cast<std::size_t>(line) * dimensions.size() + number]);
    std::string text = dimension.showsTitle ? dimension.titles[0] + ": " : std::string();
    const char* separator = "";
    for (const std::int32_t node : dimension.levels[position]) {
      text += separator + dimension.titles[static_cast<std::size_t>(node)];
      separator = ", ";
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace

std::vector<TableLayout> layoutsOf(const Table& table, const text::Wording& wording, TextStyle style) {
  std::vector<TableLayout> layouts;
  if (table.destroyed || table.cells.empty()) return layouts;
  const Axes axes = axesOf(table, wording, style);
  std::vector<std::uint32_t> all(table.cells.size());
  std::iota(all.begin(), all.end(), std::uint32_t{0});

  const AxisLines layers = axisLines(table, axes.layers, all);
  std::vector<std::vector<std::uint32_t>> cellsOfLayer(static_cast<std::size_t>(layers.count));
  for (const std::uint32_t cell : all) {
    cellsOfLayer[static_cast<std::size_t>(layers.lineOfCell[cell])].push_back(cell);
  }
  for (std::int32_t layer = 0; layer < layers.count; ++layer) {
    const std::vector<std::uint32_t>& cells = cellsOfLayer[static_cast<std::size_t>(layer)];
    if (cells.empty()) continue;
    TableLayout layout;
    layout.table = &table;
    layout.title = headingOf(table, wording, style);
    layout.layers = layerLines(axes.layers, layers, layer);
    if (table.caption) layout.caption = shown(*table.caption, wording, style);
    for (const Text& footnote : table.footnotes) layout.footnotes.push_back(shown(footnote, wording, style));
    const AxisLines rows = axisLines(table, axes.rows, cells);
    const AxisLines columns = axisLines(table, axes.columns, cells);
    layout.rows = rows.count;
    layout.columns = columns.count;
    layout.keyColumns = keyColumnsOf(axes);
    placeHeaders(layout, axes, rows, columns);
    placeCells(layout, rows, columns, cells);
    layouts.push_back(std::move(layout));
  }
  return layouts;
}

std::string headingOf(const Table& table, const text::Wording& wording, TextStyle style) {
  const auto* key = std::get_if<StringText>(&table.title.held);
  const bool isUnknown = key != nullptr && key->translate && !wording.has(key->key);
  const std::string other = isUnknown ? shown(table.defaultTitle, wording, style) : std::string();
  return other.empty() ? shown(table.title, wording, style) : other;
}

std::string footnoteMark(std::int32_t note) {
  constexpr std::int32_t letters = 26;
  std::string mark;
  for (std::int32_t rest = note + 1; rest > 0; rest = (rest - 1) / letters) {
    mark.insert(mark.begin(), static_cast<char>('a' + (rest - 1) % letters));
  }
  return mark;
}

bool isNumber(const Text& text) {
  if (std::holds_alternative<NumberText>(text.held)) return true;
  const auto* value = std::get_if<ValueText>(&text.held);
  return value != nullptr && std::holds_alternative<double>(value->value);
}

bool showsSeveralValues(const Text& text) {
  const auto* composite = std::get_if<CompositeText>(&text.held);
  return composite != nullptr && composite->items.size() > 1 && composite->pattern.find('\n') != std::string::npos;
}

}  // namespace workbench::output
