// The flag variable: marks every case of the active dataset as equal, different or without a partner.
#pragma once

#include <string>

#include "host/data.h"
#include "syntax/compare_options.h"

namespace compdatas {

// Makes the variable in the active dataset, and gives its final name.
std::string makeFlagVariable(const CompareOptions& options, ProcedureDataSource& activeSource);

}  // namespace compdatas
