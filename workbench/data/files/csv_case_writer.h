// CsvCaseWriter: writes a dataset as a CSV file that reads back as the same cases.
//
// Numbers are written in their shortest form that reads as the same double, system-missing values as empty fields,
// dates and times by their print format as ISO 8601, texts without the blanks at their end. These texts are made here;
// DuckDB writes the text of the file, with its quotes.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

Outcome<std::unique_ptr<CaseWriter>> createCsvFile(const std::string& path, const FileKind& kind,
                                                   const Dictionary& dictionary, const Secret& password = {});

}  // namespace workbench::data
