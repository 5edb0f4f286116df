// The pictures of a command's results on an HTML page: drawings whose numbers stand beside them as text.
#pragma once

#include <ostream>
#include <string>

#include "workbench/output/document.h"
#include "workbench/text/wording.h"

namespace workbench::output {

// The ids begin with `id`.
void writeHtmlChart(std::ostream& out, const Chart& chart, const std::string& id, const text::Wording& wording);

// What drawings refer to; once on a page, before the first of them.
void writeHtmlPatterns(std::ostream& out);

}  // namespace workbench::output
