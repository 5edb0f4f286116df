#include "workbench/data/columnar/parquet_source.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "workbench/data/columnar/parquet_schemas.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/name_ending.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view parquetEnding = ".parquet";

// The dictionary in the metadata of the file that DuckDB opens under this name.
Outcome<std::optional<DescribedTable>> descriptionIn(const std::string& file, const std::string& path) {
  return describedByStored(
      firstText(fmt::format("SELECT decode(value) FROM parquet_kv_metadata({}) WHERE key = encode({})", sqlText(file),
                            sqlText(resourceKey))),
      path);
}

std::string sqlList(const std::vector<std::string>& names) {
  std::vector<std::string> texts;
  for (const std::string& name : names) texts.push_back(sqlText(name));
  return fmt::format("[{}]", fmt::join(texts, ", "));
}

// What read_parquet() has to be told of columns that are not the same in all files.
std::string_view joining(const CommonColumns& columns) { return columns.areSame ? "" : ", union_by_name = true"; }

// Read through the descriptors that are open, whatever happens to their names meanwhile.
class ParquetFiles final : public StoredSource {
 public:
  // One file, which may bring its own dictionary, or those that a package lists and describes.
  static Outcome<std::shared_ptr<const StoredSource>> open(const std::string& path,
                                                           const std::vector<std::string>& names,
                                                           std::optional<DescribedTable> description) {
    auto files = std::make_shared<ParquetFiles>();
    files->path_ = path;
    files->names_ = names;
    files->description_ = std::move(description);
    std::vector<std::string> opened;
    for (const std::string& name : names) {
      Outcome<InputFile> file = InputFile::open(name);
      if (!file) return file.problem();
      opened.push_back(file->descriptorPath());
      files->files_.push_back(std::move(*file));
    }
    files->list_ = sqlList(opened);
    if (names.size() > 1) {
      Outcome<CommonColumns> columns = commonColumns(opened, names);
      if (!columns) return columns.problem();
      files->columns_ = std::move(*columns);
    }
    return std::shared_ptr<const StoredSource>(std::move(files));
  }

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("read_parquet({}, hive_partitioning = false{})", list_, joining(columns_));
  }
  std::string identity() const override {
    std::string identity = path_;
    for (const InputFile& file : files_) identity += '|' + file.identity().text();
    return identity;
  }
  std::vector<std::string> files() const override { return names_; }
  Outcome<std::optional<DescribedTable>> description() const override {
    if (description_) return description_;
    return descriptionIn(files_.front().descriptorPath(), path_);
  }
  std::vector<std::string> warnings() const override { return columns_.warnings; }

 private:
  std::string path_;
  std::vector<std::string> names_;
  std::vector<InputFile> files_;
  std::string list_;  // of the files in SQL
  CommonColumns columns_;
  std::optional<DescribedTable> description_;
};

// DuckDB takes these signs in a name for a pattern of names; between brackets they stand for themselves.
std::string literalName(std::string_view name) {
  std::string literal;
  for (const char character : name) {
    const bool isPattern = character == '*' || character == '?' || character == '[';
    literal += isPattern ? fmt::format("[{}]", character) : std::string(1, character);
  }
  return literal;
}

// Read by their names, in which the folders count. Values in the names of folders are texts of no type.
class ParquetFolder final : public StoredSource {
 public:
  static Outcome<std::shared_ptr<const StoredSource>> open(const std::string& path, std::vector<std::string> names) {
    std::vector<std::string> literals;
    for (const std::string& name : names) literals.push_back(literalName(name));
    Outcome<CommonColumns> columns = commonColumns(literals, names);
    if (!columns) return columns.problem();
    auto folder = std::make_shared<ParquetFolder>();
    folder->path_ = path;
    folder->names_ = std::move(names);
    folder->list_ = sqlList(literals);
    folder->columns_ = std::move(*columns);
    return std::shared_ptr<const StoredSource>(std::move(folder));
  }

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("read_parquet({}, hive_partitioning = true, hive_types_autocast = false{})", list_,
                       joining(columns_));
  }
  std::string identity() const override {
    std::string identity = path_;
    for (const std::string& name : names_) {
      const std::optional<FileIdentity> is = identityAt(name);
      identity += '|' + (is ? is->text() : "-");
    }
    return identity;
  }
  std::vector<std::string> files() const override { return names_; }
  Outcome<std::optional<DescribedTable>> description() const override {
    return descriptionIn(literalName(names_.front()), path_);
  }
  std::vector<std::string> warnings() const override { return columns_.warnings; }
  bool isTextOfAnyKind(std::string_view column) const override {
    const std::string partition = fmt::format("/{}=", column);
    return names_.front().find(partition, path_.size() - 1) != std::string::npos;
  }

 private:
  std::string path_;
  std::vector<std::string> names_;
  std::string list_;  // of the files in SQL
  CommonColumns columns_;
};

