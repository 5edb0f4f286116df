#include "workbench/data/descriptors/find_description.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "workbench/data/descriptors/data_package.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/descriptors/json_text.h"
#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/resource_path.h"
#include "workbench/data/descriptors/schema_reading.h"
#include "workbench/data/descriptors/statistics_dataset.h"
#include "workbench/data/descriptors/table_resource.h"
#include "workbench/data/files/protected_name.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

namespace fs = std::filesystem;

// A link that leads nowhere is there, too.
bool isThere(const fs::path& path) {
  std::error_code failure;
  return fs::symlink_status(path, failure).type() != fs::file_type::not_found;
}

Outcome<DescribedTable> finished(DescribedTable table, const DescriptorFindings& findings) {
  if (findings.problem()) return *findings.problem();
  table.warnings = findings.warnings();
  return table;
}

// Nothing when no resource of the package is this file.
Outcome<std::optional<DescribedTable>> describedIn(const std::string& packagePath, const std::string& dataPath) {
  const Outcome<JsonDocument> document = readJsonFile(packagePath);
  if (!document) return document.problem();
  DescriptorFindings findings;
  const std::vector<Resource> resources = resourcesOf(DescriptorValue(*document, findings));
  if (findings.problem()) return *findings.problem();
  const Outcome<std::optional<std::size_t>> index = resourceOfFile(resources, dataPath);
  if (!index) return index.problem();
  if (!*index) return std::optional<DescribedTable>();
  DescribedTable table = describedTable(resources[**index]);
  table.dataPaths = {dataPath};
  Outcome<DescribedTable> whole = finished(std::move(table), findings);
  if (!whole) return whole.problem();
  return std::optional<DescribedTable>(std::move(*whole));
}

Outcome<DescribedTable> describedBySchema(const std::string& schemaPath, const std::string& dataPath) {
  const Outcome<JsonDocument> document = readJsonFile(schemaPath);
  if (!document) return document.problem();
  DescriptorFindings findings;
  DescribedTable table;
  table.descriptorPath = schemaPath;
  table.dataPaths = {dataPath};
  if (const auto schema = DescriptorValue(*document, findings).object()) {
    readSchema(*schema, table);
    if (const auto dataset = schema->at(property::statisticsDataset)) readStatisticsDataset(*dataset, table);
  }
  return finished(std::move(table), findings);
}

std::string quotedNames(const std::vector<Resource>& resources) {
  std::vector<std::string> names;
  for (const Resource& resource : resources) names.push_back(resource.name);
  return listedAnd(names);
}

// The resource that is meant, or null and a problem.
const Resource* chosen(const std::vector<Resource>& resources, const std::string& name,
                       const DescriptorValue& package) {
  if (!name.empty()) {
    const auto found =
        std::find_if(resources.begin(), resources.end(), [&](const Resource& each) { return each.name == name; });
    if (found != resources.end()) return &*found;
    package.rejectWith("No resource has the name \"^1\".", {name},
                       text::sentence("The package has ^1.", {quotedNames(resources)}));
    return nullptr;
  }
  std::vector<Resource> tables;
  std::copy_if(resources.begin(), resources.end(), std::back_inserter(tables),
               [](const Resource& resource) { return resource.isTable; });
  if (tables.size() == 1) {
    return &*std::find_if(resources.begin(), resources.end(), [](const Resource& each) { return each.isTable; });
  }
  if (tables.empty()) {
    package.rejectWith("None of the package's resources is a table.",
                       text::sentence("The package has ^1.", {quotedNames(resources)}));
  } else {
    package.rejectWith("The package has ^1 tables.", {fmt::to_string(tables.size())},
                       text::sentence("Name one of ^1.", {quotedNames(tables)}));
  }
  return nullptr;
}

}  // namespace

Outcome<std::optional<DescribedTable>> descriptionBeside(const std::string& dataPath) {
  const std::string packagePath = packagePathOf(dataPath);
  if (isThere(packagePath)) {
    Outcome<std::optional<DescribedTable>> described = describedIn(packagePath, dataPath);
    if (!described || *described) return described;
  }
  std::string schemaPath = schemaPathOf(dataPath);
  // Who protects the data may have left the description of them as it was.
  if (isProtectedName(dataPath) && !isThere(schemaPath)) schemaPath = schemaPathOf(std::string(plainName(dataPath)));
  if (!isThere(schemaPath)) return std::optional<DescribedTable>();
  Outcome<DescribedTable> described = describedBySchema(schemaPath, dataPath);
  if (!described) return described.problem();
  return std::optional<DescribedTable>(std::move(*described));
}

Outcome<DescribedTable> describedResource(const std::string& packagePath, const std::string& resourceName) {
  const Outcome<JsonDocument> document = readJsonFile(packagePath);
  if (!document) return document.problem();
  DescriptorFindings findings;
  const DescriptorValue package(*document, findings);
  const std::vector<Resource> resources = resourcesOf(package);
  if (findings.problem()) return *findings.problem();
  const Resource* const resource = chosen(resources, resourceName, package);
  if (resource == nullptr) return *findings.problem();
  DescribedTable table = describedTable(*resource);
  table.dataPaths = dataPaths(*resource);
  return finished(std::move(table), findings);
}

Outcome<DescribedTable> describedByResource(std::string_view resource, const std::string& dataPath) {
  const Outcome<JsonDocument> document = jsonDocument(resource, dataPath);
  if (!document) return document.problem();
  DescriptorFindings findings;
  DescribedTable table;
  if (const auto object = DescriptorValue(*document, findings).object()) {
    table = describedTable({.object = *object, .name = {}, .paths = {}});
  }
  table.descriptorPath = dataPath;
  table.dataPaths = {dataPath};
  return finished(std::move(table), findings);
}

Outcome<std::optional<DescribedTable>> describedByStored(const Outcome<std::optional<std::string>>& resource,
                                                         const std::string& dataPath) {
  if (!resource) return resource.problem();
  if (!*resource) return std::optional<DescribedTable>();
  Outcome<DescribedTable> described = describedByResource(**resource, dataPath);
  if (!described) return described.problem();
  return std::optional(std::move(*described));
}

}  // namespace workbench::data
