// Draws one grid of a table on a terminal: text on the left of its column, numbers on the right.
//
// A grid wider than the terminal is broken into panels of columns, each under the row labels. Labels and texts are
// wrapped, very long texts are shortened; a number is always whole, and makes its column, and in the end the line, as
// wide as it has to be.
#pragma once

#include <iosfwd>

#include "workbench/output/table_layout.h"
#include "workbench/output/terminal_writer.h"

namespace workbench::output {

void drawTable(std::ostream& out, const TableLayout& layout, const TextOptions& options);

}  // namespace workbench::output