// In an object store, read by an extension of DuckDB's that somebody has installed; nothing is installed here.
class ParquetObject final : public StoredSource {
 public:
  static Outcome<std::shared_ptr<const StoredSource>> open(const std::string& path) {
    if (const Outcome<std::uint64_t> loaded = rowsWritten("LOAD httpfs"); !loaded) {
      return Problem{
          text::sentence("Objects in a store are read by DuckDB's extension httpfs, which cannot be loaded."), path,
          text::sentence("Install the extension with DuckDB's own program (INSTALL httpfs), or copy the file "
                         "to this machine.")};
    }
    auto object = std::make_shared<ParquetObject>();
    object->path_ = path;
    if (const Outcome<Done> identified = object->identify(); !identified) return identified.problem();
    return std::shared_ptr<const StoredSource>(std::move(object));
  }

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("read_parquet({}, hive_partitioning = false)", sqlText(path_));
  }
  std::string identity() const override { return identity_; }
  std::vector<std::string> files() const override { return {path_}; }
  Outcome<std::optional<DescribedTable>> description() const override { return descriptionIn(path_, path_); }

 private:
  // A store tells no more of an object than what is in it: how many rows, and the bytes of its parts.
  Outcome<Done> identify() {
    const Outcome<std::optional<std::string>> parts = firstText(
        fmt::format("SELECT concat_ws('|', count(*), sum(total_compressed_size), max(file_offset), sum(num_values), "
                    "hash(string_agg(concat(stats_min, stats_max, data_page_offset)))) FROM parquet_metadata({})",
                    sqlText(path_)));
    if (!parts) {
      Problem problem = parts.problem();
      problem.where = path_;
      return problem;
    }
    identity_ = path_ + '|' + **parts;
    return Done{};
  }

  std::string path_;
  std::string identity_;
};

bool isInObjectStore(std::string_view path) {
  constexpr auto schemes =
      std::to_array<std::string_view>({"s3://", "gs://", "gcs://", "r2://", "http://", "https://"});
  return std::any_of(schemes.begin(), schemes.end(), [&](std::string_view scheme) { return path.starts_with(scheme); });
}

// In the order of their names. Fails when a folder among them cannot be read: its files would be left out.
Outcome<std::vector<std::string>> filesBelow(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code failure;
  fs::recursive_directory_iterator at(folder, failure);
  for (const fs::recursive_directory_iterator end; !failure && at != end; at.increment(failure)) {
    const std::string& name = at->path().native();
    if (hasEnding(name, parquetEnding) && at->is_regular_file(failure)) files.push_back(name);
  }
  if (failure) {
    return Problem{text::sentence("The folder cannot be read wholly (^1).", {failure.message()}), folder,
                   text::sentence("Ask the owner of its folders for the permission to read them.")};
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

bool isParquetFolder(const std::string& path) {
  std::error_code failure;
  if (!fs::is_directory(path, failure)) return false;
  const Outcome<std::vector<std::string>> files = filesBelow(path);
  return !files || !files->empty();
}

Outcome<std::shared_ptr<const StoredSource>> openParquet(const std::string& path) {
  if (const std::optional<TableReference> package = packageReference(path)) {
    Outcome<DescribedTable> table = describedResource(package->file, package->table);
    if (!table) return table.problem();
    const std::vector<std::string> names = table->dataPaths;
    for (const std::string& name : names) {
      if (isParquetName(name)) continue;
      return Problem{
          text::sentence("The file is of another kind than ^1, and both are said to hold one table.", {names.front()}),
          name, text::sentence("Let all files of a table be of one kind.")};
    }
    return ParquetFiles::open(path, names, std::move(*table));
  }
  if (isInObjectStore(path)) return ParquetObject::open(path);
  std::error_code failure;
  if (!fs::is_directory(path, failure)) return ParquetFiles::open(path, {path}, std::nullopt);
  Outcome<std::vector<std::string>> names = filesBelow(path);
  if (!names) return names.problem();
  return ParquetFolder::open(path, std::move(*names));
}

}  // namespace workbench::data
