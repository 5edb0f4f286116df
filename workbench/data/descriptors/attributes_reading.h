// Attributes of a variable or a dataset: named lists of texts.
#pragma once

#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

// Names that begin with "$" are the host's own, and are kept like all others.
DatasourceAttributes readAttributes(const DescriptorValue& value);

}  // namespace workbench::data
