// "statistics:variable": what a field says of its variable beyond the standard's own words.
#pragma once

#include <optional>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/field_values.h"

namespace workbench::data {

struct StatisticsReading {
  std::optional<VRIX_Variable_Enumerations::MeasurementLevel> level;
  std::optional<MissingValues> missing;
  std::vector<FieldValue> missingValues;  // the discrete ones of them
};

// Fills what is declared into the field; labels of values go to `labels`. An unknown part is rejected, for it would be
// lost in silence.
StatisticsReading readStatisticsVariable(const DescriptorObject& field, DescribedField& described,
                                         const FieldValueReader& values, ValueLabels& labels);

}  // namespace workbench::data
