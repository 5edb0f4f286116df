// The keys of a schema, checked for their form and for naming fields: nothing here holds data against them.
#pragma once

#include <string>
#include <unordered_set>

#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

void checkKeys(const DescriptorObject& schema, const std::unordered_set<std::string>& fieldNames);

}  // namespace workbench::data
