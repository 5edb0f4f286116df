// What a dictionary holds that no descriptor can say.
#pragma once

#include <optional>

#include "workbench/data/dictionary.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The first text that is no UTF-8, the first property whose number stands for nothing, the first missing value or
// labelled value that is no value: named with its variable. Nothing when all of the dictionary can be written.
std::optional<Problem> whyNotWritten(const Dictionary& dictionary);

}  // namespace workbench::data
