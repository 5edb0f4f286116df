// The Dictionary Comparison table: for every compared variable and selected property both values where they differ.
#pragma once

#include "engine/dataset_comparer.h"

namespace compdatas {

// Writes the table when there are dictionary differences, and behind it the Value Labels Comparison table when the
// value labels of a variable differ. Requires: variables have been matched.
void WriteDictionaryTables(const DatasetComparer& comparer);

}  // namespace compdatas
