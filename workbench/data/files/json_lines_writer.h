// JsonLinesWriter: writes a dataset with a JSON object for each case, which reads back as the same cases.
//
// Keys stand in the order of the variables. Numbers are written in their shortest form that reads as the same double,
// dates and times by their print format as texts of ISO 8601, texts without the blanks at their end; missing numbers
// and blank texts are null.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/data/files/file_kind.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

Outcome<std::unique_ptr<CaseWriter>> createJsonLinesFile(const std::string& path, Packing packing,
                                                         const Dictionary& dictionary, const Secret& password = {});

}  // namespace workbench::data
