// How a variable's missing values are written: as texts of cells where these say the same, else as values.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/json_text.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

struct WrittenMissing {
  // Texts of cells that are just the variable's missing values, in their order; empty where texts cannot say it.
  std::vector<std::string> texts;
  // Otherwise: what "missing" holds. Null: there is none.
  std::shared_ptr<const Json> declared;
};

// Requires: whyNotWritten() finds nothing in the variable.
WrittenMissing writtenMissing(const Variable& variable);

// A number that reads back as the same double.
Json numberJson(double value);

}  // namespace workbench::data
