// Messages: what the command says beside its tables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/output.h"

namespace profile {

// Says why there is no result.
void refuse(const BpCellText& text);
void refuse(std::string_view key);

// Names the variables that were asked for and cannot be profiled; silent without any.
void warnOfUnprofiled(const std::vector<std::string>& names);

}  // namespace profile
