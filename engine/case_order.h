// Case order: reads the next case of a dataset, checking that it is sorted by the case IDs, and compares the keys of
// the two current cases.
#pragma once

#include <cstddef>

#include "engine/dataset_comparer.h"

namespace compdatas {

enum class ReadStatus {
  current,     // a case is current
  ended,       // there are no more cases
  outOfOrder,  // the case lies before the one that was read last
};

// Ties are in order. Requires: the side's iterator is open.
ReadStatus readNextCase(DatasetComparer& comparer, std::size_t side);

// Negative when the active case's key is lower, positive when the comparison case's is, 0 when they are equal or there
// are no case IDs. Requires: both sides have a current case.
int compareKeys(const std::vector<CaseIdKey>& keys);

}  // namespace compdatas
