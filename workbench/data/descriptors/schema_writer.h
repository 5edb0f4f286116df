// Writes a dictionary as a table schema: read back it gives the equal dictionary.
//
// What the standard has a word for is written with it; everything else stands under "statistics:variable" and
// "statistics:dataset".
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "workbench/data/descriptors/json_text.h"
#include "workbench/data/dictionary.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// A schema for a file of its own. A problem names the variable and what of it cannot be written.
Outcome<std::string> schemaText(const Dictionary& dictionary);

// The same as a resource of that name, to be stored with the data.
Outcome<std::string> resourceText(const std::string& name, const Dictionary& dictionary);

// The parts of it. Require: whyNotWritten() finds nothing in the dictionary.
Json fieldJson(const Variable& variable);
Json datasetJson(const Dictionary& dictionary);  // an empty object when there is nothing to say

// The text of a descriptor's file.
std::string fileText(const Json& descriptor);

}  // namespace workbench::data
