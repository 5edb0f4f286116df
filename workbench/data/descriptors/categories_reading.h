// The categories of a field: the values that it is restricted to, with their labels.
#pragma once

#include <optional>
#include <vector>

#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/field_types.h"
#include "workbench/data/descriptors/field_values.h"
#include "workbench/data/descriptors/missing_values.h"

namespace workbench::data {

struct CategoriesReading {
  bool areGiven = false;  // also by labels of the older kind, which restrict nothing
  bool areOrdered = false;
  std::optional<std::vector<FieldValue>> restriction;
};

// Labels of values go to `labels`. A type that takes no categories has them passed over with a warning; labels of the
// older kind are read for every type.
CategoriesReading readCategories(const DescriptorObject& field, const FieldType& type,
                                 const std::vector<MissingEntry>& missing, const FieldValueReader& values,
                                 ValueLabels& labels);

}  // namespace workbench::data
