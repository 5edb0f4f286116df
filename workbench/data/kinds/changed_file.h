// A data file some of whose variables have other names, or are left out.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "workbench/data/data_file.h"

namespace workbench::data {

// The columns that are kept, in the order of the file, and the names of their variables.
struct KeptColumns {
  std::vector<std::size_t> columns;
  std::vector<std::string> names;
};

// Requires: every column of the file is the variable of the same index; the names are all different.
std::shared_ptr<const DataFile> changedFile(std::shared_ptr<const DataFile> file, KeptColumns kept);

}  // namespace workbench::data
