// Case IDs: the variables by whose values the cases of the two datasets are paired.
#pragma once

#include "engine/dataset_comparer.h"

namespace compdatas {

// Fills caseIdKeys from the options. False when it has reported that the variables do not match in the two datasets.
bool validateCaseIds(DatasetComparer& comparer);

}  // namespace compdatas
