// What a cell's text says by its shape, for renderers that show it: none of them knows a procedure's keys.
#pragma once

#include "workbench/output/document.h"

namespace workbench::output {

// Whether the text sets two things against each other, each on a line of its own, as a cell does whose two values
// differ: a composite of two items under a pattern of its procedure that has a line break between them.
bool setsTwoAgainstEachOther(const Text& text);

}  // namespace workbench::output
