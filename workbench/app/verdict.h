// Verdict: whether a comparison found a difference, read from what the procedure issued.
//
// This is the one place in the workbench that knows the tables and messages of COMPARE DATASETS.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/output/document.h"

namespace workbench::app {

// How many of the active dataset's first `cases` cases have a flag that is not 0 (different, or without a partner) in
// the named variable; nothing when the dataset has no such variable.
using FlagLookup = std::function<std::optional<std::int64_t>(const std::string& variable, std::int64_t cases)>;

struct ComparisonVerdict {
  output::Verdict verdict = output::Verdict::same;
  bool isGuess = false;  // nothing that was issued decides; it counts as different
};

// Nothing when the command is no comparison. Requires: the command has ended; the flags are those of this run.
std::optional<ComparisonVerdict> verdictOf(const output::Command& command, const FlagLookup& flags);

// The worse of two.
output::Verdict worse(output::Verdict left, output::Verdict right);

// 0 nothing differs, 1 something differs, 2 trouble; 0 without a comparison.
int exitStatus(const std::optional<output::Verdict>& verdict);

// True of the table that shows differing cases one by one.
bool isCaseTable(const output::Table& table);

// The key under which a table was opened.
std::string_view tableKey(const output::Table& table);

}  // namespace workbench::app
