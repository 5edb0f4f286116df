// Properties of a variable as the Dictionary Comparison table shows them.
#pragma once

#include <string>

#include "tests/model/dataset.h"

namespace workbench::tests::model {

// Keys, by the host's numbers.
std::string alignmentText(int alignment);
std::string levelText(int level);
std::string roleText(int role);
// A composite, an empty one where there is nothing to show.
std::string missingValuesText(const Variable& variable);

}  // namespace workbench::tests::model
