// From plain lists to the host's datasets and back.
#pragma once

#include <memory>
#include <string>

#include "tests/model/dataset.h"
#include "workbench/data/working/dataset.h"

namespace workbench::tests::model {

std::shared_ptr<data::Dataset> toHost(const Dataset& dataset);
// With the path of the file that it was read from.
Dataset fromHost(const data::Dataset& dataset);

// Writes the cases as a data file, which the ending of its name says the kind of.
void writeFile(const Dataset& dataset, const std::string& path);
// Opens a data file as the host does for a user.
std::shared_ptr<data::Dataset> openFile(const std::string& path);

}  // namespace workbench::tests::model
