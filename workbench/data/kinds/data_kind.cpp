#include "workbench/data/kinds/data_kind.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <utility>

#include "workbench/data/columnar/duckdb_source.h"
#include "workbench/data/columnar/duckdb_table_writer.h"
#include "workbench/data/columnar/parquet_folder.h"
#include "workbench/data/columnar/parquet_source.h"
#include "workbench/data/columnar/parquet_writer.h"
#include "workbench/data/columnar/stored_file.h"
#include "workbench/data/databases/database_file.h"
#include "workbench/data/databases/postgres_source.h"
#include "workbench/data/databases/sqlite_source.h"
#include "workbench/data/databases/sqlite_table_writer.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/json_lines_writer.h"
#include "workbench/data/files/name_ending.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/server_reference.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/data/files/table_source.h"
#include "workbench/data/kinds/described_case_writer.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

Outcome<std::unique_ptr<CaseWriter>> createText(const std::string& path, const Dictionary& dictionary,
                                                const Secret& password) {
  const FileKind kind = *fileKind(path);
  const bool isJson = kind.form == TextForm::jsonLines;
  auto cases = isJson ? createJsonLinesFile(path, kind.packing, dictionary, password)
                      : createCsvFile(path, kind, dictionary, password);
  if (!cases) return cases.problem();
  return describedBeside(path, isJson ? std::nullopt : std::optional(kind.delimiter), dictionary, password,
                         std::move(*cases));
}

Outcome<std::unique_ptr<ExaminedTable>> examinedSource(std::shared_ptr<const StoredSource> source) {
  return examineStored(std::move(source));
}
Outcome<std::unique_ptr<ExaminedTable>> examinedSource(std::shared_ptr<const RowSource> source) {
  return examineDatabase(std::move(source));
}

template <auto open>
Outcome<std::unique_ptr<ExaminedTable>> examineOpened(const std::string& path) {
  auto source = open(path);
  if (!source) return source.problem();
  return examinedSource(std::move(*source));
}

bool isTextDescribed(const std::string& path) {
  const Outcome<std::optional<DescribedTable>> description = descriptionOf(path);
  return description && *description && !(*description)->fields.empty();
}

bool isDescribed(const StoredSource& source) {
  const Outcome<std::optional<DescribedTable>> description = source.description();
  return description && *description;
}
bool isDescribed(const RowSource& source) {
  const Outcome<std::optional<std::string>> resource = source.resource();
  return resource && *resource;
}

template <auto open>
bool isStoredDescribed(const std::string& path) {
  const auto source = open(path);
  return source && isDescribed(**source);
}

constexpr auto parquetEndings = std::to_array<std::string_view>({".parquet"});
constexpr auto duckDbEndings = std::to_array<std::string_view>({".duckdb"});
constexpr auto sqliteEndings = std::to_array<std::string_view>({".sqlite", ".sqlite3", ".db"});

const auto kinds = std::to_array<DataKind>({
    {"text file", fileEndings(), &examineCsvFile, &createText, &isTextDescribed, true},
    {"Parquet file", parquetEndings, &examineOpened<&openParquet>, &createParquetFile, &isStoredDescribed<&openParquet>,
     false},
    {"DuckDB database", duckDbEndings, &examineOpened<&openDuckDbTable>, &createDuckDbTable,
     &isStoredDescribed<&openDuckDbTable>, false},
    {"SQLite database", sqliteEndings, &examineOpened<&openSqliteTable>, &createSqliteTable,
     &isStoredDescribed<&openSqliteTable>, false},
    {"PostgreSQL table",
     {},
     &examineOpened<&openPostgresTable>,
     nullptr,
     &isStoredDescribed<&openPostgresTable>,
     false,
     postgresBeginnings},
});
const DataKind& textKind = kinds[0];
const DataKind& parquetKind = kinds[1];

// The kind of what lies on a server, whatever its name ends in; null: it lies elsewhere.
const DataKind* kindOfBeginning(std::string_view name) {
  const auto found = std::find_if(kinds.begin(), kinds.end(), [&](const DataKind& kind) {
    return std::any_of(kind.beginnings.begin(), kind.beginnings.end(),
                       [&](std::string_view beginning) { return name.starts_with(beginning); });
  });
  return found == kinds.end() ? nullptr : &*found;
}

const DataKind* kindOfEnding(std::string_view name) {
  const std::string_view plain = plainName(name);
  for (const DataKind& kind : kinds) {
    const bool isOfKind = std::any_of(kind.endings.begin(), kind.endings.end(),
                                      [&](std::string_view ending) { return hasEnding(plain, ending); });
    if (isOfKind) return &kind;
  }
  return nullptr;
}

// What the files of the resource are; where the package cannot tell, reading it as text tells why.
const DataKind& kindOfPackage(const TableReference& package) {
  const Outcome<DescribedTable> table = describedResource(package.file, package.table);
  const bool isParquet = table && std::any_of(table->dataPaths.begin(), table->dataPaths.end(),
                                              [](const std::string& path) { return isParquetName(path); });
  return isParquet ? parquetKind : textKind;
}

}  // namespace

Outcome<const DataKind*> dataKind(const std::string& path) {
  if (const DataKind* const kind = kindOfBeginning(path)) return kind;
  if (const std::optional<TableReference> package = packageReference(path)) return &kindOfPackage(*package);
  // A name that ends as data do may have "#" in it; otherwise that parts the file from one of its tables.
  const TableReference reference = tableReference(path);
  for (const std::string& name : {path, reference.file}) {
    if (const DataKind* const kind = kindOfEnding(name)) return kind;
  }
  if (isParquetFolder(reference.file)) return &parquetKind;
  return Problem{text::sentence("The ending of the name is none of a data file."), path,
                 text::sentence("Use one of these: ^1.", {fmt::format("{}", fmt::join(dataEndings(false), ", "))})};
}

std::vector<std::string_view> dataEndings(bool onlyWritten) {
  std::vector<std::string_view> endings;
  for (const DataKind& kind : kinds) {
    if (onlyWritten && kind.create == nullptr) continue;
    endings.insert(endings.end(), kind.endings.begin(), kind.endings.end());
  }
  return endings;
}

}  // namespace workbench::data
