// What values need of their variables, kept once per variable: a case table shows thousands of values of each.
#pragma once

#include <memory>

#include "host/data.h"
#include "workbench/output/document.h"

namespace workbench::output {

// The variable as it is at this moment. Values of a variable that did not change share one object.
std::shared_ptr<const ValueVariable> valueVariableOf(const VRIX_Variable& variable);

// Forgets all of them; what values hold stays.
void forgetValueVariables();

}  // namespace workbench::output
