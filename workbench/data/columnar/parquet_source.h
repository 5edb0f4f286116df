// Parquet files as a stored table: one file; those that a resource of a data package lists, in its order; or all of a
// folder with its subfolders, one below the other in the order of their names. Folders called NAME=value give each row
// below them that value in a column NAME. Or an object in a store ("s3://study/visits.parquet"), where DuckDB can reach
// it.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/columnar/stored_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

inline constexpr const char* resourceKey = "statistics:resource";  // in the files' own metadata

// The path of a file or a folder, or a package with or without "#resource".
Outcome<std::shared_ptr<const StoredSource>> openParquet(const std::string& path);

// Whether the folder holds Parquet files, at any depth, or cannot be read to tell.
bool isParquetFolder(const std::string& path);

}  // namespace workbench::data
