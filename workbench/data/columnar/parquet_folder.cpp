#include "workbench/data/columnar/parquet_folder.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "workbench/data/columnar/parquet_footer.h"
#include "workbench/data/columnar/parquet_list.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/name_ending.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

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
  ParquetFolder(std::string path, std::vector<std::string> names, ParquetList list)
      : path_(std::move(path)), names_(std::move(names)), list_(std::move(list)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return list_.relation("hive_partitioning = true, hive_types_autocast = false");
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
    return describedByStored(resourceInFooter(literalName(names_.front())), path_);
  }
  std::vector<std::string> warnings() const override { return list_.warnings(); }
  bool isTextOfAnyKind(std::string_view column) const override {
    const std::string partition = fmt::format("/{}=", column);
    return names_.front().find(partition, path_.size() - 1) != std::string::npos;
  }

 private:
  std::string path_;
  std::vector<std::string> names_;
  ParquetList list_;
};

// In the order of their names. Fails when a folder among them cannot be read: its files would be left out.
Outcome<std::vector<std::string>> filesBelow(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code failure;
  fs::recursive_directory_iterator at(folder, failure);
  for (const fs::recursive_directory_iterator end; !failure && at != end; at.increment(failure)) {
    const std::string& name = at->path().native();
    if (hasEnding(name, ".parquet") && at->is_regular_file(failure)) files.push_back(name);
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

Outcome<std::shared_ptr<const StoredSource>> openParquetFolder(const std::string& path) {
  Outcome<std::vector<std::string>> names = filesBelow(path);
  if (!names) return names.problem();
  std::vector<std::string> literals;
  for (const std::string& name : *names) literals.push_back(literalName(name));
  Outcome<ParquetList> list = ParquetList::of(literals, *names);
  if (!list) return list.problem();
  return std::shared_ptr<const StoredSource>(
      std::make_shared<ParquetFolder>(path, std::move(*names), std::move(*list)));
}

}  // namespace workbench::data
