// Which table of a database a user means.
#pragma once

#include <string>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The name that is wanted, or the only one where none is. The problem names the database as `where`.
Outcome<std::string> chosenTable(const std::vector<std::string>& names, const std::string& wanted,
                                 const std::string& where);

}  // namespace workbench::data
