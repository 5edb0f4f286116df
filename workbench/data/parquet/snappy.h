// Snappy, in which most Parquet files are packed: unpacked here, for its library takes half as long again, which is a
// tenth of a whole comparison.
#pragma once

#include <cstddef>
#include <string_view>

namespace workbench::data {

// Up to so many bytes behind the packed ones are read, and behind the unpacked ones written, whatever stands there.
inline constexpr std::size_t snappySlack = 16;

// Unpacks exactly `bytes` bytes; false when these are not what was packed.
bool unpackSnappy(std::string_view packed, char* to, std::size_t bytes);

}  // namespace workbench::data
