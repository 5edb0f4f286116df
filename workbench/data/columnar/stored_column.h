// StoredColumn: a column of a table that gives its columns types, as Parquet files and databases do.
//
// DuckDB fetches its values, converted into one of a few types that are decoded here. No conversion changes a value:
// what a number cannot hold exactly comes as the text of its digits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/data/files/column_evidence.h"

namespace workbench::data {

enum class Carrier : std::uint8_t {
  int32,     // whole numbers, truth values as 1 and 0
  int64,     // whole numbers
  decimal,   // 64-bit whole numbers, `scale` digits of which stand behind the point; 15 digits at most
  real,      // doubles
  date,      // days since 1970-01-01, 32 bits
  time,      // microseconds since midnight
  dateTime,  // microseconds since 1970-01-01
  cellText,  // texts of numbers or dates, which are read like cells of a text file
  text,      // texts, whatever they look like
};

struct StoredColumn {
  std::string name;
  std::string type;  // as DuckDB calls it
  Carrier carrier = Carrier::text;
  std::int32_t scale = 0;

  bool isText() const { return carrier == Carrier::text; }
};

// What the column is in cases; empty where that depends on its values.
CellKind kindOf(const StoredColumn& column);

// From the type's name in DuckDB.
StoredColumn storedColumn(std::string name, std::string type);

// The column as an expression of SQL that gives values of its carrier, or texts of them.
std::string fetchedColumn(const StoredColumn& column);
std::string fetchedText(const StoredColumn& column);

// What a user should know of how the column is read; empty: nothing.
std::string warningOf(const StoredColumn& column);

}  // namespace workbench::data
