// The answer to a comparison's question, and its pictures, drawn from its figures.
#pragma once

#include <vector>

#include "workbench/app/verdict_figures.h"

namespace workbench::app {

output::Answer answerOf(const ComparisonFigures& figures, output::Verdict verdict);
// Of a comparison that was refused or failed.
output::Answer answerOfTrouble(output::Command::Outcome outcome);

std::vector<output::Chart> chartsOf(const ComparisonFigures& figures);

}  // namespace workbench::app
