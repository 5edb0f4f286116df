// Reads the dialect of a text table.
#pragma once

#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/files/table_dialect.h"

namespace workbench::data {

// What the object does not say stands at its default. Properties of tables that are no text files are passed over.
TableDialect tableDialect(const DescriptorObject& object);

}  // namespace workbench::data
