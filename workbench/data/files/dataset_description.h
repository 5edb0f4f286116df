// What a description says of a dataset as a whole, put into its dictionary.
#pragma once

#include <string>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/dictionary.h"

namespace workbench::data {

// Attributes, filter, weight and split. A name that no variable has is a warning.
void describeDataset(Dictionary& dictionary, const DescribedTable& description, std::vector<std::string>& warnings);

}  // namespace workbench::data
