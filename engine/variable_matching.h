// Variable matching: which variables of the active dataset have a partner in the comparison dataset, which of them take
// part in the case walk, and whether their dictionary entries agree.
//
// Requires: the case IDs have been validated.
#pragma once

#include "engine/dataset_comparer.h"

namespace compdatas {

// Fills propertyOn, variablePairs, the attribute names and dictionaryState, and reports the variables without a
// partner.
void matchVariables(DatasetComparer& comparer);

}  // namespace compdatas
