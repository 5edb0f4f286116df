// All Parquet files of a folder with its subfolders as one table: one below the other in the order of their names.
// Folders called NAME=value give each row below them that value in a column NAME.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/columnar/stored_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Whether the folder holds Parquet files, at any depth, or cannot be read to tell.
bool isParquetFolder(const std::string& path);

Outcome<std::shared_ptr<const StoredSource>> openParquetFolder(const std::string& path);

}  // namespace workbench::data
