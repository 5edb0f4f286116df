#include "workbench/output/terminal_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/output/cell_marks.h"
#include "workbench/output/display_text.h"
#include "workbench/output/sentences.h"
#include "workbench/output/terminal_canvas.h"
#include "workbench/output/terminal_measures.h"

namespace workbench::output {
namespace {

constexpr int mostTextLines = 8;              // of one paragraph of a cell; what goes on is cut
constexpr std::int32_t mostRowsOfBlock = 25;  // under one outer label; of a longer block not all are shown
constexpr std::int32_t rowsOfLongBlock = 20;  // of such a one
constexpr std::string_view outstandingStyle = "\x1b[1;31m";
constexpr std::string_view rule = "\xE2\x94\x80";

using Lines = std::vector<std::string>;

// The text in lines of a column; what goes on and on is cut.
Lines cellLines(const std::string& text, int width) {
  Lines lines = wrapped(text, width);
  const std::size_t paragraphs = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  const std::size_t most = paragraphs + mostTextLines - 1;
  if (lines.size() > most) {
    lines.resize(most);
    lines.back().append(static_cast<std::size_t>(width), ' ');
    lines.back() = shortened(lines.back() + '.', width);
  }
  return lines;
}

std::string repeated(std::string_view sign, int times) {
  std::string all;
  for (int time = 0; time < times; ++time) all += sign;
  return all;
}

// Where a line of a header stands in its width.
enum class Side { left, middle, right };

// What of a header cell lies in a panel.
struct HeaderPart {
  const HeaderCell* cell;
  int at;
  int width;
  Side side;
  Lines lines;
};

class TableDrawing {
 public:
  TableDrawing(const TableLayout& layout, const TextOptions& options)
      : layout_(layout), options_(options), measures_(layout, options) {}

  void draw(std::ostream& out) {
    out << emphasized(visible(layout_.title), options_) << '\n';
    for (const std::string& layer : layout_.layers) out << visible(layer) << '\n';
    for (const TerminalPanel& panel : measures_.panels()) {
      if (panel.first > 0) out << '\n';
      drawPanel(out, panel);
    }
    writeParagraph(out, layout_.caption, "");
    for (std::size_t note = 0; note < layout_.footnotes.size(); ++note) {
      writeParagraph(out, layout_.footnotes[note], fmt::format("[{}] ", footnoteMark(static_cast<std::int32_t>(note))));
    }
  }

 private:
  void drawPanel(std::ostream& out, const TerminalPanel& panel) {
    const std::string line = repeated(rule, measures_.lineWidth(panel));
    out << line << '\n';
    if (layout_.headerRows > 0) {
      drawHeader(panel);
      canvas_.writeTo(out);
      out << line << '\n';
    }
    std::size_t header = 0;
    for (std::int32_t row = 0; row < layout_.rows;) {
      const std::int32_t blockEnd = endOfBlock(row, header);
      const std::int32_t shownEnd = shownEndOfBlock(row, blockEnd);
      drawBlock(row, shownEnd, header, panel);
      canvas_.writeTo(out);
      if (shownEnd < blockEnd) writeMoreRows(out, blockEnd - shownEnd);
      while (header < layout_.rowHeaders.size() && layout_.rowHeaders[header].row < blockEnd) ++header;
      row = blockEnd;
    }
    out << line << '\n';
  }

  void drawHeader(const TerminalPanel& panel) {
    std::vector<HeaderPart> parts;
    for (const HeaderCell& cell : layout_.columnHeaders) {
      const std::optional<TerminalSpan> span = measures_.spanOf(cell, panel);
      if (!span) continue;
      parts.push_back({&cell, span->at, span->width, sideOf(cell), wrapped(terminalLabel(cell), span->width)});
    }
    for (const HeaderCell& cell : layout_.corner) {
      const int width = measures_.labelWidth(cell);
      parts.push_back({&cell, measures_.labelAt(cell.column), width, Side::left, wrapped(terminalLabel(cell), width)});
    }
    const std::vector<std::size_t> bottoms = levelBottoms(parts);
    for (const HeaderPart& part : parts) {
      const std::size_t row = lastRow(*part.cell);
      const std::size_t top = bottoms[row] - part.lines.size();
      for (std::size_t line = 0; line < part.lines.size(); ++line) {
        canvas_.paint(top + line, part.at + indent(part.side, part.lines[line], part.width), part.lines[line]);
      }
      if (row + 1 < bottoms.size()) canvas_.paint(bottoms[row], part.at, repeated(rule, part.width));
    }
  }

