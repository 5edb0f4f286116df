// The properties of a variable as texts of a table.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/output.h"
#include "workbench/data/working/dictionary_variable.h"

namespace workbench::app {

// As dictionaries write it: "F8.2".
std::string formatText(const data::PrintFormat& format);
// Keys of the wording. A number that stands for none of them is "Unknown".
const char* alignmentKey(VRIX_Variable_Enumerations::Alignment alignment);
const char* levelKey(VRIX_Variable_Enumerations::MeasurementLevel level);
const char* roleKey(VRIX_Variable_Enumerations::Role role);

// "1, 2, 3", "LO - 0, 99": values in the variable's print format. Empty when no value is missing.
BpComposite missingValuesText(const data::DictionaryVariable& variable);
// The texts one after the other, ", " between them.
BpComposite listText(const std::vector<std::string>& texts);

}  // namespace workbench::app
