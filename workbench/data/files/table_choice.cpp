#include "workbench/data/files/table_choice.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace workbench::data {

Outcome<std::string> chosenTable(const std::vector<std::string>& names, const std::string& wanted,
                                 const std::string& where) {
  if (names.empty()) return Problem{"The database holds no table.", where, "Name another file."};
  if (wanted.empty()) {
    if (names.size() == 1) return names.front();
    return Problem{fmt::format("The database holds {} tables.", names.size()), where,
                   fmt::format("Name one behind \"#\": {}.", fmt::join(names, ", "))};
  }
  if (std::find(names.begin(), names.end(), wanted) != names.end()) return wanted;
  return Problem{fmt::format("The database holds no table \"{}\".", wanted), where,
                 fmt::format("It has: {}.", fmt::join(names, ", "))};
}

}  // namespace workbench::data
