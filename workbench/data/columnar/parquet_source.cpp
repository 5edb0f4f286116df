#include "workbench/data/columnar/parquet_source.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/name_ending.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view parquetEnding = ".parquet";

Outcome<std::optional<std::string>> resourceIn(const std::string& file) {
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(fmt::format(
      "SELECT decode(value) FROM parquet_kv_metadata({}) WHERE key = encode({})", sqlText(file), sqlText(resourceKey)));
  if (!query) return query.problem();
  const Outcome<bool> isThere = (*query)->nextChunk();
  if (!isThere) return isThere.problem();
  if (!*isThere) return std::optional<std::string>();
  return std::optional(std::string((*query)->column(0)[0]));
}

// Read through the descriptor that is open, whatever happens to its name meanwhile.
class ParquetFile final : public StoredSource {
 public:
  ParquetFile(std::string path, InputFile file) : path_(std::move(path)), file_(std::move(file)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("read_parquet({}, hive_partitioning = false)", sqlText(file_.descriptorPath()));
  }
  std::string identity() const override { return path_ + '|' + file_.identity().text(); }
  std::vector<std::string> files() const override { return {path_}; }
  Outcome<std::optional<std::string>> resource() const override { return resourceIn(file_.descriptorPath()); }

 private:
  std::string path_;
  InputFile file_;
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
  ParquetFolder(std::string path, std::vector<std::string> names) : path_(std::move(path)), names_(std::move(names)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    std::vector<std::string> places;
    for (const std::string& name : names_) places.push_back(sqlText(literalName(name)));
    return fmt::format("read_parquet([{}], hive_partitioning = true, hive_types_autocast = false)",
                       fmt::join(places, ", "));
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
  Outcome<std::optional<std::string>> resource() const override { return resourceIn(literalName(names_.front())); }
  bool isTextOfAnyKind(std::string_view column) const override {
    const std::string partition = fmt::format("/{}=", column);
    return names_.front().find(partition, path_.size() - 1) != std::string::npos;
  }

 private:
  std::string path_;
  std::vector<std::string> names_;
};

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
  std::error_code failure;
  if (fs::is_directory(path, failure)) {
    Outcome<std::vector<std::string>> names = filesBelow(path);
    if (!names) return names.problem();
    return std::shared_ptr<const StoredSource>(std::make_shared<ParquetFolder>(path, std::move(*names)));
  }
  Outcome<InputFile> file = InputFile::open(path);
  if (!file) return file.problem();
  return std::shared_ptr<const StoredSource>(std::make_shared<ParquetFile>(path, std::move(*file)));
}

}  // namespace workbench::data
