// Handles: the names under which datasets are open.
#pragma once

#include <string_view>

namespace workbench::data {

// A letter, then letters, digits and "_".
bool isWellFormedHandle(std::string_view text);

}  // namespace workbench::data
