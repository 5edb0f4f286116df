#include "workbench/data/parquet/value_form.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace workbench::data {
namespace {

struct FormRow {
  std::string_view type;
  PhysicalType stored;
  HandedOut handedOut;
  std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  std::int64_t highest = std::numeric_limits<std::int64_t>::max();
};

constexpr auto formRows = std::to_array<FormRow>({
    {"BOOLEAN", PhysicalType::boolean, HandedOut::int32},
    {"TINYINT", PhysicalType::int32, HandedOut::int32, -128, 127},
    {"UTINYINT", PhysicalType::int32, HandedOut::int32, 0, 255},
    {"SMALLINT", PhysicalType::int32, HandedOut::int32, -32'768, 32'767},
    {"USMALLINT", PhysicalType::int32, HandedOut::int32, 0, 65'535},
    {"INTEGER", PhysicalType::int32, HandedOut::int32},
    {"UINTEGER", PhysicalType::int32, HandedOut::int64},
    {"BIGINT", PhysicalType::int64, HandedOut::int64},
    {"FLOAT", PhysicalType::real32, HandedOut::real},
    {"DOUBLE", PhysicalType::real64, HandedOut::real},
    {"DATE", PhysicalType::int32, HandedOut::int32},
    {"VARCHAR", PhysicalType::bytes, HandedOut::text},
});

std::optional<ValueForm> momentForm(const ParquetColumn& column) {
  ValueForm form{column.type, HandedOut::int64};
  if (column.unit == TimeUnit::microseconds && column.type == PhysicalType::int64) return form;
  if (column.unit != TimeUnit::milliseconds ||
      (column.type != PhysicalType::int64 && column.type != PhysicalType::int32))
    return std::nullopt;
  form.multiplier = 1'000;
  form.lowest = std::numeric_limits<std::int64_t>::min() / form.multiplier;
  form.highest = std::numeric_limits<std::int64_t>::max() / form.multiplier;
  return form;
}

std::optional<ValueForm> decimalForm(const ParquetColumn& column, std::int32_t digits) {
  constexpr std::int32_t mostDigits = 18;
  constexpr std::size_t mostBytes = 8;
  const bool isHeld =
      column.type == PhysicalType::int32 || column.type == PhysicalType::int64 ||
      (column.type == PhysicalType::fixedBytes && column.fixedLength >= 1 && column.fixedLength <= mostBytes);
  if (!isHeld || digits < 1 || digits > mostDigits) return std::nullopt;
  ValueForm form{column.type, HandedOut::int64};
  form.highest = 1;
  for (std::int32_t digit = 0; digit < digits; ++digit) form.highest *= 10;
  form.lowest = -(form.highest - 1);
  --form.highest;
  return form;
}

}  // namespace

std::optional<ValueForm> valueFormOf(const ParquetColumn& column, std::string_view type) {
  constexpr std::string_view decimalStart = "DECIMAL(";
  if (type.starts_with(decimalStart)) {
    std::int32_t digits = 0;
    std::from_chars(type.data() + decimalStart.size(), type.data() + type.size(), digits);
    return decimalForm(column, digits);
  }
  if (type == "TIME" || type == "TIMESTAMP" || type == "TIMESTAMP WITH TIME ZONE") return momentForm(column);
  const auto row = std::find_if(formRows.begin(), formRows.end(), [&](const FormRow& of) { return of.type == type; });
  if (row == formRows.end() || row->stored != column.type) return std::nullopt;
  return ValueForm{row->stored, row->handedOut, type == "UINTEGER", 1, row->lowest, row->highest};
}

}  // namespace workbench::data
