#include "workbench/output/xlsx_sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <numeric>

#include "workbench/output/display_text.h"
#include "workbench/output/sentences.h"
#include "workbench/output/value_format.h"

namespace workbench::output {
namespace {

constexpr int narrowest = 6;      // of a column, in characters
constexpr int widest = 60;        // texts are wrapped there
constexpr int widestHeader = 24;  // header texts are
constexpr int margin = 2;         // beside the text of a column
constexpr int filterButton = 3;
constexpr int widestFrozenLabels = 60;  // more would leave no room for what is scrolled
constexpr int widestOnePage = 220;      // what is wider would be printed too small on one page
constexpr double lineHeight = 15;       // in points
constexpr double highest = 409;         // of a row

std::string marksOf(const std::vector<std::int32_t>& notes) {
  std::string marks;
  for (const std::int32_t note : notes) marks += fmt::format("{}{}", marks.empty() ? " [" : ",", footnoteMark(note));
  return marks.empty() ? marks : marks + "]";
}

// Rows and columns from `top` and `left` to `bottom` and `right`, these included.
struct Area {
  lxw_row_t top = 0;
  lxw_col_t left = 0;
  lxw_row_t bottom = 0;
  lxw_col_t right = 0;
};

class SheetDrawing {
 public:
  SheetDrawing(XlsxWorkbook& workbook, lxw_worksheet* sheet, const TableLayout& layout, const text::Wording& wording,
               const XlsxLimits& limits)
      : workbook_(workbook), sheet_(sheet), layout_(layout), wording_(wording), limits_(limits) {}

  void draw() {
    planRoom();
    drawTop();
    drawColumnHeaders();
    drawRowHeaders();
    drawCells();
    drawBottom();
    setWidths();
    setHeights();
    setView();
  }

 private:
  // How much of the grid fits below its titles and above its notes, and where it stands.
  void planRoom() {
    lxw_row_t above = 1 + static_cast<lxw_row_t>(layout_.layers.size());
    std::int32_t below = 8 + static_cast<std::int32_t>(layout_.footnotes.size()) +
                         static_cast<std::int32_t>(std::count(layout_.caption.begin(), layout_.caption.end(), '\n'));
    below = std::min(below, limits_.rows / 4);
    const std::int32_t columnRoom = std::max(1, limits_.columns - layout_.headerColumns);
    columns_ = std::min(layout_.columns, columnRoom);
    const std::int32_t rowRoom = limits_.rows - static_cast<std::int32_t>(above) - 2 - layout_.headerRows - below;
    rows_ = std::min(layout_.rows, std::max(1, rowRoom));
    if (columns_ < layout_.columns) cuts_.push_back(cutSentence(sentences::cutColumns, columns_, layout_.columns));
    if (rows_ < layout_.rows) cuts_.push_back(cutSentence(sentences::cutRows, rows_, layout_.rows));
    headerTop_ = above + static_cast<lxw_row_t>(cuts_.size());
    bodyTop_ = headerTop_ + static_cast<lxw_row_t>(layout_.headerRows);
    widths_.assign(static_cast<std::size_t>(layout_.headerColumns + columns_), narrowest);
    const bool eachRowHasItsLabels = std::all_of(layout_.rowHeaders.begin(), layout_.rowHeaders.end(),
                                                 [](const HeaderCell& cell) { return cell.rowSpan == 1; });
    isFiltered_ = layout_.headerRows > 0 && rows_ > 1 && eachRowHasItsLabels;
  }

  std::string cutSentence(std::string_view pattern, std::int32_t kept, std::int32_t all) const {
    return shownSentence(pattern, {countText(kept, wording_.forms()), countText(all, wording_.forms())}, wording_);
  }

  void drawTop() {
    writeText(0, 0, layout_.title, XlsxLook::title);
    lxw_row_t row = 1;
    for (const std::string& layer : layout_.layers) writeText(row++, 0, layer, XlsxLook::heading);
    for (const std::string& cut : cuts_) writeText(row++, 0, cut, XlsxLook::heading);
  }

  void drawColumnHeaders() {
    for (const HeaderCell& cell : layout_.corner) {
      drawHeader(cell, areaOf(cell, headerTop_, 0), XlsxLook::columnHeader);
    }
    for (const HeaderCell& cell : layout_.columnHeaders) {
      if (cell.column >= columns_) continue;
      Area area = areaOf(cell, headerTop_, static_cast<lxw_col_t>(layout_.headerColumns));
      area.right = std::min(area.right, lastColumn());
      drawHeader(cell, area, XlsxLook::columnHeader);
    }
    // Where no title stands, the corner looks like the rest of the header.
    if (layout_.corner.empty() && layout_.headerColumns > 0) {
      fill({headerTop_, 0, bodyTop_ - 1, static_cast<lxw_col_t>(layout_.headerColumns - 1)}, XlsxLook::headerSpace);
    }
  }

