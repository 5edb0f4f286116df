// CSV files as a data file.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/files/examined_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Reads a table in CSV files, with its description where there is one.
Outcome<std::unique_ptr<ExaminedTable>> examineCsvFile(const std::string& path);

}  // namespace workbench::data