  static std::size_t lastRow(const HeaderCell& cell) { return static_cast<std::size_t>(cell.row + cell.rowSpan) - 1; }

  // Per level of the column headers the line behind its labels, where its rules are. A level on which nothing of the
  // panel ends takes no line.
  std::vector<std::size_t> levelBottoms(const std::vector<HeaderPart>& parts) const {
    std::vector<std::size_t> heights(static_cast<std::size_t>(layout_.headerRows), 0);
    for (const HeaderPart& part : parts) heights[lastRow(*part.cell)] = 1;
    for (const HeaderPart& part : parts) {
      std::size_t there = 0;  // on the levels above: their labels have one line at least, and a rule
      const std::size_t last = lastRow(*part.cell);
      for (std::size_t row = static_cast<std::size_t>(part.cell->row); row < last; ++row)
        there += heights[row] > 0 ? 2 : 0;
      if (part.lines.size() > there) heights[last] = std::max(heights[last], part.lines.size() - there);
    }
    std::vector<std::size_t> bottoms;
    std::size_t next = 0;
    for (const std::size_t height : heights) {
      bottoms.push_back(next + height);
      next += height > 0 ? height + 1 : 0;
    }
    return bottoms;
  }

  // Over several columns in the middle, over numbers on the right, else on the left.
  Side sideOf(const HeaderCell& cell) const {
    if (cell.columnSpan > 1) return Side::middle;
    return measures_.column(cell.column).hasOnlyNumbers ? Side::right : Side::left;
  }

  static int indent(Side side, const std::string& line, int width) {
    const int spare = std::max(0, width - displayWidth(line));
    return side == Side::left ? 0 : (side == Side::middle ? spare / 2 : spare);
  }

  // The row behind those that the outermost row label at `row` covers.
  std::int32_t endOfBlock(std::int32_t row, std::size_t header) const {
    std::int32_t end = row + 1;
    for (; header < layout_.rowHeaders.size() && layout_.rowHeaders[header].row == row; ++header) {
      end = std::max(end, row + layout_.rowHeaders[header].rowSpan);
    }
    return end;
  }

  // The row behind those of a block that are shown.
  std::int32_t shownEndOfBlock(std::int32_t row, std::int32_t end) const {
    return options_.full || end - row <= mostRowsOfBlock ? end : row + rowsOfLongBlock;
  }

  // Below the labels that the rows share, where the next one's own label would stand.
  void writeMoreRows(std::ostream& out, std::int32_t rows) {
    const std::int32_t level = std::min(1, layout_.headerColumns - 1);
    const std::string sign = shownSentence(sentences::more, {std::to_string(rows)}, options_.wording);
    canvas_.paint(0, std::clamp(measures_.limit() - displayWidth(sign), 0, measures_.labelAt(level)), sign);
    canvas_.writeTo(out);
  }

