#include "workbench/data/files/column_names.h"

#include <fmt/format.h>

#include "workbench/data/dictionary.h"
#include "workbench/text/wording.h"

namespace workbench::data {

std::string renamingOf(std::size_t column, const std::string& name, const std::string& given) {
  const std::string number = fmt::to_string(column + 1);
  if (name.empty()) return text::sentence("Column ^1 has no name; it is called \"^2\".", {number, given});
  return text::sentence("The name of column ^1, \"^2\", repeats; the column is called \"^3\".", {number, name, given});
}

ColumnNames columnNames(const std::vector<std::string>& header) {
  ColumnNames result;
  result.names.resize(header.size());
  Dictionary taken;
  const auto take = [&](std::size_t column, std::string name) {
    result.names[column] = name;
    Variable variable;
    variable.name = std::move(name);
    taken.add(std::move(variable));
  };

  // 1. Every name keeps its first place.
  for (std::size_t column = 0; column < header.size(); ++column) {
    if (!header[column].empty() && taken.find(header[column]) < 0) take(column, header[column]);
  }
  // 2. The other columns get names that are left.
  for (std::size_t column = 0; column < header.size(); ++column) {
    if (!result.names[column].empty()) continue;
    if (header[column].empty()) {
      take(column, taken.goodName(fmt::format("column{}", column + 1)));
    } else {
      take(column, taken.goodName(header[column]));
    }
    result.warnings.push_back(renamingOf(column, header[column], result.names[column]));
  }
  return result;
}

}  // namespace workbench::data
