// Bytes of a file that is open, from wherever in it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace workbench::data {

// False when the file ends before, or cannot be read.
bool readFully(int descriptor, char* to, std::size_t count, std::int64_t offset);

}  // namespace workbench::data
