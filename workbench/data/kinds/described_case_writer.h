// Writes cases into one file and their dictionary into another, which are put into place together.
#pragma once

#include <memory>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

Outcome<std::unique_ptr<CaseWriter>> describedBeside(const std::string& path, char delimiter,
                                                     const Dictionary& dictionary, const Secret& password,
                                                     std::unique_ptr<CaseWriter> cases);

}  // namespace workbench::data
