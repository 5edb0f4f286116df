// TerminalMeasures: how wide the columns and row labels of a table's grid are on a terminal, and where they stand.
//
// Invariant: a column is as wide as the widest number in it; a column of texts alone leaves room for the row labels.
#pragma once

#include <cstdint>
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

class TerminalMeasures {
 public:
  // Requires: the layout has rows and columns, and outlives this object with the options.
  TerminalMeasures(const TableLayout& layout, const TextOptions& options);

  int limit() const { return limit_; }  // the columns of a line
  const TerminalColumn& column(std::int32_t column) const { return columns_[static_cast<std::size_t>(column)]; }

  // Where the body starts, behind the row labels.
  int bodyStart() const;
  // Where a column of the body starts when `first` is the first one in the panel.
  int columnAt(std::int32_t column, std::int32_t first) const;
  // The columns from `first` to before `end`, with the gaps between them.
  int spanWidth(std::int32_t first, std::int32_t end) const;
  // The column behind those that fit into a line from `first` on; at least one does.
  std::int32_t panelEnd(std::int32_t first) const;

  // Where a level of the row labels starts, and the width of a label or of a title in the corner.
  int labelAt(std::int32_t level) const;
  int labelWidth(const HeaderCell& label) const;

 private:
  void measureCells();
  void widenForLabels();
  void measureRowLabels();
  void narrowTexts();
  int labelsWidth() const;

  const TableLayout& layout_;
  const TextOptions& options_;
  int limit_;
  std::vector<TerminalColumn> columns_;
  std::vector<int> starts_;       // of the columns, the first one's being 0; one more than there are columns
  std::vector<int> labelWidths_;  // per level of the row labels
};

// A text, and a label with the marks of its footnotes, as they stand on a terminal.
std::string terminalText(const Text& text, const TextOptions& options);
std::string terminalLabel(const HeaderCell& label);
std::string footnoteMarks(const std::vector<std::int32_t>& notes);

}  // namespace workbench::output
