// The language in which the program speaks: the one that was asked for, else the environment's, else English.
#pragma once

#include <memory>
#include <string>

#include "workbench/runtime/outcome.h"
#include "workbench/text/wording.h"

namespace workbench::app {

// A language that was asked for has to be there: else a problem, told in the environment's language. An empty one asks
// for none; where the environment's is missing, it is English.
Outcome<std::unique_ptr<text::Wording>> wordingAskedFor(const std::string& language);

// What follows is said in this wording, for as long as one lives. Requires: the wording outlives it.
class WordingInForce {
 public:
  explicit WordingInForce(const text::Wording& wording);
  WordingInForce(const WordingInForce&) = delete;
  WordingInForce& operator=(const WordingInForce&) = delete;
  ~WordingInForce();

 private:
  const text::Wording* before_;
};

}  // namespace workbench::app
