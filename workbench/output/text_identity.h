// When two texts are the same category of a table.
//
// They are when they agree in kind, key, translate flag, variable (by name) and the bits of the value; a composite when
// its pattern and all its items agree. What people would see does not count: two values may read alike and still be two
// categories, and a variable is the same one however it is shown.
#pragma once

#include <cstddef>

#include "workbench/output/document.h"

namespace workbench::output {

bool haveSameIdentity(const Text& left, const Text& right);

// Invariant: texts with the same identity have the same hash.
std::size_t identityHash(const Text& text);

}  // namespace workbench::output
