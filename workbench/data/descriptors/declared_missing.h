// "missing" of "statistics:variable": the missing values of a variable as dictionaries keep them.
#pragma once

#include <optional>
#include <vector>

#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/field_values.h"

namespace workbench::data {

struct DeclaredMissing {
  MissingValues missing;
  std::vector<FieldValue> discrete;
};

// Either a range of numbers, with one more value perhaps, or one to three values.
std::optional<DeclaredMissing> declaredMissing(const DescriptorValue& value, const FieldValueReader& values);

}  // namespace workbench::data
