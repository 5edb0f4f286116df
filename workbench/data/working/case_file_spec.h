// What a user named as a dataset or data file, once it was found to be usable: the state behind UserCaseFileSpec.
#pragma once

#include <string>
#include <string_view>

#include "workbench/runtime/outcome.h"
#include "workbench/runtime/secret.h"

namespace workbench::data {

struct CaseFileSpec {
  enum class Kind { dataset, file, workingFile };

  Kind kind = Kind::file;
  std::string name;  // the handle, or the path as written, lexically cleaned
  Secret password;
  bool isForOutput = false;
};

// For input a quoted text is a data file, a word an open dataset's handle, "*" the working file.
Outcome<CaseFileSpec> inputSpec(std::string_view name, bool isQuoted);
// For output the text decides: a well-formed handle is a dataset, anything else a data file.
Outcome<CaseFileSpec> outputSpec(std::string_view name, const Secret& password);

}  // namespace workbench::data
