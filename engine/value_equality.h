// Value equality: when two values of a pair of variables count as equal. Pure.
#pragma once

#include <cstddef>

namespace compdatas {

// The shorter width is compared with trailing blanks ignored; what the longer value has beyond it has to be blank.
// Widths in bytes.
bool textsEqual(const char* left, std::size_t leftWidth, const char* right, std::size_t rightWidth);

// The same 64 bits; or, for a fuzzy variable and when neither value is system-missing, nearly the same number.
bool numbersEqual(double left, double right, bool fuzzy);

}  // namespace compdatas
