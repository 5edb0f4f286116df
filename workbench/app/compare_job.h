// The job that `compare` writes from its options and then runs like any other.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/app/password_files.h"

namespace workbench::app {

enum class SortChoice { whenNeeded, never, always };

// What the command line asked for. Lists are as written, names and keywords split at commas.
struct CompareRequest {
  std::string active;
  std::string comparison;
  std::vector<std::string> ids;
  std::vector<std::pair<std::string, std::string>> renamed;  // of the comparison dataset: old name, new name
  std::vector<std::string> dropped;                          // of the same
  std::vector<std::string> variables;                        // empty: all
  std::vector<std::string> properties;                       // empty: none
  std::optional<std::string> flagName;
  bool noFlag = false;
  std::optional<std::string> saveActive;
  std::optional<std::string> matched;
  std::optional<std::string> mismatched;
  std::optional<std::string> limit;  // a number, or "none"
  SortChoice sort = SortChoice::whenNeeded;
  std::optional<double> tolerance;
  std::optional<std::string> collation;
  bool profile = false;
  JobPasswords passwords;
};

// The handles under which the job opens the two datasets.
inline constexpr const char* activeHandle = "active";
inline constexpr const char* comparisonHandle = "comparison";

std::string compareJob(const CompareRequest& request);

// The passwords as they are shown: that there are some.
JobPasswords hidden(const JobPasswords& passwords);
// " PASSWORD='...'" for a password of a job; nothing where there is none.
std::string passwordInJob(const char* keyword, const std::string& password);

// A text as a string of the job language, in single quotes.
std::string quotedInJob(const std::string& text);

}  // namespace workbench::app
