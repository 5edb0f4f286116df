// Which reader delivers the cases of a table: DuckDB's wherever DuckDB can be told the dialect exactly, else our own
// scanner's.
#pragma once

#include <memory>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/csv_table.h"

namespace workbench::data {

// Whether DuckDB reads such texts in just the way of our scanner. Requires: the dialect has a delimiter.
bool isForDuckDb(const TableDialect& dialect);

// Throws ErrorText when a file is not any more what it was when it was scanned.
std::unique_ptr<CaseReader> openCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted = {});

}  // namespace workbench::data
