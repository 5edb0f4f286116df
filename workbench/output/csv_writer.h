// One table as CSV (RFC 4180), for programs: UTF-8, a comma between fields, CR LF behind every record.
//
// The first record holds the headers, each column's in one field ("Datasets / Active"). Layers are columns of their
// own, and every record has all of its row labels. Numbers are written in full, with a decimal point and without a sign
// for percent, whatever their print format; dates and times as ISO 8601. Texts stand as they are, also one that a
// spreadsheet would take for a formula. Footnotes, captions and the title are left out.
#pragma once

#include <iosfwd>

#include "workbench/output/terminal_writer.h"
#include "workbench/runtime/outcome.h"

namespace workbench::output {

// The only table of the document, or the only one of the key in the options. A problem when there are several, and when
// there is none although no key was given; a key without a table writes nothing.
Outcome<Done> writeCsv(std::ostream& out, const Document& document, const TextOptions& options);

}  // namespace workbench::output
