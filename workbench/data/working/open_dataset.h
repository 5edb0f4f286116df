// Opening a data file as a dataset.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/data_file.h"
#include "workbench/data/working/dataset.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// What a user should know of how the file was read is added to the messages of the command that is running.
Outcome<std::shared_ptr<Dataset>> openDataset(const std::string& path, const OpenOptions& options);

}  // namespace workbench::data
