// RowOrder: sorting cases in memory without moving them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "workbench/data/working/case_rows.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

// The numbers of the rows in the order of the keys, rows with equal keys in the order in which they lie. Empty when all
// lie in order already. Requires: a key at least. Throws ErrorText when the collation in force is none.
std::vector<std::uint32_t> orderOfRows(const CaseRows& rows, const std::vector<SortKey>& keys);

// What that takes of memory for every row, more or less; and what the order takes that it gives.
std::size_t bytesToOrderRow(const std::vector<SortKey>& keys);
inline constexpr std::size_t bytesOfOrderedRow = sizeof(std::uint32_t);

}  // namespace workbench::data
