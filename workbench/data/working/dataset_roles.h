// The variables of a dataset that have a part to play: its filter, its weight, its split variables.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/working/dataset.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// A numeric variable's name, or nothing: switched off.
Outcome<Done> setFilter(Dataset& dataset, std::optional<std::string_view> name);
Outcome<Done> setWeight(Dataset& dataset, std::optional<std::string_view> name);
// Variables of any type, each once; none: switched off.
Outcome<Done> setSplit(Dataset& dataset, const std::vector<std::string>& names);

// The variable of that name, or the problem that there is none.
Outcome<std::int32_t> variableNamed(const Dictionary& dictionary, std::string_view name);

}  // namespace workbench::data
