// A table schema: from its object to the fields of a DescribedTable.
#pragma once

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

// Fills the fields and how they match columns.
void readSchema(const DescriptorObject& schema, DescribedTable& table);

}  // namespace workbench::data
