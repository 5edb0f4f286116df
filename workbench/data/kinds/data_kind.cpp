#include "workbench/data/kinds/data_kind.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <utility>

#include "workbench/data/columnar/duckdb_source.h"
#include "workbench/data/columnar/parquet_source.h"
#include "workbench/data/columnar/stored_case_writer.h"
#include "workbench/data/columnar/stored_file.h"
#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/data/files/table_source.h"
#include "workbench/data/kinds/described_case_writer.h"

namespace workbench::data {
namespace {

Outcome<std::unique_ptr<CaseWriter>> createText(const std::string& path, const Dictionary& dictionary,
                                                const Secret& password) {
  const FileKind kind = *fileKind(path);
  auto cases = createCsvFile(path, kind, dictionary, password);
  if (!cases) return cases.problem();
  return describedBeside(path, kind.delimiter, dictionary, password, std::move(*cases));
}

template <auto open>
Outcome<std::unique_ptr<ExaminedTable>> examineOpened(const std::string& path) {
  Outcome<std::shared_ptr<const StoredSource>> source = open(path);
  if (!source) return source.problem();
  return examineStored(std::move(*source));
}

bool isTextDescribed(const std::string& path) {
  const Outcome<std::optional<DescribedTable>> description = descriptionOf(path);
  return description && *description && !(*description)->fields.empty();
}

template <auto open>
bool isStoredDescribed(const std::string& path) {
  const Outcome<std::shared_ptr<const StoredSource>> source = open(path);
  if (!source) return false;
  const Outcome<std::optional<std::string>> resource = (*source)->resource();
  return resource && *resource;
}

constexpr auto textEndings =
    std::to_array<std::string_view>({".csv", ".tsv", ".csv.gz", ".tsv.gz", ".csv.zst", ".tsv.zst"});
constexpr auto parquetEndings = std::to_array<std::string_view>({".parquet"});
constexpr auto duckDbEndings = std::to_array<std::string_view>({".duckdb"});

constexpr auto kinds = std::to_array<DataKind>({
    {"text file", textEndings, &examineCsvFile, &createText, &isTextDescribed, true},
    {"Parquet file", parquetEndings, &examineOpened<&openParquet>, &createParquetFile, &isStoredDescribed<&openParquet>,
     false},
    {"DuckDB database", duckDbEndings, &examineOpened<&openDuckDbTable>, nullptr, &isStoredDescribed<&openDuckDbTable>,
     false},
});
constexpr const DataKind& textKind = kinds[0];
constexpr const DataKind& parquetKind = kinds[1];

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
  });
  return lower;
}

}  // namespace

Outcome<const DataKind*> dataKind(const std::string& path) {
  const std::string file = path.substr(0, path.find('#'));
  const std::string lower = lowerCase(plainName(file));
  for (const DataKind& kind : kinds) {
    const bool hasEnding = std::any_of(kind.endings.begin(), kind.endings.end(),
                                       [&](std::string_view ending) { return lower.ends_with(ending); });
    if (hasEnding) return &kind;
  }
  if (lower.ends_with("datapackage.json")) return &textKind;
  if (isParquetFolder(file)) return &parquetKind;
  return Problem{"The ending of the name is none of a data file.", path,
                 fmt::format("Use one of these: {}.", fmt::join(dataEndings(false), ", "))};
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
