// The results as one HTML page without anything outside of it: a report to read, print, send on and keep.
//
// The page is complete without scripts; its own one only adds sorting, filtering and copying. A content security policy
// in the page allows its one style sheet and its one script and nothing else.
#pragma once

#include <ostream>

#include "workbench/output/document.h"
#include "workbench/output/terminal_writer.h"

namespace workbench::output {

void writeHtmlReport(std::ostream& out, const Document& document, const TextOptions& options);

}  // namespace workbench::output
