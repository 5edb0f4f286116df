// The summary tables: how many cases there are and were compared, how many hold a difference, and how often each
// variable differs.
#pragma once

#include "engine/dataset_comparer.h"

namespace compdatas {

// Fills the three tables that the driver has opened, or takes those of the differences out again when there is nothing
// to show. Requires: the walk has succeeded.
void WriteSummaryTables(const DatasetComparer& comparer, BpPivotTable& matchedSummary, BpPivotTable& mismatchedByCases,
                        BpPivotTable& mismatchedByVariables);

}  // namespace compdatas
