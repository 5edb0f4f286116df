// How wide what is shown may be.
#pragma once

#include <optional>

namespace workbench::app {

// The columns that COLUMNS in the environment names, else those of the terminal that the stream shows on; nothing where
// there is neither.
std::optional<int> terminalWidth(int descriptor);

}  // namespace workbench::app
