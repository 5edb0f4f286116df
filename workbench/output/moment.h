// The moment at which results are made, which reports show.
#pragma once

#include <cstdint>
#include <string>

namespace workbench::output {

// Seconds since 1970-01-01 UTC: those of the environment variable SOURCE_DATE_EPOCH, so that the same results can be
// made again to the byte, else now.
std::int64_t momentOfResults();

// The moment in UTC, as the language ("en") writes it.
std::string shownMoment(std::int64_t moment, const std::string& language);

}  // namespace workbench::output
