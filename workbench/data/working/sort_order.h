// SortOrder: the order of cases by some of their variables.
//
// Lexicographic over the keys, each ascending: numbers by value, -0.0 before 0.0, the system-missing value lowest;
// strings cut to a number of bytes, blanks at their end left out, in the order of VRIXMBstrcoll_A.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/data.h"

namespace workbench::data {

struct SortKey {
  std::uint32_t slot = 0;  // the variable's first slot in a case
  bool isNumeric = true;
  std::size_t bytes = 0;  // of a string: how many are looked at
};

// The number's place among all numbers, as an unsigned number of the same order.
std::uint64_t orderedBits(double number);

// The text of a string key, cut and without blanks at its end.
std::string_view keyText(const SortKey& key, const OBS* oneCase);

// Negative, 0 or positive, as the first case lies before, with or behind the second.
int compareCases(const std::vector<SortKey>& keys, const OBS* first, const OBS* second);

// A case among others that are to be sorted.
struct SortableCase {
  std::uint64_t prefix = 0;  // of the first key: a lower one lies before, an equal one leaves it open
  std::uint64_t row = 0;
  const OBS* slots = nullptr;
};

// Sorts by the keys, then by the row. With a collation set, its keys are made once for every case.
void sortByKeys(const std::vector<SortKey>& keys, std::vector<SortableCase>& cases);

}  // namespace workbench::data
