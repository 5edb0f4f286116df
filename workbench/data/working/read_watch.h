// ReadWatch: who wants to know how far the reading of data has come, or to end it.
//
// Called for every block of cases that is read, on the thread that takes the cases; never by two threads at once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace workbench::data {

struct ReadProgress {
  const std::string& path;              // of the data's file, as written; empty when there is none
  std::int64_t cases;                   // read in this pass
  std::optional<std::int64_t> ofCases;  // if known
};

// It may throw ErrorText, which ends the reading: that is how a run is cancelled.
using ReadWatch = std::function<void(const ReadProgress& progress)>;

// An empty watch ends the watching.
void watchReading(ReadWatch watch);

// For those who read.
void reportReading(const std::string& path, std::int64_t cases, std::optional<std::int64_t> ofCases);

}  // namespace workbench::data
