// Value equality: when two values of a pair of variables count as equal. Pure.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace compdatas {

inline bool sameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

// The shorter width is compared with trailing blanks ignored; what the longer value has beyond it has to be blank.
// Widths in bytes.
bool textsEqual(const char* left, std::size_t leftWidth, const char* right, std::size_t rightWidth);

// Of two numbers that differ in their bits: whether they are nearly the same, and neither is system-missing.
bool numbersNear(double left, double right);

// The same 64 bits; or, for a fuzzy variable, near.
inline bool numbersEqual(double left, double right, bool fuzzy) {
  return sameBits(left, right) || (fuzzy && numbersNear(left, right));
}

}  // namespace compdatas
