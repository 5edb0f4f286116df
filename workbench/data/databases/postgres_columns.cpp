#include "workbench/data/databases/postgres_columns.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "workbench/data/files/sql_text.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

struct TypeRow {
  std::string_view type;
  CellKind kind;
  std::string_view expression;  // of the column {}
  std::string_view warning = {};
};

constexpr std::string_view zoneWarning = "Column \"^1\": its times bear a zone; they are read as times in UTC.";
constexpr std::string_view bytesWarning =
    "Column \"^1\" holds bytes; they are read as the texts of their hexadecimal digits.";
constexpr std::string_view otherTypeWarning = "Column \"^1\" is of the type ^2; its values are read as texts.";

// Types that are not here come as the server writes them.
constexpr auto typeRows = std::to_array<TypeRow>({
    {"bool", CellKind::number, "{}::pg_catalog.int4"},
    {"int2", CellKind::number, "{}"},
    {"int4", CellKind::number, "{}"},
    {"int8", CellKind::number, "{}"},
    {"oid", CellKind::number, "{}"},
    {"numeric", CellKind::number, "{}"},
    // The number that is stored; its own text would be the shortest that tells it from others of its kind.
    {"float4", CellKind::number, "{}::pg_catalog.float8"},
    {"float8", CellKind::number, "{}"},
    {"date", CellKind::date, "{}"},
    {"time", CellKind::time, "{}"},
    {"timestamp", CellKind::dateTime, "{}"},
    {"timestamptz", CellKind::dateTime, "({} AT TIME ZONE 'UTC')", zoneWarning},
    {"uuid", CellKind::text, "{}"},
    {"char", CellKind::text, "{}"},
    {"bytea", CellKind::text, "pg_catalog.upper(pg_catalog.encode({}, 'hex'))", bytesWarning},
});

constexpr TypeRow textRow{"", CellKind::text, "{}"};
constexpr TypeRow otherRow{"", CellKind::text, "{}", otherTypeWarning};

const TypeRow& rowOf(const PostgresColumn& column) {
  const auto found =
      std::find_if(typeRows.begin(), typeRows.end(), [&](const TypeRow& row) { return row.type == column.baseType; });
  if (found != typeRows.end()) return *found;
  constexpr std::string_view textsAndEnumerations = "SE";
  return textsAndEnumerations.find(column.category) != std::string_view::npos ? textRow : otherRow;
}

std::string inRow(const PostgresColumn& column) { return fmt::format("{}.{}", postgresRow, sqlName(column.name)); }

}  // namespace

KnownColumn knownColumn(const PostgresColumn& column) {
  const TypeRow& row = rowOf(column);
  const std::string warning = row.warning.empty() ? "" : text::sentence(row.warning, {column.name, column.type});
  const std::optional<std::string> label = column.comment.empty() ? std::nullopt : std::optional(column.comment);
  return {column.name, column.type, row.kind, warning, label};
}

std::string fetchedExpression(const PostgresColumn& column) {
  return fmt::format(fmt::runtime(rowOf(column).expression), inRow(column));
}

// Keys that differ in blanks at their end only are told apart at last, so that there is one order.
std::string orderedBy(const std::vector<PostgresColumn>& key, KeyNulls nulls) {
  const std::string_view place = nulls == KeyNulls::first ? " NULLS FIRST" : "";
  std::vector<std::string> columns;
  std::vector<std::string> wholeTexts;
  for (const PostgresColumn& column : key) {
    const std::string name = inRow(column);
    if (rowOf(column).kind != CellKind::text) {
      columns.push_back(fmt::format("{}{}", name, place));
      continue;
    }
    columns.push_back(
        fmt::format("pg_catalog.rtrim({}::pg_catalog.text, ' ') COLLATE pg_catalog.\"C\"{}", name, place));
    wholeTexts.push_back(fmt::format("{}::pg_catalog.text COLLATE pg_catalog.\"C\"", name));
  }
  columns.insert(columns.end(), wholeTexts.begin(), wholeTexts.end());
  return fmt::format("{}", fmt::join(columns, ", "));
}

}  // namespace workbench::data
