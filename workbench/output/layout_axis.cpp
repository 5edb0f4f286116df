#include "workbench/output/layout_axis.h"

#include <algorithm>

namespace workbench::output {
namespace {

std::int32_t positionOf(const Table& table, const AxisDimension& dimension, std::uint32_t cell) {
  return dimension.positions[static_cast<std::size_t>(table.at(cell)[dimension.number])];
}

// The levels of a dimension's title and categories.
std::int32_t levelsOf(const AxisDimension& dimension, bool withTitles) {
  return dimension.depth + (withTitles && dimension.showsTitle ? 1 : 0);
}

// Makes the headers of one dimension: those of its title and of every leaf and group on each run of lines that agree
// in all dimensions outside it.
class DimensionHeaders {
 public:
  DimensionHeaders(const std::vector<AxisDimension>& dimensions, const AxisLines& lines, std::size_t dimension,
                   std::int32_t firstLevel, bool withTitle)
      : dimensions_(dimensions), lines_(lines), dimension_(dimension), level_(firstLevel), withTitle_(withTitle) {}

  void appendTo(std::vector<AxisHeader>& headers) {
    if (withTitle_) {
      appendLevel(headers, [](std::int32_t) { return std::int32_t{0}; }, [](std::int32_t) { return true; }, 1);
      ++level_;
    }
    const std::int32_t depth = own().depth;
    for (std::int32_t level = 0; level < depth; ++level) {
      const auto nodeOf = [&](std::int32_t line) {
        const std::vector<std::int32_t>& shown = levelsOfLine(line);
        return shown[std::min(static_cast<std::size_t>(level), shown.size() - 1)];
      };
      const auto startsHere = [&](std::int32_t line) {
        return static_cast<std::size_t>(level) < levelsOfLine(line).size();
      };
      appendLevel(headers, nodeOf, startsHere, depth - level);
      ++level_;
    }
  }

 private:
  const AxisDimension& own() const { return dimensions_[dimension_]; }

  std::int32_t position(std::int32_t line, std::size_t dimension) const {
    return lines_.positions[static_cast<std::size_t>(line) * dimensions_.size() + dimension];
  }

  const std::vector<std::int32_t>& levelsOfLine(std::int32_t line) const {
    return own().levels[static_cast<std::size_t>(position(line, dimension_))];
  }

  bool agreesOutside(std::int32_t line, std::int32_t other) const {
    for (std::size_t outer = 0; outer < dimension_; ++outer) {
      if (position(line, outer) != position(other, outer)) return false;
    }
    return true;
  }

  // One header per run of lines with the same node. A leaf covers the levels below it that it has none on.
  void appendLevel(std::vector<AxisHeader>& headers, auto nodeOf, auto startsHere, std::int32_t levelsLeft) {
    for (std::int32_t line = 0; line < lines_.count;) {
      const std::int32_t node = nodeOf(line);
      std::int32_t end = line + 1;
      while (end < lines_.count && nodeOf(end) == node && agreesOutside(line, end)) ++end;
      const bool isGroup = own().dimension->nodes[static_cast<std::size_t>(node)].isGroup;
      if (startsHere(line)) {
        headers.push_back({dimension_, node, line, end - line, level_, isGroup ? 1 : levelsLeft});
      }
      line = end;
    }
  }

  const std::vector<AxisDimension>& dimensions_;
  const AxisLines& lines_;
  std::size_t dimension_;
  std::int32_t level_;
  bool withTitle_;
};

}  // namespace

AxisLines axisLines(const Table& table, const std::vector<AxisDimension>& dimensions,
                    std::span<const std::uint32_t> cells) {
  AxisLines lines;
  lines.lineOfCell.assign(cells.size(), 0);
  if (dimensions.empty()) {
    lines.count = 1;
    return lines;
  }
  if (dimensions.size() == 1) {
    lines.count = static_cast<std::int32_t>(dimensions[0].leaves.size());
    for (std::int32_t line = 0; line < lines.count; ++line) lines.positions.push_back(line);
    for (std::size_t index = 0; index < cells.size(); ++index) {
      lines.lineOfCell[index] = positionOf(table, dimensions[0], cells[index]);
    }
    return lines;
  }

  // Ranks the cells' combinations dimension by dimension: what a cell has had so far is one number, so two numbers of
  // 32 bits are enough however many dimensions there are.
  std::vector<std::uint64_t> keys(cells.size());
  std::vector<std::uint64_t> ranked;
  for (const AxisDimension& dimension : dimensions) {
    for (std::size_t index = 0; index < cells.size(); ++index) {
      keys[index] = static_cast<std::uint64_t>(lines.lineOfCell[index]) << 32 |
                    static_cast<std::uint64_t>(positionOf(table, dimension, cells[index]));
    }
    ranked = keys;
    std::sort(ranked.begin(), ranked.end());
    ranked.erase(std::unique(ranked.begin(), ranked.end()), ranked.end());
    for (std::size_t index = 0; index < cells.size(); ++index) {
      const auto rank = std::lower_bound(ranked.begin(), ranked.end(), keys[index]);
      lines.lineOfCell[index] = static_cast<std::int32_t>(rank - ranked.begin());
    }
  }
  lines.count = static_cast<std::int32_t>(ranked.size());
  lines.positions.resize(ranked.size() * dimensions.size());
  for (std::size_t index = 0; index < cells.size(); ++index) {
    const std::size_t start = static_cast<std::size_t>(lines.lineOfCell[index]) * dimensions.size();
    for (std::size_t number = 0; number < dimensions.size(); ++number) {
      lines.positions[start + number] = positionOf(table, dimensions[number], cells[index]);
    }
  }
  return lines;
}

std::vector<AxisHeader> axisHeaders(const std::vector<AxisDimension>& dimensions, const AxisLines& lines,
                                    bool withTitles) {
  std::vector<AxisHeader> headers;
  std::int32_t level = 0;
  for (std::size_t number = 0; number < dimensions.size(); ++number) {
    const bool withTitle = withTitles && dimensions[number].showsTitle;
    DimensionHeaders(dimensions, lines, number, level, withTitle).appendTo(headers);
    level += levelsOf(dimensions[number], withTitles);
  }
  return headers;
}

std::int32_t axisLevels(const std::vector<AxisDimension>& dimensions, bool withTitles) {
  std::int32_t levels = 0;
  for (const AxisDimension& dimension : dimensions) levels += levelsOf(dimension, withTitles);
  return levels;
}

}  // namespace workbench::output
