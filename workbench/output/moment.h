// The moment at which results are made, which reports show.
#pragma once

#include <cstdint>
#include <string>

#include "workbench/runtime/outcome.h"

namespace workbench::output {

struct MomentOfResults {
  std::int64_t seconds = 0;  // since 1970-01-01 UTC
  bool isGiven = false;      // from outside; else it is now, which results that are the same from run to run leave out
};

// That of the environment variable SOURCE_DATE_EPOCH, so that the same results can be made again to the byte, else now.
// A problem when the variable holds no time.
Outcome<MomentOfResults> momentOfResults();

// The moment in UTC, as the language ("en") writes it.
std::string shownMoment(std::int64_t moment, const std::string& language);

}  // namespace workbench::output
