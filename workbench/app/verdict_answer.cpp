#include "workbench/app/verdict_answer.h"

#include <algorithm>
#include <utility>

#include "workbench/output/sentences.h"

namespace workbench::app {

namespace {

using output::Answer;
using output::Phrase;
using output::Verdict;
using output::sentences::sentence;

// Message patterns, as Phrase has them.
constexpr std::string_view differingCasesOfVariables = sentence(
    "{0} of {1} compared {1, plural, one {case} other {cases}} {0, plural, one {differs} other {differ}}, in {2} of "
    "{3} "
    "{3, plural, one {variable} other {variables}}");
constexpr std::string_view differingCases =
    sentence("{0} of {1} compared {1, plural, one {case} other {cases}} {0, plural, one {differs} other {differ}}");
constexpr std::string_view noDifference =
    sentence("No difference was found: {0, plural, one {# case was} other {# cases were}} compared");
constexpr std::string_view noDifferenceOfDictionaries = sentence(
    "No difference was found: {0, plural, one {# case was} other {# cases were}} compared, and the dictionary "
    "properties");
constexpr std::string_view noValueDiffers =
    sentence("No value differs in {0, plural, one {# compared case} other {# compared cases}}");
constexpr std::string_view noCaseCompared = sentence("No case could be paired");
constexpr std::string_view noVariableCompared = sentence("No variable could be compared");
constexpr std::string_view someDiffer = sentence("The datasets differ; in how many cases is not known");
constexpr std::string_view partnersUnknown =
    sentence("All values that were compared match; whether every case has a partner is not known");
constexpr std::string_view casesOnlyActive =
    sentence("{0, plural, one {# case} other {# cases}} only in the active dataset");
constexpr std::string_view casesOnlyComparison =
    sentence("{0, plural, one {# case} other {# cases}} only in the comparison dataset");
constexpr std::string_view activeIsLonger =
    sentence("the active dataset has {0, plural, one {# more case} other {# more cases}}");
constexpr std::string_view comparisonIsLonger =
    sentence("the comparison dataset has {0, plural, one {# more case} other {# more cases}}");
constexpr std::string_view differingProperties =
    sentence("{0, plural, one {# dictionary property differs} other {# dictionary properties differ}}");
constexpr std::string_view variablesNotCompared =
    sentence("{0, plural, one {# variable} other {# variables}} could not be compared");
constexpr std::string_view pairedByPosition = sentence("cases were paired by their position");
constexpr std::string_view wasRefused = sentence("The comparison was refused; no case was compared");
constexpr std::string_view wasBrokenOff = sentence("The comparison was broken off; what it shows is not complete");

constexpr std::string_view casesOfBoth = sentence("Cases of both datasets");
constexpr std::string_view matched = sentence("matched");
constexpr std::string_view mismatched = sentence("mismatched");
constexpr std::string_view notCompared = sentence("not compared");
constexpr std::string_view activeDataset = sentence("Active dataset");
constexpr std::string_view comparisonDataset = sentence("Comparison dataset");
constexpr std::string_view mismatchesByVariable = sentence("Mismatches by variable");
constexpr std::string_view differingCasesByPlace = sentence("Where in the active dataset cases differ");
constexpr std::string_view listedCasesOnly = sentence("Only the cases that the case table lists are shown.");

Phrase phrase(std::string_view pattern, std::vector<double> numbers = {}) {
  return {std::string(pattern), std::move(numbers)};
}

double variablesWithMismatches(const ComparisonFigures& figures) {
  return static_cast<double>(std::count_if(figures.variables.begin(), figures.variables.end(),
                                           [](const auto& variable) { return variable.mismatches > 0; }));
}

// What became of the cases that were compared.
Phrase mainClause(const ComparisonFigures& figures, Verdict verdict) {
  if (figures.isNothingPaired) return phrase(noVariableCompared);
  if (!figures.compared || !figures.differing) return phrase(figures.allValuesMatch ? partnersUnknown : someDiffer);
  const double compared = *figures.compared;
  if (*figures.differing > 0 && !figures.variables.empty()) {
    return phrase(differingCasesOfVariables, {*figures.differing, compared, variablesWithMismatches(figures),
                                              static_cast<double>(figures.variables.size())});
  }
  if (*figures.differing > 0) return phrase(differingCases, {*figures.differing, compared});
  if (verdict == Verdict::same) {
    return phrase(figures.propertiesMatch ? noDifferenceOfDictionaries : noDifference, {compared});
  }
  return compared > 0 ? phrase(noValueDiffers, {compared}) : phrase(noCaseCompared);
}

output::PartsChart casesChart(const ComparisonFigures& figures) {
  const double equal = *figures.compared - *figures.differing;
  output::PartsChart chart;
  chart.title = phrase(casesOfBoth);
  chart.parts = {phrase(matched), phrase(mismatched), phrase(notCompared)};
  chart.wholes.push_back({phrase(activeDataset), {equal, *figures.differing, figures.onlyActive()}});
  chart.wholes.push_back({phrase(comparisonDataset), {equal, *figures.differing, figures.onlyComparison()}});
  return chart;
}

output::BarChart variablesChart(const ComparisonFigures& figures) {
  output::BarChart chart;
  chart.title = phrase(mismatchesByVariable);
  chart.whole = *figures.compared;
  for (const ComparisonFigures::Variable& variable : figures.variables) {
    if (variable.mismatches > 0) {
      chart.bars.push_back({variable.name, variable.mismatches});
    } else {
      ++chart.empty;
    }
  }
  std::stable_sort(chart.bars.begin(), chart.bars.end(),
                   [](const auto& left, const auto& right) { return left.count > right.count; });
  return chart;
}

output::StripChart placesChart(const ComparisonFigures& figures) {
  output::StripChart chart;
  chart.title = phrase(differingCasesByPlace);
  chart.cases = static_cast<std::int64_t>(figures.activeCases);
  chart.counts = figures.places->counts;
  if (!figures.places->areAll) chart.note = phrase(listedCasesOnly);
  return chart;
}

}  // namespace

Answer answerOf(const ComparisonFigures& figures, Verdict verdict) {
  Answer answer{verdict, {mainClause(figures, verdict)}};
  const auto add = [&](double count, std::string_view pattern) {
    if (count > 0) answer.clauses.push_back(phrase(pattern, {count}));
  };
  const bool byPosition = figures.isPairedByPosition;
  add(figures.onlyActive(), byPosition ? activeIsLonger : casesOnlyActive);
  add(figures.onlyComparison(), byPosition ? comparisonIsLonger : casesOnlyComparison);
  add(figures.unpairedVariables, variablesNotCompared);
  add(figures.differingProperties, differingProperties);
  if (byPosition && figures.compared.value_or(0) > 0) answer.clauses.push_back(phrase(pairedByPosition));
  return answer;
}

Answer answerOfTrouble(output::Command::Outcome outcome) {
  const bool isRefused = outcome == output::Command::Outcome::refused;
  return {Verdict::trouble, {phrase(isRefused ? wasRefused : wasBrokenOff)}};
}

std::vector<output::Chart> chartsOf(const ComparisonFigures& figures) {
  std::vector<output::Chart> charts;
  if (!figures.compared || !figures.differing || figures.activeCases + figures.comparisonCases <= 0) return charts;
  charts.emplace_back(casesChart(figures));
  if (variablesWithMismatches(figures) > 0) charts.emplace_back(variablesChart(figures));
  if (*figures.differing > 0 && figures.places) charts.emplace_back(placesChart(figures));
  return charts;
}

}  // namespace workbench::app
