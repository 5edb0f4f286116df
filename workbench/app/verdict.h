// Verdict: whether a comparison found a difference, and the sentence that says so, read from what the procedure issued.
//
// The files of this name are the one place in the workbench that knows the tables and messages of COMPARE DATASETS.
#pragma once

#include <optional>
#include <vector>

#include "workbench/app/verdict_figures.h"
#include "workbench/output/document.h"

namespace workbench::app {

struct ComparisonVerdict {
  output::Verdict verdict = output::Verdict::same;
  bool isGuess = false;  // nothing that was issued decides; it counts as different
  output::Answer answer;
  std::vector<output::Chart> charts;
};

// Nothing when the command is no comparison. Requires: the command has ended; the flags are those of this run.
std::optional<ComparisonVerdict> verdictOf(const output::Command& command, const FlagLookup& flags);

// The worse of two.
output::Verdict worse(output::Verdict left, output::Verdict right);

// 0 nothing differs, 1 something differs, 2 trouble; 0 without a comparison.
int exitStatus(const std::optional<output::Verdict>& verdict);

}  // namespace workbench::app
