// ValueForm: how the values of a Parquet column are stored, and as what they are handed out.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "workbench/data/parquet/parquet_layout.h"

namespace workbench::data {

enum class HandedOut : std::uint8_t { int32, int64, real, text };

struct ValueForm {
  PhysicalType stored = PhysicalType::bytes;
  HandedOut handedOut = HandedOut::text;
  bool isUnsigned = false;      // 32 bits without a sign
  std::int64_t multiplier = 1;  // of whole numbers: of them 64 bits are handed out
  // Whole numbers beyond these are none of the column's type: the file is damaged.
  std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  std::int64_t highest = std::numeric_limits<std::int64_t>::max();

  bool isLimited() const {
    return lowest != std::numeric_limits<std::int64_t>::min() || highest != std::numeric_limits<std::int64_t>::max();
  }
};

// Of a column that has this type by DuckDB's name of it; nothing when it is stored in a way that is not read here.
std::optional<ValueForm> valueFormOf(const ParquetColumn& column, std::string_view type);

}  // namespace workbench::data
