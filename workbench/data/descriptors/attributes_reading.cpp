#include "workbench/data/descriptors/attributes_reading.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/data/descriptors/statistics_words.h"

namespace workbench::data {

DatasourceAttributes readAttributes(const DescriptorValue& value) {
  DatasourceAttributes attributes;
  const auto object = value.object();
  if (!object) return attributes;
  const auto members = object->members();
  if (members.size() > static_cast<std::size_t>(mostAttributes)) {
    value.reject("^1 has ^2 names; ^3 are the most.", {fmt::to_string(members.size()), fmt::to_string(mostAttributes)},
                 "Leave some out.");
    return attributes;
  }
  for (const auto& [name, member] : members) {
    if (auto texts = member.texts()) attributes.Add(name, *std::move(texts));
  }
  return attributes;
}

}  // namespace workbench::data
