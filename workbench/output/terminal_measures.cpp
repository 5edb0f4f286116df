#include "workbench/output/terminal_measures.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "workbench/output/display_text.h"

namespace workbench::output {
namespace {

constexpr int gap = 2;              // blanks between two columns
constexpr int widestText = 48;      // a cell's text is wrapped there
constexpr int widestRowLabel = 40;  // of one level
constexpr int narrowestRowLabel = 8;
constexpr int widestColumnLabel = 16;
constexpr int longestLabelWord = 24;  // a longer word of a column label is broken
constexpr int pointsPerCharacter = 6;
constexpr int unlimited = 1 << 20;

int longestWord(std::string_view text) {
  int longest = 0;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find_first_of(" \n", start), text.size());
    longest = std::max(longest, displayWidth(text.substr(start, end - start)));
    start = end + 1;
  }
  return longest;
}

}  // namespace

TerminalMeasures::TerminalMeasures(const TableLayout& layout, const TextOptions& options)
    : layout_(layout), options_(options), limit_(options.width > 0 ? options.width : unlimited) {
  measureCells();
  widenForLabels();
  measureRowLabels();
  narrowTexts();
  starts_.push_back(0);
  for (const TerminalColumn& column : columns_) starts_.push_back(starts_.back() + column.width + gap);
}

void TerminalMeasures::measureCells() {
  const int hint = layout_.table->minDataColumnWidth.value_or(0) / pointsPerCharacter;
  columns_.assign(static_cast<std::size_t>(layout_.columns), {std::clamp(hint, 1, widestText), 0, 0, false});
  std::vector<bool> hasNumbers(columns_.size(), false);
  std::vector<bool> hasTexts(columns_.size(), false);
  for (const PlacedCell& placed : layout_.placedCells) {
    const Cell& cell = layout_.table->cells[placed.cell];
    const std::size_t number = static_cast<std::size_t>(placed.column);
    TerminalColumn& column = columns_[number];
    const std::string text = terminalText(*cell.content, options_);
    const int marks = displayWidth(footnoteMarks(cell.notes));
    if (isNumber(*cell.content)) {
      hasNumbers[number] = true;
      column.markWidth = std::max(column.markWidth, marks);
      column.numberWidth = std::max(column.numberWidth, displayWidth(text));
    } else {
      if (!text.empty()) hasTexts[number] = true;
      column.numberWidth = std::max(column.numberWidth, widestNumber(text));
      column.width = std::max(column.width, std::min(widestLine(text) + marks, widestText));
    }
  }
  for (std::size_t number = 0; number < columns_.size(); ++number) {
    columns_[number].hasOnlyNumbers = hasNumbers[number] && !hasTexts[number];
    columns_[number].width =
        std::max(columns_[number].width, columns_[number].numberWidth + columns_[number].markWidth);
  }
}

void TerminalMeasures::widenForLabels() {
  for (const HeaderCell& header : layout_.columnHeaders) {
    const std::string label = terminalLabel(header);
    const int wanted = std::max({std::min(widestLine(label), widestColumnLabel),
                                 std::min(longestWord(label), longestLabelWord), widestNumber(label)});
    const auto first = columns_.begin() + header.column;
    const int there = std::accumulate(first, first + header.columnSpan, gap * (header.columnSpan - 1),
                                      [](int sum, const TerminalColumn& column) { return sum + column.width; });
    if (there < wanted) (first + header.columnSpan - 1)->width += wanted - there;
  }
}

// The row labels take at most three fifths of the line.
void TerminalMeasures::measureRowLabels() {
  labelWidths_.assign(static_cast<std::size_t>(layout_.headerColumns), 0);
  int longestNumber = 1;
  const auto measure = [&](const HeaderCell& cell) {
    const std::string label = terminalLabel(cell);
    const int missing = std::min(widestLine(label), widestRowLabel) - labelWidth(cell);
    if (missing > 0) labelWidths_[static_cast<std::size_t>(cell.column + cell.columnSpan) - 1] += missing;
    longestNumber = std::max(longestNumber, widestNumber(label));
  };
  // Those on one level first: a label over several levels then has their widths.
  for (const bool overLevels : {false, true}) {
    for (const HeaderCell& cell : layout_.rowHeaders) {
      if ((cell.columnSpan > 1) == overLevels) measure(cell);
    }
    for (const HeaderCell& cell : layout_.corner) {
      if ((cell.columnSpan > 1) == overLevels) measure(cell);
    }
  }
  while (labelsWidth() > limit_ * 3 / 5) {
    const auto widest = std::max_element(labelWidths_.begin(), labelWidths_.end());
    if (*widest <= std::max(narrowestRowLabel, longestNumber)) break;
    --*widest;
  }
}

// Texts are wrapped so that at least one column fits beside the row labels.
void TerminalMeasures::narrowTexts() {
  const int room = std::max(limit_ - bodyStart(), narrowestRowLabel);
  for (TerminalColumn& column : columns_) {
    column.width = std::min(column.width, std::max(room, column.numberWidth + column.markWidth));
  }
}

int TerminalMeasures::labelsWidth() const {
  return std::accumulate(labelWidths_.begin(), labelWidths_.end(), gap * std::max(0, layout_.headerColumns - 1));
}

int TerminalMeasures::bodyStart() const { return layout_.headerColumns > 0 ? labelsWidth() + gap : 0; }

int TerminalMeasures::columnAt(std::int32_t column, std::int32_t first) const {
  return bodyStart() + starts_[static_cast<std::size_t>(column)] - starts_[static_cast<std::size_t>(first)];
}

int TerminalMeasures::spanWidth(std::int32_t first, std::int32_t end) const {
  return starts_[static_cast<std::size_t>(end)] - starts_[static_cast<std::size_t>(first)] - gap;
}

std::int32_t TerminalMeasures::panelEnd(std::int32_t first) const {
  std::int32_t end = first + 1;
  while (end < layout_.columns && bodyStart() + spanWidth(first, end + 1) <= limit_) ++end;
  return end;
}

int TerminalMeasures::labelAt(std::int32_t level) const {
  return std::accumulate(labelWidths_.begin(), labelWidths_.begin() + level, gap * level);
}

int TerminalMeasures::labelWidth(const HeaderCell& label) const {
  return labelAt(label.column + label.columnSpan) - gap - labelAt(label.column);
}

std::string terminalText(const Text& text, const TextOptions& options) {
  return visible(shown(text, options.wording, terminalStyle));
}

std::string terminalLabel(const HeaderCell& label) { return visible(label.text) + footnoteMarks(label.notes); }

std::string footnoteMarks(const std::vector<std::int32_t>& notes) {
  std::string marks;
  for (const std::int32_t note : notes) marks += fmt::format("{}{}", marks.empty() ? " [" : ",", footnoteMark(note));
  return marks.empty() ? marks : marks + "]";
}

}  // namespace workbench::output
