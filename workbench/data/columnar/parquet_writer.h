// Parquet files, written with their dictionary in their metadata.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

Outcome<std::unique_ptr<CaseWriter>> createParquetFile(const std::string& path, const Dictionary& dictionary,
                                                       const Secret& password);

}  // namespace workbench::data
