// The state of a UserCaseFileSpec, shared with the output that is opened over it.
#pragma once

#include <optional>
#include <string>

#include "host/data.h"
#include "workbench/data/working/case_file_spec.h"

struct UserCaseFileSpec::State {
  std::optional<workbench::data::CaseFileSpec> spec;  // none: not valid
  std::string error;
  const std::string empty;

  // Whether there is a specification now.
  bool take(workbench::Outcome<workbench::data::CaseFileSpec> outcome) {
    spec.reset();
    error.clear();
    if (outcome) {
      spec = *outcome;
    } else {
      error = outcome.problem().text();
    }
    return spec.has_value();
  }
  bool is(workbench::data::CaseFileSpec::Kind kind) const { return spec && spec->kind == kind; }
};
