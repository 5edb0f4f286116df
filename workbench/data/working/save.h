// Saving a dataset as a data file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "workbench/data/output_set.h"
#include "workbench/data/working/dataset.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// Writes all cases, whatever the filter, with the added variables, and gives their number. The file stands in its place
// after the set's commit, and the dataset counts as saved from then on. It may take the place of the file that the
// dataset came from: then the cases are kept in memory from the commit on.
Outcome<std::int64_t> saveDataset(const std::shared_ptr<Dataset>& dataset, const std::string& path,
                                  const Secret& password, OutputSet& outputs);

}  // namespace workbench::data
