// Parquet files that are named, one by one, as one table: one below the other.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/data/columnar/stored_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The path is that of the table as written. Without a description the first file may bring one with it.
Outcome<std::shared_ptr<const StoredSource>> openParquetFiles(const std::string& path,
                                                              const std::vector<std::string>& names,
                                                              std::optional<DescribedTable> description);

}  // namespace workbench::data
