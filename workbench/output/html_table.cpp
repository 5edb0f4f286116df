#include "workbench/output/html_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "workbench/output/html_text.h"

namespace workbench::output {
namespace {

// Beyond this many cells they do not name their headers, which the scopes tell anyway: the page would be mostly names.
constexpr std::size_t mostCellsWithHeaders = 20000;

std::string moreThanOne(std::int32_t span) { return span > 1 ? std::to_string(span) : std::string(); }

// What the cell's number sorts by, where that is not what is shown.
std::string sortValue(const Text& content, const std::string& shownText) {
  double number = 0;
  if (const auto* text = std::get_if<NumberText>(&content.held)) {
    number = text->value;
  } else if (const auto* value = std::get_if<ValueText>(&content.held)) {
    if (!std::holds_alternative<double>(value->value)) return {};
    number = std::get<double>(value->value);
  } else {
    return {};
  }
  const std::string plain = fullNumber(number);
  return isSystemMissing(number) || plain == shownText ? std::string() : plain;
}

// A header without a text names nothing.
bool isNameless(const HeaderCell& header) { return header.text.empty() && header.notes.empty(); }

void addWord(std::string& words, const std::string& word) {
  if (!words.empty() && !word.empty()) words += ' ';
  words += word;
}

bool isZero(const Text& content) {
  const auto* number = std::get_if<NumberText>(&content.held);
  return number != nullptr && number->value == 0;
}

class TableWriting {
 public:
  TableWriting(std::ostream& out, const TableLayout& layout, const std::string& id, const text::Wording& wording)
      : out_(out),
        layout_(layout),
        id_(id),
        wording_(wording),
        namesHeaders_((layout.headerRows > 1 || layout.headerColumns > 1) &&
                      layout.placedCells.size() <= mostCellsWithHeaders),
        areRowsSingle_(std::all_of(layout.rowHeaders.begin(), layout.rowHeaders.end(),
                                   [](const HeaderCell& header) { return header.rowSpan == 1; })),
        columns_(static_cast<std::size_t>(layout.columns)) {
    lookAtCells();
  }

  void writeTable(const std::string& headingId) {
    const HtmlElement box(out_, "div",
                          {{"class", "scroll"}, {"role", "group"}, {"tabindex", "0"}, {"aria-labelledby", headingId}});
    const std::string sides = layout_.headerColumns == 1 ? "one-label" : "";
    const bool canBeSorted = areRowsSingle_ && layout_.rows > 1 && layout_.headerRows > 0;
    const HtmlElement table(out_, "table", {{"class", sides}, {"data-tools", canBeSorted ? "yes" : ""}});
    writeHtml(out_, "caption", {{"class", layout_.layers.empty() ? "unseen" : ""}}, captionText());
    writeHead();
    writeBody();
  }

  void writeNotes() {
    if (!layout_.caption.empty()) writeHtml(out_, "p", {{"class", "table-note"}}, layout_.caption);
    if (layout_.footnotes.empty()) return;
    const HtmlElement list(out_, "ul", {{"class", "footnotes"}});
    for (std::size_t note = 0; note < layout_.footnotes.size(); ++note) {
      const std::string mark = footnoteMark(static_cast<std::int32_t>(note));
      const HtmlElement item(out_, "li", {{"id", noteId(mark)}});
      writeHtml(out_, "sup", {}, mark);
      out_ << ' ' << htmlEscaped(layout_.footnotes[note]);
    }
  }

 private:
  struct Column {
    std::size_t cells = 0;
    std::size_t numbers = 0;
    std::size_t differing = 0;  // cells with several values
    std::string headers;        // the ids of those above it
  };

  void lookAtCells() {
    for (const PlacedCell& placed : layout_.placedCells) {
      const Text& content = *layout_.table->cells[placed.cell].content;
      Column& column = columns_[static_cast<std::size_t>(placed.column)];
      ++column.cells;
      if (isNumber(content)) ++column.numbers;
      if (showsSeveralValues(content)) ++column.differing;
    }
  }

  std::string captionText() const {
    if (layout_.layers.empty()) return layout_.title;
    return fmt::format("{}", fmt::join(layout_.layers, "\n"));
  }

  void writeHead() {
    if (layout_.headerRows == 0) return;
    const HtmlElement head(out_, "thead");
    std::size_t next = 0;  // of the column headers
    for (std::int32_t row = 0; row < layout_.headerRows; ++row) {
      const HtmlElement line(out_, "tr");
      if (row == 0) writeCorner();
      for (; next < layout_.columnHeaders.size() && layout_.columnHeaders[next].row == row; ++next) {
        writeColumnHeader(layout_.columnHeaders[next], next);
      }
    }
  }

  void writeCorner() {
    auto header = layout_.corner.begin();
    for (std::int32_t column = 0; column < layout_.headerColumns;) {
      if (header != layout_.corner.end() && header->column == column) {
        writeHeader(*header, {{"scope", "col"},
                              {"rowspan", moreThanOne(header->rowSpan)},
                              {"colspan", moreThanOne(header->columnSpan)},
                              {"data-column", header->columnSpan == 1 ? std::to_string(column) : ""}});
        column += header->columnSpan;
        ++header;
        continue;
      }
      const std::int32_t end = header != layout_.corner.end() ? header->column : layout_.headerColumns;
      writeHtml(out_, "td", {{"rowspan", moreThanOne(layout_.headerRows)}, {"colspan", moreThanOne(end - column)}}, "");
      column = end;
    }
  }

