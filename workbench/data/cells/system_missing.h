// The number that stands for a value that is not there, as procedures know it.
#pragma once

#include <limits>

namespace workbench::data {

inline constexpr double systemMissing = -std::numeric_limits<double>::max();

}  // namespace workbench::data
