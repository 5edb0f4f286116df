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

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view parquetEnding = ".parquet";

class ParquetSource final : public StoredSource {
 public:
  ParquetSource(std::string path, std::vector<std::string> names, std::vector<InputFile> files, bool isFolder)
      : path_(std::move(path)), names_(std::move(names)), files_(std::move(files)), isFolder_(isFolder) {}

  const std::string& path() const override { return path_; }
  // A single file is read through the descriptor that is open, whatever happens to its name meanwhile. Of several the
  // names of their folders count.
  std::string relation() const override {
    std::vector<std::string> places;
    for (std::size_t index = 0; index < files_.size(); ++index) {
      places.push_back(sqlText(isFolder_ ? names_[index] : files_[index].descriptorPath()));
    }
    return fmt::format("read_parquet([{}], hive_partitioning = {})", fmt::join(places, ", "), isFolder_);
  }
  std::string identity() const override {
    std::string identity = path_;
    for (const InputFile& file : files_) {
      const FileIdentity is = file.identity();
      identity += fmt::format("|{}:{}:{}:{}", is.device, is.inode, is.size, is.modified);
    }
    return identity;
  }
  std::vector<std::string> files() const override { return names_; }

  Outcome<std::optional<std::string>> resource() const override {
    Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(
        fmt::format("SELECT decode(value) FROM parquet_kv_metadata({}) WHERE key = encode({})",
                    sqlText(isFolder_ ? names_.front() : files_.front().descriptorPath()), sqlText(resourceKey)));
    if (!query) return query.problem();
    const Outcome<bool> isThere = (*query)->nextChunk();
    if (!isThere) return isThere.problem();
    if (!*isThere) return std::optional<std::string>();
    return std::optional(std::string((*query)->column(0)[0]));
  }

 private:
  std::string path_;
  std::vector<std::string> names_;
  std::vector<InputFile> files_;
  bool isFolder_;
};

bool isParquetName(const fs::path& path) {
  std::string ending = path.extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
  });
  return ending == parquetEnding;
}

std::vector<std::string> filesBelow(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code failure;
  for (fs::recursive_directory_iterator at(folder, failure), end; !failure && at != end; at.increment(failure)) {
    if (at->is_regular_file(failure) && isParquetName(at->path())) files.push_back(at->path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

bool isParquetFolder(const std::string& path) {
  std::error_code failure;
  return fs::is_directory(path, failure) && !filesBelow(path).empty();
}

Outcome<std::shared_ptr<const StoredSource>> openParquet(const std::string& path) {
  std::error_code failure;
  const bool isFolder = fs::is_directory(path, failure);
  std::vector<std::string> names = isFolder ? filesBelow(path) : std::vector<std::string>{path};
  std::vector<InputFile> files;
  for (const std::string& name : names) {
    Outcome<InputFile> file = InputFile::open(name);
    if (!file) return file.problem();
    files.push_back(std::move(*file));
  }
  return std::shared_ptr<const StoredSource>(
      std::make_shared<ParquetSource>(path, std::move(names), std::move(files), isFolder));
}

}  // namespace workbench::data
