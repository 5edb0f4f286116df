#include "workbench/data/descriptors/dictionary_place.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "workbench/data/descriptors/data_package.h"
#include "workbench/data/descriptors/json_text.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/data/files/name_ending.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view packageFile = "datapackage.json";
constexpr std::string_view schemaEnding = ".schema.json";

bool exists(const std::string& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

// A protected data file has its schema in a protected file, whose name ends like its own.
std::string schemaAfter(std::string_view name, const std::string& dataPath) {
  return std::string(name).append(schemaEnding).append(protectedEnding(dataPath));
}

std::string stemOf(const std::string& dataPath) {
  const Outcome<FileKind> kind = fileKind(dataPath);
  const std::string_view plain = plainName(dataPath);
  return std::string(plain.substr(0, plain.size() - (kind ? kind->ending.size() : 0)));
}

// Whether another data file would take the schema for its own.
bool isShared(const std::string& stem, const std::string& dataPath) {
  for (const std::string_view ending : fileEndings()) {
    const std::string other = std::string(stem).append(ending).append(protectedEnding(dataPath));
    if (other != dataPath && exists(other)) return true;
  }
  return false;
}

DictionaryPlace schemaPlaceOf(const std::string& dataPath) {
  std::string path = schemaPathOf(dataPath);
  if (isShared(stemOf(dataPath), dataPath)) path = schemaAfter(plainName(dataPath), dataPath);
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
  if (!*index) return schemaPlaceOf(dataPath);
  if (isProtectedName(dataPath)) {
    return Problem{
        text::sentence("^1 describes the protected file, and would show its dictionary to everybody.", {packagePath}),
        dataPath, text::sentence("Choose another name or folder.")};
  }
  return DictionaryPlace{packagePath, true};
}

bool isSchemaName(std::string_view path) { return hasEnding(plainName(path), schemaEnding); }

std::string schemaPathOf(const std::string& dataPath) {
  std::string own = schemaAfter(plainName(dataPath), dataPath);
  return exists(own) ? own : schemaAfter(stemOf(dataPath), dataPath);
}

std::string packagePathOf(const std::string& dataPath) {
  return (fs::path(dataPath).parent_path() / packageFile).string();
}

}  // namespace workbench::data
