#include "workbench/data/files/table_reference.h"

#include <filesystem>
#include <system_error>

namespace workbench::data {

TableReference tableReference(std::string_view path) {
  const auto isThere = [](std::string_view file) {
    std::error_code ignored;
    return std::filesystem::exists(file, ignored);
  };
  std::size_t sign = path.rfind('#');
  if (sign == std::string_view::npos || isThere(path)) return {std::string(path), ""};
  for (std::size_t at = path.find('#'); at < sign; at = path.find('#', at + 1)) {
    if (isThere(path.substr(0, at))) sign = at;
  }
  return {std::string(path.substr(0, sign)), std::string(path.substr(sign + 1))};
}

}  // namespace workbench::data
