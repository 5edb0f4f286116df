// A table of a PostgreSQL database: also a view, a partitioned table, a foreign table.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/databases/row_source.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// A reference (server_reference.h), with "#table" or "#schema.table" behind it. Without a schema a table is looked for
// where the server looks for it; without a table the database must hold just one.
Outcome<std::shared_ptr<const RowSource>> openPostgresTable(const std::string& path);

}  // namespace workbench::data
