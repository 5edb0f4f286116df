// ParquetLayout: where in a Parquet file the values of its columns lie, and how they are stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace workbench::data {

// The numbers are those in files.
enum class PhysicalType : std::uint8_t { boolean, int32, int64, int96, real32, real64, bytes, fixedBytes };
enum class ParquetCodec : std::uint8_t { none = 0, snappy = 1, gzip = 2, zstd = 6 };
enum class ParquetEncoding : std::uint8_t {
  plain = 0,
  plainDictionary = 2,
  runs = 3,
  bitPacked = 4,
  runsOfDictionary = 8,
};
enum class TimeUnit : std::uint8_t { none, milliseconds, microseconds, nanoseconds };

// A column that has one value per row, or none where it may be missing.
struct ParquetColumn {
  PhysicalType type = PhysicalType::bytes;
  TimeUnit unit = TimeUnit::none;
  std::size_t fixedLength = 0;  // in bytes, of fixedBytes
  bool mayBeMissing = false;
  std::size_t leaf = 0;    // its place among the columns that values are stored of
  std::string duckDbType;  // DuckDB's name of its type; empty: out of the common
};

// The values of one column in one group of rows: pages, one behind the other.
struct ColumnPart {
  std::int64_t begin = -1;  // offset in the file; here and below less than zero: not said
  std::int64_t bytes = -1;
  std::int64_t values = -1;  // missing ones among them
  ParquetCodec codec = ParquetCodec::none;
  bool isKnown = false;  // whether it is packed and encoded in ways that are read here
};

struct RowGroup {
  std::int64_t rows = -1;
  std::vector<ColumnPart> parts;  // by leaf
};

struct ParquetLayout {
  std::vector<std::optional<ParquetColumn>> columns;  // in their order; nothing: it holds more than a value per row
  std::vector<std::string> names;                     // of the columns, with bytes of any kind
  std::vector<RowGroup> groups;
  std::vector<std::pair<std::string, std::string>> metadata;  // keys and values, with bytes of any kind
  std::int64_t rows = -1;
};

// Of the file that is open there. Nothing when it is none that is read here: damaged, encrypted, or out of the common.
std::optional<ParquetLayout> parquetLayoutOf(int descriptor);

}  // namespace workbench::data
