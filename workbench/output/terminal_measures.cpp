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
  measureRowLabels();
  measureColumns(std::clamp(layout_.table->minDataColumnWidth.value_or(0) / pointsPerCharacter, 1, widestText));
  if (!fitsIntoALine()) measureColumns(1);  // rather together in their narrowest than wide and apart
  narrowTexts();
  widenForParts();
}

void TerminalMeasures::measureColumns(int narrowest) {
  measureCells(narrowest);
  widenForLabels();
  setStarts();
}

void TerminalMeasures::measureCells(int narrowest) {
  columns_.assign(static_cast<std::size_t>(layout_.columns), {narrowest, 0, 0, false});
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

// Texts are wrapped so that at least one column fits beside the row labels and the key columns that are repeated. As
// many of these are as fit into half of what the row labels leave, from the left.
void TerminalMeasures::narrowTexts() {
  const auto narrow = [this](std::size_t number, int room) {
    TerminalColumn& column = columns_[number];
    column.width = std::min(column.width, std::max(room, column.numberWidth + column.markWidth));
  };
  const int room = std::max(limit_ - bodyStart(), narrowestRowLabel);
  for (std::size_t number = 0; number < columns_.size(); ++number) narrow(number, room);
  setStarts();
  if (fitsIntoALine()) return;
  while (repeatedKeys_ < layout_.keyColumns && spanWidth(0, repeatedKeys_ + 1) + gap <= room / 2) ++repeatedKeys_;
  for (const HeaderCell& label : layout_.columnHeaders) {  // whole groups, but for the first one
    const bool isCut = label.column < repeatedKeys_ && repeatedKeys_ < label.column + label.columnSpan;
    if (isCut && label.column > 0) repeatedKeys_ = label.column;
  }
  if (repeatedKeys_ == 0) return;
  const int roomBesideKeys = room - spanWidth(0, repeatedKeys_) - gap;
  for (std::size_t number = static_cast<std::size_t>(layout_.keyColumns); number < columns_.size(); ++number) {
    narrow(number, roomBesideKeys);
  }
  setStarts();
}

// A label over columns that are broken apart stands over each part of them, and no word of it is broken there.
void TerminalMeasures::widenForParts() {
  for (bool isWidened = true; isWidened;) {
    isWidened = false;
    for (const TerminalPanel& panel : panels()) {
      for (const HeaderCell& label : layout_.columnHeaders) {
        if (label.columnSpan == 1 || label.column < panel.repeated) continue;
        const auto span = spanOf(label, panel);
        if (!span) continue;
        const int word = std::min({longestWord(terminalLabel(label)), longestLabelWord, limit_ - span->at});
        if (word <= span->width) continue;
        const std::int32_t last = std::min(label.column + label.columnSpan, panel.end) - 1;
        columns_[static_cast<std::size_t>(last)].width += word - span->width;
        setStarts();
        isWidened = true;
      }
    }
  }
}

bool TerminalMeasures::fitsIntoALine() const { return bodyStart() + spanWidth(0, layout_.columns) <= limit_; }

void TerminalMeasures::setStarts() {
  starts_.assign(1, 0);
  for (const TerminalColumn& column : columns_) starts_.push_back(starts_.back() + column.width + gap);
}

int TerminalMeasures::labelsWidth() const {
  return std::accumulate(labelWidths_.begin(), labelWidths_.end(), gap * std::max(0, layout_.headerColumns - 1));
}

int TerminalMeasures::bodyStart() const { return layout_.headerColumns > 0 ? labelsWidth() + gap : 0; }

int TerminalMeasures::columnAt(std::int32_t column, const TerminalPanel& panel) const {
  const int start = bodyStart() + starts_[static_cast<std::size_t>(column)];
  if (column < panel.repeated) return start;
  return start + starts_[static_cast<std::size_t>(panel.repeated)] - starts_[static_cast<std::size_t>(panel.first)];
}

std::optional<TerminalSpan> TerminalMeasures::spanOf(const HeaderCell& label, const TerminalPanel& panel) const {
  const std::int32_t behind = label.column + label.columnSpan;
  // The repeated columns and the others stand side by side, so a label over some of both is in one piece.
  const bool isOverKeys = label.column < panel.repeated;
  const std::int32_t from = isOverKeys ? label.column : std::max(label.column, panel.first);
  const std::int32_t to = behind > panel.first ? std::min(behind, panel.end) : std::min(behind, panel.repeated);
  if (from >= to) return std::nullopt;
  const int at = columnAt(from, panel);
  return TerminalSpan{at, columnAt(to - 1, panel) + column(to - 1).width - at};
}

int TerminalMeasures::lineWidth(const TerminalPanel& panel) const {
  return columnAt(panel.end - 1, panel) + column(panel.end - 1).width;
}

std::vector<TerminalPanel> TerminalMeasures::panels() const {
  std::vector<TerminalPanel> panels;
  for (std::int32_t first = 0; first < layout_.columns; first = panels.back().end) {
    // A panel that begins with a key column shows the others with it.
    const std::int32_t repeated = first >= layout_.keyColumns && first > 0 ? repeatedKeys_ : 0;
    panels.push_back({repeated, first, panelEnd(first, repeated)});
  }
  return panels;
}

int TerminalMeasures::spanWidth(std::int32_t first, std::int32_t end) const {
  return starts_[static_cast<std::size_t>(end)] - starts_[static_cast<std::size_t>(first)] - gap;
}

std::int32_t TerminalMeasures::panelEnd(std::int32_t first, std::int32_t repeated) const {
  const auto fits = [&](std::int32_t from, std::int32_t to) { return lineWidth({repeated, from, to}) <= limit_; };
  std::int32_t end = first + 1;
  while (end < layout_.columns && fits(first, end + 1)) ++end;
  if (end == layout_.columns) return end;
  // Rather before a label than through its columns, when it has room in a panel of its own.
  for (const HeaderCell& label : layout_.columnHeaders) {
    const std::int32_t behind = label.column + label.columnSpan;
    if (first < label.column && label.column < end && end < behind && fits(label.column, behind)) return label.column;
  }
  return end;
}

int TerminalMeasures::labelAt(std::int32_t level) const {
  return std::accumulate(labelWidths_.begin(), labelWidths_.begin() + level, gap * level);
}

int TerminalMeasures::labelWidth(const HeaderCell& label) const {
  return labelAt(label.column + label.columnSpan) - gap - labelAt(label.column);
}

std::string terminalText(const Text& text, const TextOptions& options) {
  return visible(shown(text, options.wording, terminalStyleOf(options)));
}

std::string terminalLabel(const HeaderCell& label) { return visible(label.text) + footnoteMarks(label.notes); }

std::string footnoteMarks(const std::vector<std::int32_t>& notes) {
  std::string marks;
  for (const std::int32_t note : notes) marks += fmt::format("{}{}", marks.empty() ? " [" : ",", footnoteMark(note));
  return marks.empty() ? marks : marks + "]";
}

}  // namespace workbench::output
