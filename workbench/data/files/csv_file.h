// CsvFile: a CSV file as a data file.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "workbench/data/data_file.h"

namespace workbench::data {

// Opens a table in CSV files, with its description where there is one. What nobody declared of it is inferred, together
// with what nobody declared of the other table when one is named.
Outcome<std::shared_ptr<const DataFile>> openCsvFile(const std::string& path,
                                                     const std::optional<std::string>& typesWith);

}  // namespace workbench::data
