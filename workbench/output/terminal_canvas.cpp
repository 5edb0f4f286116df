#include "workbench/output/terminal_canvas.h"

#include <algorithm>
#include <ostream>

#include "workbench/output/display_text.h"

namespace workbench::output {

namespace {

constexpr std::string_view endOfStyle = "\x1b[0m";

std::string_view withoutTrailingBlanks(std::string_view text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

}  // namespace

void TerminalCanvas::paint(std::size_t line, int column, std::string text, std::string_view style) {
  if (lines_.size() <= line) lines_.resize(line + 1);
  if (!text.empty()) lines_[line].push_back({column, std::move(text), style});
}

void TerminalCanvas::writeTo(std::ostream& out) {
  for (std::vector<Piece>& line : lines_) {
    std::stable_sort(line.begin(), line.end(),
                     [](const Piece& left, const Piece& right) { return left.column < right.column; });
    int reached = 0;
    std::string all;
    for (const auto& [column, text, style] : line) {
      all.append(static_cast<std::size_t>(std::max(0, column - reached)), ' ');
      reached = std::max(column, reached) + displayWidth(text);
      if (style.empty()) {
        all += text;
        continue;
      }
      // Blanks are no part of what is styled, or an underline or a background would show them.
      const std::string_view styled = withoutTrailingBlanks(text);
      all.append(style).append(styled).append(endOfStyle).append(text, styled.size());
    }
    out << withoutTrailingBlanks(all) << '\n';
  }
  lines_.clear();
}

}  // namespace workbench::output
