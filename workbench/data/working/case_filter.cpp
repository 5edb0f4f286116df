#include "workbench/data/working/case_filter.h"

#include <limits>

namespace workbench::data {

bool isMissing(double value, const MissingValues& missing) {
  if (value == -std::numeric_limits<double>::max()) return true;
  const auto listed = [&](int place) { return missing.values[static_cast<std::size_t>(place)].number; };
  const auto inRange = [&] { return value >= listed(0) && value <= listed(1); };
  switch (missing.code) {
    case -3:
      return inRange() || value == listed(2);
    case -2:
      return inRange();
    case 1:
    case 2:
    case 3:
      for (int place = 0; place < missing.code; ++place) {
        if (value == listed(place)) return true;
      }
      return false;
    default:
      return false;
  }
}

}  // namespace workbench::data
