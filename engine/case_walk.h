// Case walk: reads both datasets side by side, pairs their cases by the case IDs or by position, compares the values of
// every compared variable, counts, writes the flag variable, saves cases and fills the case table.
//
// Requires: case IDs are validated and variables matched; with case IDs both datasets are sorted by them (a case out of
// order ends the walk).
#pragma once

#include "engine/dataset_comparer.h"

namespace compdatas {

// False when it has reported why there is no result: a dataset out of order, or what the host threw. (A comparison
// dataset whose cases cannot be read at all yields false without a message.)
bool walkCases(DatasetComparer& comparer, BpPivotTable& caseTable);

}  // namespace compdatas
