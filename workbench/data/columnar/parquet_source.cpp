#include "workbench/data/columnar/parquet_source.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "workbench/data/columnar/parquet_files.h"
#include "workbench/data/columnar/parquet_folder.h"
#include "workbench/data/columnar/parquet_object.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

Outcome<std::shared_ptr<const StoredSource>> openResource(const std::string& path, const TableReference& package) {
  Outcome<DescribedTable> table = describedResource(package.file, package.table);
  if (!table) return table.problem();
  const std::vector<std::string> names = table->dataPaths;
  for (const std::string& name : names) {
    if (isParquetName(name)) continue;
    return Problem{
        text::sentence("The file is of another kind than ^1, and both are said to hold one table.", {names.front()}),
        name, text::sentence("Let all files of a table be of one kind.")};
  }
  return openParquetFiles(path, names, std::move(*table));
}

}  // namespace

Outcome<std::shared_ptr<const StoredSource>> openParquet(const std::string& path) {
  if (const std::optional<TableReference> package = packageReference(path)) return openResource(path, *package);
  if (isInObjectStore(path)) return openParquetObject(path);
  std::error_code failure;
  if (std::filesystem::is_directory(path, failure)) return openParquetFolder(path);
  return openParquetFiles(path, {path}, std::nullopt);
}

}  // namespace workbench::data
