// SortOrder: the order of cases by some of their variables.
//
// Lexicographic over the keys, each ascending: numbers by value, -0.0 before 0.0, the system-missing value lowest;
// strings cut to a number of bytes, blanks at their end left out, in the order of VRIXMBstrcoll_A.
//
// What was sorted by the order of the bytes stays so whatever collation is set later, so a key says for itself whether
// a collation orders it; which one, is the setting's.
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
  std::size_t bytes = 0;    // of a string: how many are looked at
  bool isCollated = false;  // of a string; else the order is that of the bytes
  friend bool operator==(const SortKey&, const SortKey&) = default;
};

// Whether a collation orders any of them.
bool isCollated(const std::vector<SortKey>& keys);

// The number's place among all numbers, as an unsigned number of the same order.
std::uint64_t orderedBits(double number);

// The text of a string key, cut and without blanks at its end.
std::string_view keyText(const SortKey& key, const OBS* oneCase);

// Negative, 0 or positive, as the first case lies before, with or behind the second.
int compareCases(const std::vector<SortKey>& keys, const OBS* first, const OBS* second);

// A number of the same order: of two cases or texts the one with the lower number lies before the other; an equal
// number leaves it open (of numeric keys, does not). Requires: no collation orders the key.
std::uint64_t prefixOf(const SortKey& key, const OBS* oneCase);
std::uint64_t prefixOf(std::string_view text);

// All keys of a case as bytes: the order of these is the order of the cases. May be
// called on any thread as long as the settings do not change.
std::string collatedKey(const std::vector<SortKey>& keys, const OBS* oneCase);

}  // namespace workbench::data
