// RowOrder: sorting cases in memory without moving them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "workbench/data/working/case_rows.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

// Is told of rows that have equal keys, two at least: where the first of them lies in the order, and their numbers,
// ascending. Such groups are told in no order.
using EqualRows = std::function<void(std::size_t place, std::span<const std::uint32_t> rows)>;

// The numbers of the rows in the order of the keys, rows with equal keys in the order in which they lie. Empty when all
// lie in order already. Requires: a key at least. Throws ErrorText when the collation in force is none.
std::vector<std::uint32_t> orderOfRows(const CaseRows& rows, const std::vector<SortKey>& keys,
                                       const EqualRows& equalRows = {});

// What that takes of memory for every row, more or less; and what the order takes that it gives.
std::size_t bytesToOrderRow(const std::vector<SortKey>& keys);
inline constexpr std::size_t bytesOfOrderedRow = sizeof(std::uint32_t);

}  // namespace workbench::data
