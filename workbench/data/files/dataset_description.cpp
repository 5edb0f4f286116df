#include "workbench/data/files/dataset_description.h"

#include <fmt/format.h>

namespace workbench::data {

void describeDataset(Dictionary& dictionary, const DescribedTable& description, std::vector<std::string>& warnings) {
  // -1, and a warning, when no column holds the variable.
  const auto named = [&](const std::string& name, const char* purpose) -> std::int32_t {
    if (name.empty()) return -1;
    const std::int32_t index = dictionary.find(name);
    if (index < 0) {
      warnings.push_back(
          fmt::format("No column holds \"{}\", which {} names as {}.", name, description.descriptorPath, purpose));
    }
    return index;
  };
  dictionary.attributes = description.attributes;
  dictionary.filter = named(description.filter, "the filter");
  dictionary.weight = named(description.weight, "the weight");
  for (const std::string& name : description.split) {
    const std::int32_t index = named(name, "a split variable");
    if (index >= 0) dictionary.split.push_back(index);
  }
}

}  // namespace workbench::data
