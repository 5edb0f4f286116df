// "statistics:dataset": what a resource, or a schema in a file of its own, says of the whole dataset.
#pragma once

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/descriptors/descriptor_value.h"

namespace workbench::data {

// Fills attributes, filter, weight and split. Variables that it names have to be fields, and are numbers where they
// filter or weight; without any field there is nothing to hold them against.
// Requires: the table's fields are read.
void readStatisticsDataset(const DescriptorValue& value, DescribedTable& table);

}  // namespace workbench::data