  void drawRowHeaders() {
    for (const HeaderCell& cell : layout_.rowHeaders) {
      if (cell.row >= rows_) continue;
      Area area = areaOf(cell, bodyTop_, 0);
      area.bottom = std::min(area.bottom, bodyTop_ + static_cast<lxw_row_t>(rows_) - 1);
      drawHeader(cell, area, XlsxLook::rowHeader);
    }
  }

  static Area areaOf(const HeaderCell& cell, lxw_row_t top, lxw_col_t left) {
    Area area;
    area.top = top + static_cast<lxw_row_t>(cell.row);
    area.left = static_cast<lxw_col_t>(left + cell.column);
    area.bottom = area.top + static_cast<lxw_row_t>(cell.rowSpan) - 1;
    area.right = static_cast<lxw_col_t>(area.left + cell.columnSpan - 1);
    return area;
  }

  // A header covers its area as one cell. Where rows are filtered its text stands in the last of its rows, beside the
  // button of the filter.
  void drawHeader(const HeaderCell& cell, Area area, XlsxLook look) {
    if (isFiltered_ && area.bottom > area.top) {
      fill({area.top, area.left, area.bottom - 1, area.right}, XlsxLook::headerSpace);
      area.top = area.bottom;
    }
    const XlsxCell content = headerContent(cell);
    if (area.bottom > area.top || area.right > area.left) {
      workbook_.note(xlsx().worksheet_merge_range(sheet_, area.top, area.left, area.bottom, area.right, "",
                                                  workbook_.format(look, content.numberFormat)));
    }
    write(area.top, area.left, content, look);
    if (area.right == area.left) {
      widen(area.left, headerWidth(cell, look));
      if (area.bottom == area.top) heighten(area.top, cell.text, look == XlsxLook::rowHeader ? widest : widestHeader);
    }
  }

  // A number, where a category is one and reads as it does alone; beside another that reads alike it is shown in full.
  XlsxCell headerContent(const HeaderCell& cell) {
    const std::string marks = marksOf(cell.notes);
    const bool isPlainNumber =
        cell.title != nullptr && isNumber(*cell.title) && cell.text == shown(*cell.title, wording_, xlsxStyle);
    if (isPlainNumber) return xlsxCell(*cell.title, marks, wording_, limits_, remarks_);
    return {xlsxText(cell.text, limits_, remarks_) + marks, {}};
  }

  int headerWidth(const HeaderCell& cell, XlsxLook look) const {
    const std::string text = visible(cell.text) + marksOf(cell.notes);
    if (look == XlsxLook::rowHeader) return widestLine(text);
    return std::min(widestLine(text), widestHeader) + (isFiltered_ ? filterButton : 0);
  }

  // Cells without content that look like others.
  void fill(const Area& area, XlsxLook look) {
    for (lxw_row_t row = area.top; row <= area.bottom; ++row) {
      for (lxw_col_t column = area.left; column <= area.right; ++column) {
        workbook_.note(xlsx().worksheet_write_blank(sheet_, row, column, workbook_.format(look)));
      }
    }
  }

  void drawCells() {
    for (std::int32_t row = 0; row < rows_; ++row) {
      const lxw_row_t at = bodyTop_ + static_cast<lxw_row_t>(row);
      std::int32_t next = 0;
      for (const PlacedCell& placed : layout_.cellsOf(row)) {
        if (placed.column >= columns_) break;
        for (; next < placed.column; ++next) drawEmpty(at, next);
        drawCell(at, placed);
        ++next;
      }
      for (; next < columns_; ++next) drawEmpty(at, next);
    }
  }

  lxw_col_t columnAt(std::int32_t column) const { return static_cast<lxw_col_t>(layout_.headerColumns + column); }
  lxw_col_t lastColumn() const { return columnAt(columns_ - 1); }

  void drawEmpty(lxw_row_t row, std::int32_t column) {
    workbook_.note(xlsx().worksheet_write_blank(sheet_, row, columnAt(column), workbook_.format(XlsxLook::body)));
  }

  void drawCell(lxw_row_t row, const PlacedCell& placed) {
    const Cell& cell = layout_.table->cells[placed.cell];
    const std::string marks = marksOf(cell.notes);
    const XlsxCell content = xlsxCell(*cell.content, marks, wording_, limits_, remarks_);
    write(row, columnAt(placed.column), content, XlsxLook::body);
    const auto* text = std::get_if<std::string>(&content.held);
    if (text != nullptr) heighten(row, *text, widest);
    widen(columnAt(placed.column),
          text != nullptr ? widestLine(*text) : displayWidth(shown(*cell.content, wording_, xlsxStyle) + marks));
  }

  void drawBottom() {
    lxw_row_t row = bodyTop_ + static_cast<lxw_row_t>(rows_);
    for (const std::string& line : linesOf(layout_.caption)) writeText(row++, 0, line, XlsxLook::note);
    for (std::size_t note = 0; note < layout_.footnotes.size(); ++note) {
      const std::string mark = fmt::format("[{}] ", footnoteMark(static_cast<std::int32_t>(note)));
      for (const std::string& line : linesOf(mark + layout_.footnotes[note])) writeText(row++, 0, line, XlsxLook::note);
    }
    for (const XlsxRemark remark : XlsxRemarks(remarks_)) {
      writeText(row++, 0, remarkSentence(remark, limits_, wording_), XlsxLook::note);
    }
  }

