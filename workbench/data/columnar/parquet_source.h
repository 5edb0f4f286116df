// Parquet files as a stored table: one file; those that a resource of a data package lists, in its order; all of a
// folder; or an object in a store.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/columnar/stored_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The path of a file or a folder, a package with or without "#resource", or the address of an object.
Outcome<std::shared_ptr<const StoredSource>> openParquet(const std::string& path);

}  // namespace workbench::data
