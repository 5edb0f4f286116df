// A Parquet file in an object store ("s3://study/visits.parquet"), read by an extension of DuckDB's that somebody has
// installed; nothing is installed here.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "workbench/data/columnar/stored_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

bool isInObjectStore(std::string_view path);

// Loads the extension. Requires: it is in an object store.
Outcome<std::shared_ptr<const StoredSource>> openParquetObject(const std::string& path);

// The file where DuckDB reaches it by its name, there or anywhere else.
Outcome<std::shared_ptr<const StoredSource>> parquetByName(const std::string& path);

}  // namespace workbench::data
