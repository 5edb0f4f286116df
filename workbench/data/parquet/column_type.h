// The type of a Parquet column by DuckDB's name of it, told by what the file says of the column.
#pragma once

#include <cstdint>
#include <string>

#include "workbench/data/parquet/parquet_layout.h"

namespace workbench::data {

// The numbers by which files name what values are: in an older way and in a newer one.
struct Converted {
  enum Number : std::int64_t {
    utf8 = 0,
    decimal = 5,
    date = 6,
    timeMilliseconds = 7,
    timeMicroseconds = 8,
    momentMilliseconds = 9,
    momentMicroseconds = 10,
    uint8 = 11,
    uint16 = 12,
    uint32 = 13,
    int8 = 15,
    int16 = 16,
    int32 = 17,
    int64 = 18,
  };
};
struct Logical {
  enum Number : std::int64_t { text = 1, decimal = 5, date = 6, time = 7, moment = 8, whole = 10 };
};

// What a file says of a column, in its own numbers; less than zero where it says nothing.
struct StoredType {
  std::int64_t physical = -1;
  std::int64_t converted = -1;  // the older way to say what the values are
  std::int64_t logical = -1;    // the newer way, and what belongs to it:
  std::int64_t bits = -1;       // of whole numbers
  bool isSigned = false;        // they are
  bool isUtc = false;           // moments are of a zone
  TimeUnit unit = TimeUnit::none;
  std::int64_t logicalScale = 0;  // of decimals, once more
  std::int64_t logicalDigits = 0;
  std::int64_t scale = 0;
  std::int64_t digits = 0;
};

// Empty where both ways do not agree, or the column is out of the common: DuckDB is to be asked.
std::string duckDbTypeOf(const StoredType& type);

}  // namespace workbench::data
