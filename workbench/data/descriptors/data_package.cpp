#include "workbench/data/descriptors/data_package.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "workbench/data/descriptors/property_names.h"
#include "workbench/data/descriptors/resource_path.h"
#include "workbench/data/descriptors/table_resource.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// The property that says where the data are. An "url" is one only where nothing newer stands beside it.
std::optional<DescriptorValue> pathProperty(const DescriptorObject& object) {
  if (auto path = object.at(property::path)) return path;
  return object.has(property::data) ? std::nullopt : object.at(property::url);
}

void addPath(const DescriptorValue& value, Resource& resource) {
  const std::optional<std::string> path = value.textWithoutNul();
  const std::optional<PathKind> kind = path ? pathKind(value, *path) : std::nullopt;
  if (!kind) return;
  const bool isElsewhere = *kind == PathKind::address;
  if (!resource.paths.empty() && resource.isElsewhere != isElsewhere) {
    value.rejectWith("Addresses and files stand in the same list.", "List files only.");
  }
  resource.isElsewhere = isElsewhere;
  resource.paths.push_back(*path);
}

void readPaths(const DescriptorObject& object, Resource& resource) {
  const auto path = pathProperty(object);
  if (path && object.has(property::data)) {
    object.value().rejectWith("The resource has both \"path\" and \"data\".", "Leave one of them out.");
    return;
  }
  if (!path) {
    if (!object.has(property::data)) {
      object.value().rejectWith("The resource has no \"path\".", "Name its file.");
    }
    return;
  }
  if (!path->isList()) {
    addPath(*path, resource);
    return;
  }
  const std::vector<DescriptorValue> entries = *path->list();
  if (entries.empty()) path->reject("^1 lists no file.", "Name at least one.");
  for (const DescriptorValue& entry : entries) addPath(entry, resource);
}

bool isSameFile(const std::filesystem::path& left, const std::filesystem::path& right) {
  std::error_code failure;
  return left.lexically_normal() == right.lexically_normal() || std::filesystem::equivalent(left, right, failure);
}

bool isOf(const Resource& resource, const std::filesystem::path& dataPath) {
  if (resource.isElsewhere || resource.paths.size() != 1) return false;
  const std::string& descriptorPath = resource.object.value().document().path;
  return isSameFile(besideDescriptor(descriptorPath, resource.paths.front()), dataPath);
}

}  // namespace

std::vector<Resource> resourcesOf(const DescriptorValue& package) {
  std::vector<Resource> resources;
  const auto object = package.object();
  const auto value = object ? object->required(property::resources) : std::nullopt;
  const auto list = value ? value->list() : std::nullopt;
  if (!list) return resources;
  if (list->empty()) value->reject("^1 lists no resource.", "List at least one.");
  std::unordered_set<std::string> names;
  for (const DescriptorValue& each : *list) {
    const auto resourceObject = each.object();
    const auto name = resourceObject ? resourceObject->required(property::name) : std::nullopt;
    const std::optional<std::string> written = name ? name->text() : std::nullopt;
    if (!written) return resources;
    if (!names.insert(*written).second) {
      name->reject("^1 is \"^2\", as that of another resource is.", {*written},
                   "Give each resource a name of its own.");
    }
    Resource resource{*resourceObject, *written, {}};
    readPaths(*resourceObject, resource);
    resource.isTable = looksLikeTable(resource);
    resources.push_back(std::move(resource));
  }
  return resources;
}

Outcome<std::optional<std::size_t>> resourceOfFile(const std::vector<Resource>& resources,
                                                   const std::string& dataPath) {
  const auto isOfFile = [&dataPath](const Resource& resource) { return isOf(resource, dataPath); };
  const auto found = std::find_if(resources.begin(), resources.end(), isOfFile);
  if (found == resources.end()) return std::optional<std::size_t>();
  if (const auto other = std::find_if(found + 1, resources.end(), isOfFile); other != resources.end()) {
    return Problem{
        text::sentence("The resources \"^1\" and \"^2\" both describe ^3.", {found->name, other->name, dataPath}),
        found->object.value().document().path, text::sentence("Open one of them by its name.")};
  }
  return std::optional(static_cast<std::size_t>(found - resources.begin()));
}

}  // namespace workbench::data
