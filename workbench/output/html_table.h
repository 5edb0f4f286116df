// A table of the results as an HTML table.
//
// Every header has its scope; where headers lie above headers, cells name theirs as well. What the page's script needs
// for filtering and sorting stands in data attributes; without the script the table is complete.
#pragma once

#include <ostream>
#include <string>

#include "workbench/output/table_layout.h"

namespace workbench::output {

// The ids begin with `id`; the element of the id `headingId` names the table.
void writeHtmlTable(std::ostream& out, const TableLayout& layout, const std::string& id, const std::string& headingId,
                    const text::Wording& wording);

// The style in which texts are resolved for a page.
inline constexpr TextStyle pageStyle{NumberStyle::asFormatted, true};

}  // namespace workbench::output
