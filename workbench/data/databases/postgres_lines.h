// A line that COPY writes in its text format, as cells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/data/files/cell_batch.h"

namespace workbench::data {

// Adds the first `columns` cells of the line, which ends with a line break, to the batch. Gives the number of cells
// that were there.
std::size_t addCopiedLine(std::string_view line, std::size_t columns, std::uint64_t number, CellBatch& batch);

}  // namespace workbench::data
