// A table some of whose columns have other names, or are not there, for whoever opens it: for comparing files whose
// makers named things differently.
//
// Types are inferred under the new names, so that a partner's columns are found by these; what describes the table goes
// by the old ones. The roles of variables (filter, weight, split) go with them.
#pragma once

#include <memory>

#include "workbench/data/data_file.h"
#include "workbench/data/files/examined_table.h"
#include "workbench/runtime/outcome.h"

namespace workbench::data {

// The table itself when nothing is to be changed. A problem: a variable that is not there, one that is renamed twice or
// both renamed and dropped, a name that no variable can have or that two would have, and when no variable is left.
Outcome<std::unique_ptr<ExaminedTable>> changed(std::unique_ptr<ExaminedTable> table, const VariableChanges& changes);

}  // namespace workbench::data
