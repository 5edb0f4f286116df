#include "workbench/data/files/table_choice.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "workbench/text/wording.h"

namespace workbench::data {

Outcome<std::string> chosenTable(const std::vector<std::string>& names, const std::string& wanted,
                                 const std::string& where) {
  if (names.empty())
    return Problem{text::sentence("The database holds no table."), where, text::sentence("Name another file.")};
  if (wanted.empty()) {
    if (names.size() == 1) return names.front();
    return Problem{text::sentence("The database holds ^1 tables.", {fmt::to_string(names.size())}), where,
                   text::sentence("Name one behind \"#\": ^1.", {fmt::format("{}", fmt::join(names, ", "))})};
  }
  if (std::find(names.begin(), names.end(), wanted) != names.end()) return wanted;
  return Problem{text::sentence("The database holds no table \"^1\".", {wanted}), where,
                 text::sentence("It has: ^1.", {fmt::format("{}", fmt::join(names, ", "))})};
}

}  // namespace workbench::data
