// Draws one grid of a table on a sheet: its title, the grid with frozen headers, below it captions and footnotes.
//
// Where every row has its labels to itself the rows can be filtered: then no header covers several rows.
#pragma once

#include "workbench/output/table_layout.h"
#include "workbench/output/xlsx_cell.h"
#include "workbench/output/xlsx_workbook.h"

namespace workbench::output {

void drawSheet(XlsxWorkbook& workbook, lxw_worksheet* sheet, const TableLayout& layout, const text::Wording& wording,
               const XlsxLimits& limits);

}  // namespace workbench::output
