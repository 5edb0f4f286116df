// The results as a workbook: a first sheet with messages, notes and links to the tables, then a sheet per table (per
// layer of it), with numbers as numbers. Nothing that came from data is a formula or a link.
#pragma once

#include <iosfwd>

#include "workbench/output/terminal_writer.h"
#include "workbench/output/xlsx_cell.h"
#include "workbench/runtime/outcome.h"

namespace workbench::output {

Outcome<Done> writeXlsx(std::ostream& out, const Document& document, const TextOptions& options);
// The same with other limits, for tests.
Outcome<Done> writeXlsx(std::ostream& out, const Document& document, const TextOptions& options,
                        const XlsxLimits& limits);

}  // namespace workbench::output
