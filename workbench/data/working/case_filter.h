// Which cases a filter variable leaves in, and when a value is missing.
#pragma once

#include "workbench/data/dictionary.h"

namespace workbench::data {

// System-missing, or one of the variable's user-missing values. Requires: the variable is a number.
bool isMissing(double value, const MissingValues& missing);

// A filter selects a case when its value is neither 0 nor missing.
inline bool filterSelects(double value, const MissingValues& missing) {
  return value != 0 && !isMissing(value, missing);
}

}  // namespace workbench::data
