// A dataset that has nothing but the names of its variables.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/data.h"

namespace workbench::language {

std::unique_ptr<VRIX_DataSource> namedVariables(const std::vector<std::string>& names);

}  // namespace workbench::language
