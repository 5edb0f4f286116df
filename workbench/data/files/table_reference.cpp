#include "workbench/data/files/table_reference.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace workbench::data {

TableReference tableReference(std::string_view path) {
  std::error_code ignored;
  std::size_t sign = path.rfind('#');
  if (sign == std::string_view::npos || std::filesystem::exists(path, ignored)) return {std::string(path), ""};
  // Of a file that is not there yet: a sign in the name of its folder is none that parts.
  const std::size_t folderEnd = path.rfind('/');
  if (folderEnd != std::string_view::npos && folderEnd > sign) sign = std::string_view::npos;
  for (std::size_t at = path.find('#'); at < sign && at != std::string_view::npos; at = path.find('#', at + 1)) {
    const std::string_view file = path.substr(0, at);
    if (std::filesystem::exists(file, ignored) && !std::filesystem::is_directory(file, ignored)) sign = at;
  }
  if (sign == std::string_view::npos) return {std::string(path), ""};
  return {std::string(path.substr(0, sign)), std::string(path.substr(sign + 1))};
}

std::optional<TableReference> packageReference(std::string_view path) {
  constexpr std::string_view packageName = "datapackage.json";
  TableReference reference = tableReference(path);
  const std::string_view file = reference.file;
  const std::size_t folderEnd = file.rfind('/');
  const bool isPackage = file.substr(folderEnd == std::string_view::npos ? 0 : folderEnd + 1) == packageName;
  return isPackage ? std::optional(std::move(reference)) : std::nullopt;
}

}  // namespace workbench::data
