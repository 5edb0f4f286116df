#include "workbench/data/descriptors/resource_path.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "workbench/text/folding.h"

namespace workbench::data {
namespace {

constexpr auto addressBeginnings = std::to_array<std::string_view>({"http://", "https://", "ftp://", "ftps://"});
constexpr const char* nameItRelative = "Name a file in the descriptor's folder or below it.";

bool isAddress(const std::string& path) {
  const std::string folded = text::foldedName(path);
  return std::any_of(addressBeginnings.begin(), addressBeginnings.end(),
                     [&folded](std::string_view beginning) { return folded.starts_with(beginning); });
}

std::vector<std::string_view> componentsOf(std::string_view path) {
  std::vector<std::string_view> components;
  while (true) {
    const std::size_t end = path.find('/');
    components.push_back(path.substr(0, end));
    if (end == std::string_view::npos) return components;
    path.remove_prefix(end + 1);
  }
}

// Why it is no path that a descriptor may have: a sentence with ^1 for the subject and ^2 for the path; empty when it
// is one.
std::string_view fault(const std::string& path) {
  if (path.empty()) return "^1 is empty.";
  if (path.find("://") != std::string::npos || text::foldedName(path).starts_with("file:")) {
    return "^1 is \"^2\", an address of a kind that is not allowed.";
  }
  if (path.find('\\') != std::string::npos) {
    return "^1 is \"^2\"; a backslash is none of the characters of a path, its parts are parted by \"/\".";
  }
  if (path.starts_with('/')) return "^1 is the absolute path \"^2\".";
  if (path.starts_with('~')) return "^1 is \"^2\", and no path may begin with \"~\".";
  for (const std::string_view component : componentsOf(path)) {
    if (component == "..") return "^1 is \"^2\", which leads out of its folder by \"..\".";
    if (component.starts_with('.')) {
      return "^1 is \"^2\", and none of its parts may begin with a dot, as hidden files do.";
    }
    if (component.empty()) return "^1 is \"^2\", which has an empty part.";
  }
  return {};
}

std::filesystem::path folderOf(const std::string& descriptorPath) {
  return std::filesystem::path(descriptorPath).parent_path();
}

}  // namespace

std::optional<PathKind> pathKind(const DescriptorValue& value, const std::string& path) {
  if (isAddress(path)) return PathKind::address;
  const std::string_view what = fault(path);
  if (what.empty()) return PathKind::relative;
  value.reject(what, {path}, nameItRelative);
  return std::nullopt;
}

void rejectAddress(const DescriptorValue& value) {
  value.reject("^1 is an address, and nothing is fetched from elsewhere.",
               "Fetch the file yourself, put it beside the descriptor and name it by its path there.");
}

std::string besideDescriptor(const std::string& descriptorPath, const std::string& path) {
  return (folderOf(descriptorPath) / path).string();
}

bool staysInside(const DescriptorValue& value, const std::string& path) {
  const std::string& descriptorPath = value.document().path;
  const std::filesystem::path folder = folderOf(descriptorPath);
  std::error_code failure;
  const std::filesystem::path inside = std::filesystem::canonical(folder.empty() ? "." : folder, failure);
  const std::filesystem::path target = failure ? inside : std::filesystem::weakly_canonical(inside / path, failure);
  if (failure) {
    value.reject("^1 is \"^2\", which cannot be followed (^3).", {path, failure.message()}, nameItRelative);
    return false;
  }
  const auto [folderEnd, rest] = std::mismatch(inside.begin(), inside.end(), target.begin(), target.end());
  if (folderEnd == inside.end()) return true;
  value.reject("^1 is \"^2\", a symbolic link that leads out of the descriptor's folder.", {path},
               "Put the file itself there.");
  return false;
}

std::optional<std::string> pathInside(const DescriptorValue& value) {
  const std::optional<std::string> path = value.textWithoutNul();
  if (!path) return std::nullopt;
  const std::optional<PathKind> kind = pathKind(value, *path);
  if (!kind) return std::nullopt;
  if (*kind == PathKind::address) {
    rejectAddress(value);
    return std::nullopt;
  }
  if (!staysInside(value, *path)) return std::nullopt;
  return path;
}

}  // namespace workbench::data
