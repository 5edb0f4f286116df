#include "workbench/data/working/case_filter.h"

#include <algorithm>
#include <limits>

#include "workbench/data/descriptors/missing_codes.h"

namespace workbench::data {

bool isMissing(double value, const MissingValues& missing) {
  if (value == -std::numeric_limits<double>::max()) return true;
  const auto isThis = [value](const OBS& declared) { return value == declared.number; };
  if (isRange(missing.code)) {
    const bool isInRange = value >= missing.values[0].number && value <= missing.values[1].number;
    return isInRange || (missing.code == rangeAndValueCode && isThis(missing.values[2]));
  }
  return std::ranges::any_of(discreteValues(missing), isThis);
}

}  // namespace workbench::data