  void writeColumnHeader(const HeaderCell& header, std::size_t number) {
    const std::string id = namesHeaders_ && !isNameless(header) ? fmt::format("{}-c{}", id_, number) : "";
    for (std::int32_t column = header.column; column < header.column + header.columnSpan; ++column) {
      addWord(columns_[static_cast<std::size_t>(column)].headers, id);
    }
    const bool isLeaf = header.columnSpan == 1 && header.row + header.rowSpan == layout_.headerRows;
    const Column& column = columns_[static_cast<std::size_t>(header.column)];
    const bool isNumeric = isLeaf && column.cells > 0 && column.cells == column.numbers;
    const std::string differing = isLeaf && column.differing > 0 ? std::to_string(column.differing) : "";
    writeHeader(header, {{"class", header.columnSpan > 1 ? "over" : (isNumeric ? "n" : "")},
                         {"id", id},
                         {"scope", "col"},
                         {"rowspan", moreThanOne(header.rowSpan)},
                         {"colspan", moreThanOne(header.columnSpan)},
                         {"data-column", isLeaf ? std::to_string(layout_.headerColumns + header.column) : ""},
                         {"data-differing", differing}});
  }

  void writeHeader(const HeaderCell& header, std::initializer_list<HtmlAttribute> attributes) {
    if (isNameless(header)) {
      writeHtml(out_, "td", {{"rowspan", moreThanOne(header.rowSpan)}, {"colspan", moreThanOne(header.columnSpan)}},
                "");
      return;
    }
    const HtmlElement element(out_, "th", attributes);
    out_ << htmlEscaped(header.text);
    writeMarks(header.notes);
  }

  void writeBody() {
    const HtmlElement body(out_, "tbody");
    std::size_t next = 0;  // of the row headers
    std::vector<std::string> above(static_cast<std::size_t>(layout_.headerColumns));
    for (std::int32_t row = 0; row < layout_.rows; ++row) {
      const HtmlElement line(out_, "tr");
      for (; next < layout_.rowHeaders.size() && layout_.rowHeaders[next].row == row; ++next) {
        const HeaderCell& header = layout_.rowHeaders[next];
        const std::string id = namesHeaders_ && !isNameless(header) ? fmt::format("{}-r{}", id_, next) : "";
        std::fill(above.begin() + header.column, above.end(), std::string());
        above[static_cast<std::size_t>(header.column)] = id;
        writeHeader(header, {{"id", id},
                             {"scope", "row"},
                             {"rowspan", moreThanOne(header.rowSpan)},
                             {"colspan", moreThanOne(header.columnSpan)}});
      }
      std::string rowHeaders;
      for (const std::string& id : above) addWord(rowHeaders, id);
      writeCells(row, rowHeaders);
    }
  }

  void writeCells(std::int32_t row, const std::string& rowHeaders) {
    std::int32_t column = 0;
    for (const PlacedCell& placed : layout_.cellsOf(row)) {
      for (; column < placed.column; ++column) out_ << "<td></td>";
      std::string headers = columns_[static_cast<std::size_t>(column)].headers;
      addWord(headers, rowHeaders);
      writeCell(layout_.table->cells[placed.cell], headers);
      ++column;
    }
    for (; column < layout_.columns; ++column) out_ << "<td></td>";
  }

  void writeCell(const Cell& cell, const std::string& headers) {
    const Text& content = *cell.content;
    const std::string text = shown(content, wording_, pageStyle);
    if (text.empty() && cell.notes.empty()) {
      out_ << "<td></td>";
      return;
    }
    const bool differs = showsSeveralValues(content);
    const std::string kind = differs ? "differs" : (isZero(content) ? "n zero" : (isNumber(content) ? "n" : ""));
    const HtmlElement element(out_, "td",
                              {{"class", kind}, {"headers", headers}, {"data-value", sortValue(content, text)}});
    if (differs) {
      writeLines(text);
    } else {
      out_ << htmlEscaped(text);
    }
    writeMarks(cell.notes);
  }

  // One value per line, each with its own direction of writing.
  void writeLines(std::string_view text) {
    for (;;) {
      const std::size_t end = text.find('\n');
      writeHtml(out_, "bdi", {}, text.substr(0, end));
      if (end == std::string_view::npos) return;
      out_ << '\n';
      text.remove_prefix(end + 1);
    }
  }

  void writeMarks(const std::vector<std::int32_t>& notes) {
    for (const std::int32_t note : notes) {
      const std::string mark = footnoteMark(note);
      out_ << ' ';
      const HtmlElement raised(out_, "sup");
      writeHtml(out_, "a", {{"href", "#" + noteId(mark)}}, fmt::format("[{}]", mark));
    }
  }

  std::string noteId(const std::string& mark) const { return fmt::format("{}-note-{}", id_, mark); }

  std::ostream& out_;
  const TableLayout& layout_;
  const std::string& id_;
  const text::Wording& wording_;
  const bool namesHeaders_;
  const bool areRowsSingle_;
  std::vector<Column> columns_;
};

}  // namespace

void writeHtmlTable(std::ostream& out, const TableLayout& layout, const std::string& id, const std::string& headingId,
                    const text::Wording& wording) {
  TableWriting writing(out, layout, id, wording);
  writing.writeTable(headingId);
  writing.writeNotes();
}

}  // namespace workbench::output
