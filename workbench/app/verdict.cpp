#include "workbench/app/verdict.h"

#include "workbench/app/verdict_answer.h"

namespace workbench::app {

namespace {

using output::Command;
using output::Verdict;

constexpr std::string_view comparisonTitle = "Compare Datasets";

bool isDifference(const ComparisonFigures& figures) {
  return figures.onlyActive() > 0 || figures.onlyComparison() > 0 || figures.differing.value_or(0) > 0 ||
         figures.differingProperties > 0 || figures.unpairedVariables > 0 || figures.isNothingPaired;
}

}  // namespace

std::optional<ComparisonVerdict> verdictOf(const Command& command, const FlagLookup& flags) {
  if (command.procedureTitle != comparisonTitle) return std::nullopt;
  if (command.outcome != Command::Outcome::completed) {
    return ComparisonVerdict{Verdict::trouble, false, answerOfTrouble(command.outcome), {}};
  }
  const ComparisonFigures figures = figuresOf(command, flags);
  // Where neither summary nor flags are there, not all values match or cases without a partner may have been passed.
  const bool isKnown = figures.compared && figures.differing;
  const Verdict verdict = isDifference(figures) || !isKnown ? Verdict::different : Verdict::same;
  const bool isGuess = !isDifference(figures) && !isKnown && figures.allValuesMatch;
  return ComparisonVerdict{verdict, isGuess, answerOf(figures, verdict), chartsOf(figures)};
}

Verdict worse(Verdict left, Verdict right) { return left < right ? right : left; }

int exitStatus(const std::optional<Verdict>& verdict) { return verdict ? static_cast<int>(*verdict) : 0; }

}  // namespace workbench::app
