// CsvFile: a CSV file as a data file.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "workbench/data/data_file.h"
#include "workbench/data/files/csv_table.h"
#include "workbench/data/files/file_kind.h"

namespace workbench::data {

// Opens a CSV file. Without a dictionary its types are inferred, together with those of the other file when one is
// named.
Outcome<std::shared_ptr<const DataFile>> openCsvFile(const std::string& path, const FileKind& kind,
                                                     const std::optional<std::string>& typesWith);

}  // namespace workbench::data
