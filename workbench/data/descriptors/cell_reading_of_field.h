// How a field declares that its cells are read: format, characters of numbers, texts of truth values.
//
// Its missing values are not looked at here.
#pragma once

#include "workbench/data/cells/cell_reading.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/field_types.h"

namespace workbench::data {

// Properties that do not apply to the type are passed over.
CellReading cellReading(const DescriptorObject& field, const FieldType& type);

}  // namespace workbench::data
