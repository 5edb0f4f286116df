#include "workbench/data/working/dataset_roles.h"

#include <algorithm>
#include <utility>

#include "workbench/data/working/refusal.h"

namespace workbench::data {
namespace {

// The index of a numeric variable, or -1 for no name.
Outcome<std::int32_t> numericVariable(const Dictionary& dictionary, std::optional<std::string_view> name) {
  if (!name) return std::int32_t{-1};
  Outcome<std::int32_t> index = variableNamed(dictionary, *name);
  if (index && !dictionary.at(*index).isNumeric()) {
    return problem("^1 is a string variable; name a numeric one.", {dictionary.at(*index).name});
  }
  return index;
}

}  // namespace

Outcome<Done> setFilter(Dataset& dataset, std::optional<std::string_view> name) {
  const auto index = numericVariable(dataset.dictionary(), name);
  if (!index) return index.problem();
  dataset.dictionary().filter = *index;
  return Done{};
}

Outcome<Done> setWeight(Dataset& dataset, std::optional<std::string_view> name) {
  const auto index = numericVariable(dataset.dictionary(), name);
  if (!index) return index.problem();
  dataset.dictionary().weight = *index;
  return Done{};
}

Outcome<Done> setSplit(Dataset& dataset, const std::vector<std::string>& names) {
  std::vector<std::int32_t> split;
  for (const std::string& name : names) {
    const auto index = variableNamed(dataset.dictionary(), name);
    if (!index) return index.problem();
    if (std::find(split.begin(), split.end(), *index) != split.end()) {
      return problem("The variable ^1 is named twice; name every variable once.", {name});
    }
    split.push_back(*index);
  }
  dataset.dictionary().split = std::move(split);
  return Done{};
}

Outcome<std::int32_t> variableNamed(const Dictionary& dictionary, std::string_view name) {
  const std::int32_t index = dictionary.find(name);
  if (index < 0) return problem("The dataset has no variable ^1.", {name});
  return index;
}

}  // namespace workbench::data
