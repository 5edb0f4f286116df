#include "workbench/output/markdown_writer.h"

#include <fmt/format.h>

#include <ostream>
#include <utility>
#include <vector>

#include "workbench/output/flat_grid.h"
#include "workbench/output/markdown_text.h"
#include "workbench/output/message_text.h"
#include "workbench/output/phrase.h"
#include "workbench/output/shown_results.h"

namespace workbench::output {
namespace {

constexpr TextStyle markdownStyle{NumberStyle::asFormatted, true};

std::string marks(const std::vector<std::int32_t>& notes) {
  std::string all;
  for (const std::int32_t note : notes) all += (all.empty() ? "" : ",") + footnoteMark(note);
  return all.empty() ? all : fmt::format("<sup>{}</sup>", all);
}

std::string label(const HeaderCell& cell) { return markdownText(cell.text) + marks(cell.notes); }

class MarkdownPage {
 public:
  MarkdownPage(std::ostream& out, const TextOptions& options) : out_(out), options_(options) {}

  void write(const std::vector<ShownCommand>& commands) {
    tableHeading_ = commands.size() > 1 ? "###" : "##";
    for (const ShownCommand& shown : commands) {
      if (commands.size() > 1) startBlock() << "## " << markdownText(shown.command->name) << '\n';
      if (shown.answer != nullptr) startBlock() << "**" << answerOf(shown) << "**\n";
      for (const Item* item : shown.items) write(*item);
    }
  }

 private:
  std::string answerOf(const ShownCommand& shown) const {
    return markdownText(shownAnswer(*shown.answer, options_.wording));
  }

  void write(const Item& item) {
    if (const auto* message = std::get_if<Message>(&item)) {
      startBlock() << fmt::format("**{}:** {}\n", markdownText(messageLabel(*message, options_.wording)),
                                  markdownText(shown(message->text, options_.wording, markdownStyle)));
    } else if (const auto* note = std::get_if<Note>(&item)) {
      startBlock() << markdownParagraph(noteSentence(*note, options_.wording, markdownStyle)) << '\n';
    } else {
      for (const TableLayout& layout : layoutsOf(*tableOf(item), options_.wording, markdownStyle)) write(layout);
    }
  }

  void write(const TableLayout& layout) {
    startBlock() << tableHeading_ << ' ' << markdownText(layout.title) << '\n';
    for (const std::string& layer : layout.layers) startBlock() << markdownParagraph(layer) << '\n';
    startBlock();
    writeGrid(layout);
    if (!layout.caption.empty()) startBlock() << markdownParagraph(layout.caption) << '\n';
    for (std::size_t note = 0; note < layout.footnotes.size(); ++note) {
      startBlock() << fmt::format("<sup>{}</sup> {}\n", footnoteMark(static_cast<std::int32_t>(note)),
                                  markdownText(layout.footnotes[note]));
    }
  }

  void writeGrid(const TableLayout& layout) {
    const FlatGrid grid(layout);
    for (std::int32_t level = 0; level < layout.headerColumns; ++level) {
      const HeaderCell* const corner = grid.corner(level);
      addCell(corner != nullptr && corner->column == level ? label(*corner) : "");
    }
    for (std::int32_t column = 0; column < layout.columns; ++column) addCell(grid.columnHeader(column, label));
    endRow();
    for (std::int32_t level = 0; level < layout.headerColumns; ++level) addCell("---");
    for (const bool isRight : numberColumns(layout)) addCell(isRight ? "---:" : "---");
    endRow();
    for (std::int32_t row = 0; row < layout.rows; ++row) writeRow(layout, grid, row);
  }

  void writeRow(const TableLayout& layout, const FlatGrid& grid, std::int32_t row) {
    for (std::int32_t level = 0; level < layout.headerColumns; ++level) {
      const HeaderCell* const header = grid.rowHeader(row, level);
      const bool startsHere = header != nullptr && header->row == row && header->column == level;
      addCell(startsHere ? label(*header) : "");
    }
    std::int32_t next = 0;
    for (const PlacedCell& placed : layout.cellsOf(row)) {
      for (; next < placed.column; ++next) addCell("");
      const Cell& cell = layout.table->cells[placed.cell];
      addCell(markdownText(shown(*cell.content, options_.wording, markdownStyle)) + marks(cell.notes));
      ++next;
    }
    for (; next < layout.columns; ++next) addCell("");
    endRow();
  }

  // The columns in which all that stands are numbers.
  static std::vector<bool> numberColumns(const TableLayout& layout) {
    std::vector<bool> all(static_cast<std::size_t>(layout.columns), true);
    std::vector<bool> any(all.size(), false);
    for (const PlacedCell& placed : layout.placedCells) {
      const std::size_t column = static_cast<std::size_t>(placed.column);
      any[column] = true;
      if (!isNumber(*layout.table->cells[placed.cell].content)) all[column] = false;
    }
    for (std::size_t column = 0; column < all.size(); ++column) all[column] = all[column] && any[column];
    return all;
  }

  // Blocks of a page stand an empty line apart.
  std::ostream& startBlock() { return out_ << std::exchange(separator_, "\n"); }
  void addCell(const std::string& text) { row_ += text.empty() ? "|  " : "| " + text + ' '; }
  void endRow() { out_ << std::exchange(row_, {}) << "|\n"; }

  std::ostream& out_;
  const TextOptions& options_;
  std::string_view tableHeading_;
  const char* separator_ = "";
  std::string row_;
};

}  // namespace

void writeMarkdown(std::ostream& out, const Document& document, const TextOptions& options) {
  MarkdownPage(out, options).write(shownCommands(document, options.onlyTable));
}

}  // namespace workbench::output
