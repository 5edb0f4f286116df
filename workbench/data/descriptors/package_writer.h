// Writes a dictionary into a data package that is there already.
#pragma once

#include <optional>
#include <string>

#include "workbench/data/dictionary.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The package's text, the resource of the data file describing the dictionary and a file as this program writes it
// (UTF-8, quotes, one header row, the delimiter given; or JSON lines where none is). Other resources stay as they are,
// and so does of this one and its fields what says nothing of how the file is written. The data file's path is one
// beside or below the package.
Outcome<std::string> packageTextWith(const std::string& packagePath, const std::string& dataFileName,
                                     const Dictionary& dictionary, std::optional<char> delimiter);

}  // namespace workbench::data
