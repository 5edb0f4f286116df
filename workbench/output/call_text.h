// How texts stand in the journal: as the calls that would make them.
#pragma once

#include <string>
#include <string_view>

#include "workbench/output/document.h"

namespace workbench::output {

// The name of the class that makes such a text: "BpString".
std::string_view className(const Text& text);

// The text as an argument of a call. A text to be resolved is its key in quotes; any other the call that makes it:
// BpString("Ghent", false), BpVariable("age", 2), BpNumber(12.5, Percent), BpDataValue("age", 41, 0).
std::string asArgument(const Text& text);

// The call that makes the text: BpString("...", true) also for a key.
std::string asCall(const Text& text);

}  // namespace workbench::output
