// The host's way from a text that a procedure passes (BpCellText) to what the document keeps of it (Text).
#pragma once

#include "host/output.h"
#include "workbench/output/document.h"

namespace workbench::output {

// What the text holds; valid as long as the text. Throws ErrorText for a composite that was not finished.
const Text& textOf(const BpCellText& text);

}  // namespace workbench::output
