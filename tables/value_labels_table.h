// The Value Labels Comparison table: for every variable whose value labels differ each labelled value with both labels.
#pragma once

#include "engine/dataset_comparer.h"

namespace compdatas {

// Requires: the value labels of at least one compared variable differ.
void writeValueLabelsTable(const DatasetComparer& comparer);

}  // namespace compdatas
