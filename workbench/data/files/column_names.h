// The names of variables from the header of a file.
//
// A name is taken exactly as it stands. Where it repeats (also in another case) or is empty it is made up, and a
// warning says so; made-up names never take a name that stands in the header.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace workbench::data {

struct ColumnNames {
  std::vector<std::string> names;  // one per column, all different without regard to case
  std::vector<std::string> warnings;
};

// The warning that a column, the first one being 0, is called otherwise than its file calls it.
std::string renamingOf(std::size_t column, const std::string& name, const std::string& given);

ColumnNames columnNames(const std::vector<std::string>& header);

}  // namespace workbench::data
