// StoredCaseWriter: writes a dataset into a table whose columns have types: numbers as doubles, dates and times as what
// they are, texts without the blanks at their end. A system-missing value and a blank text are no value.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// As a Parquet file that holds its dictionary.
Outcome<std::unique_ptr<CaseWriter>> createParquetFile(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password);

}  // namespace workbench::data