  static std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = std::min(text.find('\n', start), text.size());
      lines.push_back(text.substr(start, end - start));
      start = end + 1;
    }
    return lines;
  }

  void writeText(lxw_row_t row, lxw_col_t column, const std::string& text, XlsxLook look) {
    if (row >= static_cast<lxw_row_t>(limits_.rows)) return;  // footnotes without end, below a sheet that is full
    write(row, column, {xlsxText(text, limits_, remarks_), {}}, look);
  }

  void write(lxw_row_t row, lxw_col_t column, const XlsxCell& content, XlsxLook look) {
    lxw_format* const format = workbook_.format(look, content.numberFormat);
    if (const double* number = std::get_if<double>(&content.held)) {
      workbook_.note(xlsx().worksheet_write_number(sheet_, row, column, *number, format));
    } else if (const std::string& text = std::get<std::string>(content.held); text.empty()) {
      workbook_.note(xlsx().worksheet_write_blank(sheet_, row, column, format));
    } else {
      workbook_.note(xlsx().worksheet_write_string(sheet_, row, column, text.c_str(), format));
    }
  }

  void widen(lxw_col_t column, int width) {
    int& there = widths_[column];
    there = std::clamp(width, there, widest);
  }

  // Not every spreadsheet program finds out by itself how many lines a row has.
  void heighten(lxw_row_t row, const std::string& text, int width) {
    int lines = 0;
    for (const std::string& line : linesOf(text)) lines += std::max(1, (displayWidth(line) + width - 1) / width);
    if (lines > 1) lines_[row] = std::max(lines_[row], lines);
  }

  void setHeights() {
    for (const auto& [row, lines] : lines_) {
      workbook_.note(xlsx().worksheet_set_row(sheet_, row, std::min(highest, lines * lineHeight), nullptr));
    }
  }

  void setWidths() {
    for (const HeaderCell& cell : layout_.columnHeaders) {  // a header over several columns widens the last of them
      if (cell.columnSpan < 2 || cell.column >= columns_) continue;
      const std::int32_t end = std::min(cell.column + cell.columnSpan, columns_);
      const auto first = widths_.begin() + layout_.headerColumns + cell.column;
      const auto behind = widths_.begin() + layout_.headerColumns + end;
      const int missing = headerWidth(cell, XlsxLook::columnHeader) - std::accumulate(first, behind, 0);
      if (missing > 0) *(behind - 1) += missing;
    }
    for (std::size_t column = 0; column < widths_.size(); ++column) {
      const lxw_col_t at = static_cast<lxw_col_t>(column);
      workbook_.note(xlsx().worksheet_set_column(sheet_, at, at, widths_[column] + margin, nullptr));
    }
  }

  void setView() {
    const auto labels = widths_.begin() + layout_.headerColumns;
    const bool areLabelsFrozen = std::accumulate(widths_.begin(), labels, 0) <= widestFrozenLabels;
    xlsx().worksheet_freeze_panes(sheet_, bodyTop_,
                                  static_cast<lxw_col_t>(areLabelsFrozen ? layout_.headerColumns : 0));
    if (isFiltered_) {
      workbook_.note(xlsx().worksheet_autofilter(sheet_, bodyTop_ - 1, 0, bodyTop_ + static_cast<lxw_row_t>(rows_) - 1,
                                                 lastColumn()));
    }
    xlsx().worksheet_set_landscape(sheet_);
    if (std::accumulate(widths_.begin(), widths_.end(), 0) <= widestOnePage)
      xlsx().worksheet_fit_to_pages(sheet_, 1, 0);
    workbook_.note(xlsx().worksheet_repeat_rows(sheet_, 0, bodyTop_ - 1));
    if (layout_.headerColumns > 0) {
      workbook_.note(xlsx().worksheet_repeat_columns(sheet_, 0, static_cast<lxw_col_t>(layout_.headerColumns - 1)));
    }
  }

  XlsxWorkbook& workbook_;
  lxw_worksheet* sheet_;
  const TableLayout& layout_;
  const text::Wording& wording_;
  const XlsxLimits& limits_;
  std::int32_t rows_ = 0;     // of the body, that are drawn
  std::int32_t columns_ = 0;  // likewise
  lxw_row_t headerTop_ = 0;
  lxw_row_t bodyTop_ = 0;
  bool isFiltered_ = false;
  std::vector<std::string> cuts_;  // what is said of rows and columns that are not drawn
  XlsxRemarks remarks_;
  std::vector<int> widths_;         // in characters
  std::map<lxw_row_t, int> lines_;  // of rows with several
};

}  // namespace

void drawSheet(XlsxWorkbook& workbook, lxw_worksheet* sheet, const TableLayout& layout, const text::Wording& wording,
               const XlsxLimits& limits) {
  SheetDrawing(workbook, sheet, layout, wording, limits).draw();
}

}  // namespace workbench::output
