#include "workbench/data/columnar/stored_column.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "workbench/data/files/duckdb_query.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

struct TypeRow {
  std::string_view type;
  Carrier carrier;
  std::string_view fetchedAs;  // a type to convert to; empty: as it is
};

// Types that are not here come as the texts into which DuckDB converts them.
constexpr auto typeRows = std::to_array<TypeRow>({
    {"BOOLEAN", Carrier::int32, "INTEGER"},
    {"TINYINT", Carrier::int32, "INTEGER"},
    {"UTINYINT", Carrier::int32, "INTEGER"},
    {"SMALLINT", Carrier::int32, "INTEGER"},
    {"USMALLINT", Carrier::int32, "INTEGER"},
    {"INTEGER", Carrier::int32, ""},
    {"UINTEGER", Carrier::int64, "BIGINT"},
    {"BIGINT", Carrier::int64, ""},
    {"UBIGINT", Carrier::cellText, "VARCHAR"},
    {"HUGEINT", Carrier::cellText, "VARCHAR"},
    {"UHUGEINT", Carrier::cellText, "VARCHAR"},
    {"FLOAT", Carrier::real, "DOUBLE"},
    {"DOUBLE", Carrier::real, ""},
    {"DATE", Carrier::date, ""},
    {"TIME", Carrier::time, ""},
    {"TIMESTAMP", Carrier::dateTime, ""},
    {"TIMESTAMP_S", Carrier::dateTime, "TIMESTAMP"},
    {"TIMESTAMP_MS", Carrier::dateTime, "TIMESTAMP"},
    {"TIMESTAMP_NS", Carrier::cellText, "VARCHAR"},
    {"VARCHAR", Carrier::text, ""},
    {"UUID", Carrier::text, "VARCHAR"},
});

constexpr std::string_view zonedDateTime = "TIMESTAMP WITH TIME ZONE";
constexpr std::string_view decimalStart = "DECIMAL(";
constexpr std::string_view enumStart = "ENUM(";

const TypeRow* rowOf(std::string_view type) {
  const auto found =
      std::find_if(typeRows.begin(), typeRows.end(), [&](const TypeRow& row) { return row.type == type; });
  return found == typeRows.end() ? nullptr : &*found;
}

// "DECIMAL(18,3)": 18 and 3.
std::pair<std::int32_t, std::int32_t> digitsOf(std::string_view decimal) {
  std::pair<std::int32_t, std::int32_t> digits;
  const char* const end = decimal.data() + decimal.size();
  const auto whole = std::from_chars(decimal.data() + decimalStart.size(), end, digits.first);
  if (whole.ptr != end) std::from_chars(whole.ptr + 1, end, digits.second);
  return digits;
}

bool isKnownText(const StoredColumn& column) {
  return rowOf(column.type) != nullptr || column.type.starts_with(enumStart);
}

}  // namespace

StoredColumn storedColumn(std::string name, std::string type) {
  constexpr std::int32_t digitsAlwaysHeld = 15;
  StoredColumn column{std::move(name), std::move(type)};
  if (const TypeRow* row = rowOf(column.type)) {
    column.carrier = row->carrier;
  } else if (column.type == zonedDateTime) {
    column.carrier = Carrier::dateTime;
  } else if (column.type.starts_with(decimalStart)) {
    const auto [digits, scale] = digitsOf(column.type);
    column.carrier = digits <= digitsAlwaysHeld ? Carrier::decimal : Carrier::cellText;
    column.scale = scale;
  }
  return column;
}

CellKind kindOf(const StoredColumn& column) {
  switch (column.carrier) {
    case Carrier::int32:
    case Carrier::int64:
    case Carrier::decimal:
    case Carrier::real:
      return CellKind::number;
    case Carrier::date:
      return CellKind::date;
    case Carrier::time:
      return CellKind::time;
    case Carrier::dateTime:
      return CellKind::dateTime;
    case Carrier::text:
      return CellKind::text;
    case Carrier::cellText:
      break;
  }
  return CellKind::empty;
}

std::string fetchedColumn(const StoredColumn& column) {
  const std::string name = sqlName(column.name);
  if (column.type == zonedDateTime) return fmt::format("{} AT TIME ZONE 'UTC'", name);
  // Decimals of other lengths lie in fewer or more bytes.
  if (column.carrier == Carrier::decimal) return fmt::format("CAST({} AS DECIMAL(18,{}))", name, column.scale);
  const TypeRow* const row = rowOf(column.type);
  if (row != nullptr && row->fetchedAs.empty()) return name;
  return fmt::format("CAST({} AS {})", name, row != nullptr ? row->fetchedAs : "VARCHAR");
}

std::string fetchedText(const StoredColumn& column) {
  if (column.type == zonedDateTime) return fmt::format("CAST({} AS VARCHAR)", fetchedColumn(column));
  return fmt::format("CAST({} AS VARCHAR)", sqlName(column.name));
}

std::string warningOf(const StoredColumn& column) {
  if (column.type == zonedDateTime) {
    return text::sentence("Column \"^1\": its times bear a zone; they are read as times in UTC.", {column.name});
  }
  if (!column.isText() || isKnownText(column)) return {};
  return text::sentence("Column \"^1\" is of the type ^2; its values are read as texts.", {column.name, column.type});
}

}  // namespace workbench::data
