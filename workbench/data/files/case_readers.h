// Which reader delivers the cases of a table: our own scanners', which are the fastest on texts as they lie; DuckDB's
// for packed ones in a dialect that it can be told exactly.
#pragma once

#include <memory>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/csv_table.h"

namespace workbench::data {

// Whether DuckDB reads such texts in just the way of our scanner. Requires: the dialect has a delimiter.
bool isForDuckDb(const TableDialect& dialect);
// Whether it is DuckDB that does.
bool isReadByDuckDb(const TableDialect& dialect, Packing packing);

// Throws ErrorText when a file is not any more what it was when it was scanned.
std::unique_ptr<CaseReader> openCaseReader(std::shared_ptr<const CsvTable> table, const VariableSubset& wanted = {});

}  // namespace workbench::data