  // The rows from `row` to before `end`, which share their outermost labels.
  void drawBlock(std::int32_t row, std::int32_t end, std::size_t firstHeader, const TerminalPanel& panel) {
    std::vector<std::size_t> heights(static_cast<std::size_t>(end - row), 1);
    std::vector<std::vector<std::pair<const PlacedCell*, Lines>>> cells(heights.size());
    for (std::int32_t current = row; current < end; ++current) {
      const std::size_t index = static_cast<std::size_t>(current - row);
      const std::span<const PlacedCell> placed = layout_.cellsOf(current);
      const auto take = [&](std::int32_t first, std::int32_t behind) {
        auto cell = std::lower_bound(placed.begin(), placed.end(), first,
                                     [](const PlacedCell& left, std::int32_t column) { return left.column < column; });
        for (; cell != placed.end() && cell->column < behind; ++cell) {
          cells[index].emplace_back(&*cell, linesOf(*cell));
          heights[index] = std::max(heights[index], cells[index].back().second.size());
        }
      };
      take(0, panel.repeated);
      take(panel.first, panel.end);
    }

    std::vector<std::pair<const HeaderCell*, Lines>> labels;
    for (std::size_t header = firstHeader; header < layout_.rowHeaders.size(); ++header) {
      const HeaderCell& cell = layout_.rowHeaders[header];
      if (cell.row >= end) break;
      const int width = measures_.labelWidth(cell);
      labels.emplace_back(&cell, wrapped(terminalLabel(cell), width));
    }
    std::stable_sort(labels.begin(), labels.end(),
                     [](const auto& left, const auto& right) { return left.first->rowSpan < right.first->rowSpan; });
    for (const auto& [cell, lines] : labels) {
      const auto top = heights.begin() + (cell->row - row);
      const auto behind = heights.begin() + (std::min(cell->row + cell->rowSpan, end) - row);
      const std::size_t there = std::accumulate(top, behind, std::size_t{0});
      if (lines.size() > there) *(behind - 1) += lines.size() - there;
    }

    std::vector<std::size_t> tops(heights.size(), 0);
    std::exclusive_scan(heights.begin(), heights.end(), tops.begin(), std::size_t{0});
    canvas_.paint(tops.back() + heights.back() - 1, 0, "");
    for (const auto& [cell, lines] : labels) {
      const std::size_t top = tops[static_cast<std::size_t>(cell->row - row)];
      for (std::size_t line = 0; line < lines.size(); ++line)
        canvas_.paint(top + line, measures_.labelAt(cell->column), lines[line]);
    }
    for (std::size_t index = 0; index < cells.size(); ++index) {
      for (const auto& [placed, lines] : cells[index]) {
        for (std::size_t line = 0; line < lines.size(); ++line) {
          canvas_.paint(tops[index] + line, measures_.columnAt(placed->column, panel), lines[line], styleOf(*placed));
        }
      }
    }
  }

  // A cell that sets two values against each other stands out; its text says so by itself.
  std::string_view styleOf(const PlacedCell& placed) const {
    const bool standsOut = options_.color && setsTwoAgainstEachOther(*layout_.table->cells[placed.cell].content);
    return standsOut ? outstandingStyle : std::string_view();
  }

  // A cell's lines as they stand in its column, padded so that numbers end under each other.
  Lines linesOf(const PlacedCell& placed) const {
    const Cell& cell = layout_.table->cells[placed.cell];
    const TerminalColumn& column = measures_.column(placed.column);
    const std::string text = terminalText(*cell.content, options_);
    const std::string marks = footnoteMarks(cell.notes);
    if (isNumber(*cell.content)) return {paddedLeft(text, column.width - column.markWidth) + marks};
    return options_.full ? wrapped(text + marks, column.width) : cellLines(text + marks, column.width);
  }

  void writeParagraph(std::ostream& out, const std::string& text, const std::string& mark) const {
    if (text.empty()) return;
    const int markWidth = displayWidth(mark);
    std::string before = mark;
    for (const std::string& line : wrapped(visible(text), std::max(20, measures_.limit() - markWidth))) {
      out << before << line << '\n';
      before.assign(static_cast<std::size_t>(markWidth), ' ');
    }
  }

  const TableLayout& layout_;
  const TextOptions& options_;
  TerminalMeasures measures_;
  TerminalCanvas canvas_;
};

}  // namespace

void drawTable(std::ostream& out, const TableLayout& layout, const TextOptions& options) {
  TableDrawing(layout, options).draw(out);
}

}  // namespace workbench::output
