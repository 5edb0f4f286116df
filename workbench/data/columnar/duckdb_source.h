// A table or view of a DuckDB database file as a stored table. Its comment may be the resource that describes it.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/columnar/stored_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The path as written, with "#table" behind it. Without a table the file must hold just one.
Outcome<std::shared_ptr<const StoredSource>> openDuckDbTable(const std::string& path);

}  // namespace workbench::data
