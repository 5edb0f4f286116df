// Shows a dataset's dictionary and its number of cases as tables.
#pragma once

#include <string>

#include "workbench/data/working/dataset.h"
#include "workbench/runtime/outcome.h"

namespace workbench::app {

// Into the command that is running. Counts the cases when their number is not known. The handle may be empty.
Outcome<Done> describeDataset(const data::Dataset& dataset, const std::string& handle);

}  // namespace workbench::app
