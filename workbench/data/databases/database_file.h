// A table of a database as a data file.
#pragma once

#include <memory>

#include "workbench/data/databases/row_source.h"
#include "workbench/data/files/examined_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// Reads the table's description where it has one, and looks at all of its values where that leaves something open.
Outcome<std::unique_ptr<ExaminedTable>> examineDatabase(std::shared_ptr<const RowSource> source);

}  // namespace workbench::data
