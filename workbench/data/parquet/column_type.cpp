#include "workbench/data/parquet/column_type.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace workbench::data {
namespace {

constexpr std::int64_t nothing = -1;

struct PlainRow {
  PhysicalType physical;
  std::int64_t converted;
  std::int64_t logical;  // where there is one
  const char* name;
  std::int64_t bits = nothing;
  bool isSigned = false;
};

constexpr auto plainRows = std::to_array<PlainRow>({
    {PhysicalType::boolean, nothing, nothing, "BOOLEAN"},
    {PhysicalType::int32, nothing, nothing, "INTEGER"},
    {PhysicalType::int64, nothing, nothing, "BIGINT"},
    {PhysicalType::real32, nothing, nothing, "FLOAT"},
    {PhysicalType::real64, nothing, nothing, "DOUBLE"},
    {PhysicalType::bytes, Converted::utf8, Logical::text, "VARCHAR"},
    {PhysicalType::int32, Converted::date, Logical::date, "DATE"},
    {PhysicalType::int32, Converted::uint8, Logical::whole, "UTINYINT", 8, false},
    {PhysicalType::int32, Converted::uint16, Logical::whole, "USMALLINT", 16, false},
    {PhysicalType::int32, Converted::uint32, Logical::whole, "UINTEGER", 32, false},
    {PhysicalType::int32, Converted::int8, Logical::whole, "TINYINT", 8, true},
    {PhysicalType::int32, Converted::int16, Logical::whole, "SMALLINT", 16, true},
    {PhysicalType::int32, Converted::int32, Logical::whole, "INTEGER", 32, true},
    {PhysicalType::int64, Converted::int64, Logical::whole, "BIGINT", 64, true},
});

bool isOf(const PlainRow& row, const StoredType& type) {
  if (type.physical != static_cast<std::int64_t>(row.physical) || type.converted != row.converted) return false;
  if (type.logical == nothing) return true;
  return type.logical == row.logical &&
         (row.logical != Logical::whole || (type.bits == row.bits && type.isSigned == row.isSigned));
}

bool isMoment(const StoredType& type) {
  if (type.physical != static_cast<std::int64_t>(PhysicalType::int64) || type.logical != Logical::moment) return false;
  return (type.unit == TimeUnit::microseconds &&
          (type.converted == nothing || type.converted == Converted::momentMicroseconds)) ||
         (type.unit == TimeUnit::milliseconds &&
          (type.converted == nothing || type.converted == Converted::momentMilliseconds));
}

bool isTime(const StoredType& type) {
  return type.physical == static_cast<std::int64_t>(PhysicalType::int64) && type.logical == Logical::time &&
         !type.isUtc && type.unit == TimeUnit::microseconds && type.converted == Converted::timeMicroseconds;
}

bool isDecimal(const StoredType& type) {
  constexpr std::int64_t mostDigits = 38;
  if (type.converted != Converted::decimal || type.digits < 1 || type.digits > mostDigits) return false;
  if (type.scale < 0 || type.scale > type.digits) return false;
  return type.logical == nothing ||
         (type.logical == Logical::decimal && type.logicalScale == type.scale && type.logicalDigits == type.digits);
}

}  // namespace

std::string duckDbTypeOf(const StoredType& type) {
  if (isMoment(type)) return type.isUtc ? "TIMESTAMP WITH TIME ZONE" : "TIMESTAMP";
  if (isTime(type)) return "TIME";
  if (isDecimal(type)) return fmt::format("DECIMAL({},{})", type.digits, type.scale);
  const auto row = std::find_if(plainRows.begin(), plainRows.end(), [&](const PlainRow& of) { return isOf(of, type); });
  return row == plainRows.end() ? "" : row->name;
}

}  // namespace workbench::data
