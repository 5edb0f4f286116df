// Near equality of doubles, as host/runtime.h declares it.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/runtime.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace {

// Scaling both numbers by a power of two keeps their relation and keeps the difference from running over at the large
// end and the product with the tolerance from running under at the small end.
constexpr double largeFrom = 0x1p1000;
constexpr double smallBelow = 0x1p-900;
constexpr double downscale = 0x1p-100;
constexpr double upscale = 0x1p+200;

bool areNear(double left, double right, double tolerance) {
  if (left == right) return true;
  if (!std::isfinite(left) || !std::isfinite(right)) return false;
  const double larger = std::max(std::fabs(left), std::fabs(right));
  const double scale = larger >= largeFrom ? downscale : larger < smallBelow ? upscale : 1.0;
  return std::fabs(left * scale - right * scale) <= tolerance * (larger * scale);
}

}  // namespace

bool QLRALMOSTEQUAL(double left, double right) {
  using namespace workbench;
  const bool result = areNear(left, right, currentRun().settings.tolerance);
  if (journal().isOn()) journal().line(fmt::format("QLRALMOSTEQUAL({}, {}) -> {}", left, right, result));
  return result;
}
