#include "workbench/data/files/dataset_description.h"

#include "workbench/text/wording.h"

namespace workbench::data {

void describeDataset(Dictionary& dictionary, const DescribedTable& description, std::vector<std::string>& warnings) {
  // -1, and a warning, when no column holds the variable.
  const auto named = [&](const std::string& name, std::string_view warning) -> std::int32_t {
    if (name.empty()) return -1;
    const std::int32_t index = dictionary.find(name);
    if (index < 0) {
      warnings.push_back(text::sentence(warning, {name, description.descriptorPath}));
    }
    return index;
  };
  dictionary.attributes = description.attributes;
  dictionary.filter = named(description.filter, "No column holds \"^1\", which ^2 names as the filter.");
  dictionary.weight = named(description.weight, "No column holds \"^1\", which ^2 names as the weight.");
  for (const std::string& name : description.split) {
    const std::int32_t index = named(name, "No column holds \"^1\", which ^2 names as a split variable.");
    if (index >= 0) dictionary.split.push_back(index);
  }
}

}  // namespace workbench::data
