#include "workbench/output/terminal_canvas.h"

#include <algorithm>
#include <ostream>

#include "workbench/output/display_text.h"

namespace workbench::output {

void TerminalCanvas::paint(std::size_t line, int column, std::string text) {
  if (lines_.size() <= line) lines_.resize(line + 1);
  if (!text.empty()) lines_[line].emplace_back(column, std::move(text));
}

void TerminalCanvas::writeTo(std::ostream& out) {
  for (std::vector<std::pair<int, std::string>>& line : lines_) {
    std::stable_sort(line.begin(), line.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    int reached = 0;
    std::string all;
    for (const auto& [column, text] : line) {
      all.append(static_cast<std::size_t>(std::max(0, column - reached)), ' ');
      all += text;
      reached = std::max(column, reached) + displayWidth(text);
    }
    out << all.substr(0, all.find_last_not_of(' ') + 1) << '\n';
  }
  lines_.clear();
}

}  // namespace workbench::output
