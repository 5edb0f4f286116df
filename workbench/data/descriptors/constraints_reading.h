// The constraints of a field, checked for their form: nothing here holds data against them.
#pragma once

#include <optional>
#include <vector>

#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/field_values.h"

namespace workbench::data {

// The restriction: the field's categories, of which an "enum" has to be a part.
void checkConstraints(const DescriptorObject& field, const std::optional<std::vector<FieldValue>>& restriction,
                      const FieldValueReader& values);

}  // namespace workbench::data
