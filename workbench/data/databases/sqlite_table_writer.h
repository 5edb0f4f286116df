// A table of a SQLite database file, written with its dictionary: in a new file, or added to one that is there, or in
// the place of a table of that name.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// The path as written, with "#table" behind it; without, the table is called as the file.
Outcome<std::unique_ptr<CaseWriter>> createSqliteTable(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password);

}  // namespace workbench::data
