// Writes cases into one file and their dictionary into another, which are put into place together.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "workbench/data/case_reader.h"
#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

// Without a delimiter the cases are written as JSON lines.
Outcome<std::unique_ptr<CaseWriter>> describedBeside(const std::string& path, std::optional<char> delimiter,
                                                     const Dictionary& dictionary, const Secret& password,
                                                     std::unique_ptr<CaseWriter> cases);

}  // namespace workbench::data
