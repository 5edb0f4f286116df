// TerminalMeasures: how wide the columns and row labels of a table's grid are on a terminal, and where they stand.
//
// Invariant: a column is as wide as the widest number in it; a column of texts alone leaves room for the row labels.
// The width that a table asks for its columns counts where it fits into a line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "workbench/output/table_layout.h"
#include "workbench/output/terminal_writer.h"

namespace workbench::output {

// One column of the body.
struct TerminalColumn {
  int width = 1;
  int numberWidth = 0;          // of the widest number in it
  int markWidth = 0;            // of the footnote marks behind its numbers
  bool hasOnlyNumbers = false;  // beside empty texts
};

// Columns that are shown together: the key columns that are repeated, [0, repeated), then [first, end).
struct TerminalPanel {
  std::int32_t repeated = 0;
  std::int32_t first = 0;
  std::int32_t end = 0;
};

// Where something stands on a line.
struct TerminalSpan {
  int at = 0;
  int width = 0;
};

class TerminalMeasures {
 public:
  // Requires: the layout has rows and columns, and outlives this object with the options.
  TerminalMeasures(const TableLayout& layout, const TextOptions& options);

  int limit() const { return limit_; }  // the columns of a line
  const TerminalColumn& column(std::int32_t column) const { return columns_[static_cast<std::size_t>(column)]; }

  // Where the body starts, behind the row labels.
  int bodyStart() const;
  // The panels that the columns are broken into, as many columns in each as fit into a line, and one at least. Columns
  // under one label stay together where they can.
  std::vector<TerminalPanel> panels() const;
  // Where a column of the panel starts.
  int columnAt(std::int32_t column, const TerminalPanel& panel) const;
  // What of a column label lies in the panel; nothing when nothing does.
  std::optional<TerminalSpan> spanOf(const HeaderCell& label, const TerminalPanel& panel) const;
  // Of all lines of the panel.
  int lineWidth(const TerminalPanel& panel) const;

  // Where a level of the row labels starts, and the width of a label or of a title in the corner.
  int labelAt(std::int32_t level) const;
  int labelWidth(const HeaderCell& label) const;

 private:
  void measureColumns(int narrowest);
  void measureCells(int narrowest);
  void widenForLabels();
  void measureRowLabels();
  void narrowTexts();
  void widenForParts();
  bool fitsIntoALine() const;
  void setStarts();
  int labelsWidth() const;
  // The columns from `first` to before `end`, with the gaps between them.
  int spanWidth(std::int32_t first, std::int32_t end) const;
  std::int32_t panelEnd(std::int32_t first, std::int32_t repeated) const;

  const TableLayout& layout_;
  const TextOptions& options_;
  int limit_;
  std::int32_t repeatedKeys_ = 0;  // key columns in every panel but the first
  std::vector<TerminalColumn> columns_;
  std::vector<int> starts_;       // of the columns, the first one's being 0; one more than there are columns
  std::vector<int> labelWidths_;  // per level of the row labels
};

// A text, and a label with the marks of its footnotes, as they stand on a terminal.
std::string terminalText(const Text& text, const TextOptions& options);
std::string terminalLabel(const HeaderCell& label);
std::string footnoteMarks(const std::vector<std::int32_t>& notes);

}  // namespace workbench::output
