// What a dictionary holds that no descriptor can say.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/data/dictionary.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The first text that is no UTF-8, the first property whose number stands for nothing, the first missing value or
// labelled value that is no value: named with its variable. Nothing when all of the dictionary can be written.
std::optional<Problem> whyNotWritten(const Dictionary& dictionary);

// A dictionary of which all can be written, and what it lacks of the one that it was made from.
struct WritableDictionary {
  Dictionary dictionary;
  std::vector<std::string> losses;  // sentences, each naming its variable
};

// Parts that cannot be written are left out, or stand at their default. Requires: the names can be written.
WritableDictionary writablePartOf(const Dictionary& dictionary);

}  // namespace workbench::data
