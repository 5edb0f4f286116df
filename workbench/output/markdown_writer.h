// The results as a Markdown page (GitHub's), to be pasted into a pull request: a heading per table, tables with one row
// of headers ("Datasets / Active"), footnotes and captions below them. Nothing that came from data acts on the page.
#pragma once

#include <iosfwd>

#include "workbench/output/terminal_writer.h"

namespace workbench::output {

void writeMarkdown(std::ostream& out, const Document& document, const TextOptions& options);

}  // namespace workbench::output
