// The Comparison Summary: which two datasets were compared, under which settings, and how many cases each has.
#pragma once

#include <cstdint>
#include <string>

#include "host/data.h"
#include "host/output.h"

namespace compdatas {

// What of the comparison dataset is described. The source is null when there is none.
struct DescribedComparison {
  const VRIX_DataSource* source;
  std::string handle;  // empty for a data file
};

// The first table, before anything is compared: files, handles, filters, weights, splits.
void writeDatasetSummary(BpProcedure& procedure, const ProcedureDataSource& activeSource,
                         const DescribedComparison& comparison);

// The second table: the numbers of cases read. A number that is not above 0 is not shown.
void writeCaseCounts(BpProcedure& procedure, std::int64_t activeCases, std::int64_t comparisonCases);

}  // namespace compdatas
