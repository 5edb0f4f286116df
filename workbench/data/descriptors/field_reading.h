// A field of a schema: from its object to a DescribedField.
#pragma once

#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/missing_values.h"

namespace workbench::data {

// The entries are those of the schema: in force where the field lists none of its own.
DescribedField describedField(const DescriptorObject& field, const std::vector<MissingEntry>& schemaEntries);

}  // namespace workbench::data
