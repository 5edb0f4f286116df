#include "workbench/data/descriptors/dictionary_place.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "workbench/data/descriptors/data_package.h"
#include "workbench/data/descriptors/json_text.h"
#include "workbench/data/files/file_kind.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view packageFile = "datapackage.json";
constexpr std::string_view schemaEnding = ".schema.json";

bool exists(const std::string& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

std::string stemOf(const std::string& dataPath) {
  const Outcome<FileKind> kind = fileKind(dataPath);
  return dataPath.substr(0, dataPath.size() - (kind ? kind->ending.size() : 0));
}

// Whether another data file would take the schema for its own.
bool isShared(const std::string& stem, const std::string& dataPath) {
  for (const std::string_view ending : fileEndings()) {
    const std::string other = std::string(stem).append(ending);
    if (other != dataPath && exists(other)) return true;
  }
  return false;
}

DictionaryPlace schemaPlaceOf(const std::string& dataPath) {
  std::string path = schemaPathOf(dataPath);
  if (isShared(stemOf(dataPath), dataPath)) path = std::string(dataPath).append(schemaEnding);
  return {path, false};
}

}  // namespace

Outcome<DictionaryPlace> dictionaryPlaceOf(const std::string& dataPath) {
  const std::string packagePath = packagePathOf(dataPath);
  std::error_code failure;
  // A link that leads nowhere is there, too.
  if (fs::symlink_status(packagePath, failure).type() == fs::file_type::not_found) {
    return schemaPlaceOf(dataPath);
  }
  const Outcome<JsonDocument> document = readJsonFile(packagePath);
  if (!document) return document.problem();
  DescriptorFindings findings;
  const std::vector<Resource> resources = resourcesOf(DescriptorValue(*document, findings));
  if (findings.problem()) return *findings.problem();
  const Outcome<std::optional<std::size_t>> index = resourceOfFile(resources, dataPath);
  if (!index) return index.problem();
  return *index ? DictionaryPlace{packagePath, true} : schemaPlaceOf(dataPath);
}

std::string schemaPathOf(const std::string& dataPath) {
  std::string own = std::string(dataPath).append(schemaEnding);
  return exists(own) ? own : stemOf(dataPath).append(schemaEnding);
}

std::string packagePathOf(const std::string& dataPath) {
  return (fs::path(dataPath).parent_path() / packageFile).string();
}

}  // namespace workbench::data
