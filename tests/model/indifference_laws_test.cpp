// Laws about what makes no difference: the order of columns, variables that are not compared, how a command is written,
// what is shown, what stands behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/model/host_dataset.h"
#include "tests/model/law_samples.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_command.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"
#include "tests/model/run_facts.h"

namespace workbench::tests::model::indifference_laws_test {

constexpr int usualPairs = 700;

std::vector<std::string> itemsOf(const ObservedRun& observed) { return observed.report({}).items; }

// The same dataset with its variables in another order.
Dataset permuted(const Dataset& dataset) {
  std::vector<std::size_t> order;
  for (std::size_t place = 0; place < dataset.variables.size(); ++place) order.push_back(place);
  order = shuffled(order);
  const auto moved = [&](std::size_t place) {
    return static_cast<std::size_t>(std::find(order.begin(), order.end(), place) - order.begin());
  };
  Dataset other = dataset;
  for (std::size_t place = 0; place < order.size(); ++place) {
    other.variables[place] = dataset.variables[order[place]];
    for (std::size_t row = 0; row < other.cases.size(); ++row) {
      other.cases[row][place] = dataset.cases[row][order[place]];
    }
  }
  if (dataset.filter) other.filter = moved(*dataset.filter);
  if (dataset.weight) other.weight = moved(*dataset.weight);
  for (std::size_t& place : other.split) place = moved(place);
  return other;
}

void addUnusedVariable(Dataset& dataset) {
  dataset.variables.push_back(anyVariable("unused"));
  for (Case& one : dataset.cases) one.push_back(anyValue(dataset.variables.back()));
}

struct TwoSamples {
  Sample one;
  Sample other;
};
void showValue(const TwoSamples& samples, std::ostream& stream) {
  showValue(samples.one, stream);
  stream << "--- and the other ---\n";
  showValue(samples.other, stream);
}

// Premises: none beyond that the added variable has a name that no variable of the active dataset has.
TwoSamples permutedComparison() {
  Sample one{{}, {}};
  const Dataset active = lawDataset();
  one.world = worldOf(active, likenessOf(active));
  addRoles(one.world.active);
  addRoles(one.world.compared);
  one.command = anyCommand(one.world, false);
  Sample other = one;
  other.world.compared = permuted(one.world.compared);
  if (oneIn(2)) addUnusedVariable(other.world.compared);
  return {one, other};
}

TEST(Law, PermutedColumnsAndAnUnusedVariableOfTheComparisonDatasetChangeNothing) {
  forRandomPairs(usualPairs, [] {
    const TwoSamples samples = chosen(permutedComparison);
    const ObservedRun one(samples.one.world, samples.one.command);
    const ObservedRun other(samples.other.world, samples.other.command);
    RC_ASSERT(itemsOf(one) == itemsOf(other));
    RC_ASSERT(one.run().outcome() == other.run().outcome());
    RC_ASSERT(one.report({}).active == other.report({}).active);
  });
}

// Premises: the variables are named one by one (ALL would name the added one, a range depends on the order), so are the
// case IDs; no filter is on the added variable. What is shown follows the order of the active columns; what it shows
// does not.
TwoSamples permutedActive() {
  Sample one{{}, {}};
  const Dataset active = lawDataset();
  one.world = worldOf(active, likenessOf(active));
  const std::vector<std::string> ids = anyIds(one.world, 3);
  sortByIds(one.world, ids);
  one.command = comparingAll(ids);
  std::vector<Word> names;
  for (const Variable& variable : active.variables) names.push_back(nameWord(variable.name));
  one.command.subcommand("VARIABLES").values = names;
  Sample other = one;
  other.world.active = permuted(one.world.active);
  if (oneIn(2)) addUnusedVariable(other.world.active);
  return {one, other};
}

TEST(Law, PermutedColumnsAndAnUnusedVariableOfTheActiveDatasetChangeTheOrderAlone) {
  forRandomPairs(usualPairs, [] {
    const TwoSamples samples = chosen(permutedActive);
    const ObservedRun one(samples.one.world, samples.one.command);
    const ObservedRun other(samples.other.world, samples.other.command);
    const auto sorted = [](std::vector<std::string> lines) {
      std::sort(lines.begin(), lines.end());
      return lines;
    };
    RC_ASSERT(one.run().outcome() == other.run().outcome());
    RC_ASSERT(sorted(cellLines(one)) == sorted(cellLines(other)));
    RC_ASSERT(factsOf(one).flags == factsOf(other).flags);
    RC_ASSERT(factsOf(one).messages.size() == factsOf(other).messages.size());
  });
}

// Premises: unknown names and names of outputs stay as they are written, as these are shown.
TEST(Law, TheOrderAndTheCaseOfACommandsWordsChangeNothing) {
  forRandomPairs(usualPairs, [] {
    const TwoSamples samples = chosen([] {
      const Sample one = anySample();
      Sample other = one;
      other.command = rewritten(one.command);
      return TwoSamples{one, other};
    });
    const ObservedRun one(samples.one.world, samples.one.command);
    const ObservedRun other(samples.other.world, samples.other.command);
    RC_ASSERT(itemsOf(one) == itemsOf(other));
    RC_ASSERT(one.run().outcome() == other.run().outcome());
    RC_ASSERT(one.report({}).active == other.report({}).active);
  });
}

// Premises: both datasets have the same variables and are in the order of the case IDs, two at most.
Sample aSortedPair() {
  const Dataset active = lawDataset();
  Sample sample{worldOf(active, likenessOf(active, Variables::same)), {}};
  const std::vector<std::string> ids = anyIds(sample.world, 2);
  sortByIds(sample.world, ids);
  sample.command = comparingAll(ids);
  sample.command.set("SAVE", "MISMATCHDATASET", {"YES"});
  return sample;
}

TEST(Law, WhatIsShownChangesNeitherFlagsNorSavedCases) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aSortedPair);
    Command shownLess = sample.command;
    shownLess.subcommand("OUTPUT").keywords = {{"CASETABLE", {{"NO"}}}, {"TABLELIMIT", {{"1"}}}};
    ObservedRun all(sample.world, sample.command);
    ObservedRun less(sample.world, shownLess);
    RC_ASSERT(factsOf(all).flags == factsOf(less).flags);
    RC_ASSERT(all.saved("MismatchedCases")->cases == less.saved("MismatchedCases")->cases);
  });
}

TEST(Law, ALimitedCaseTableIsTheBeginningOfTheWholeOne) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aSortedPair);
    const std::size_t limit = 1 + chosen([] { return upTo(3); });
    Command limited = sample.command;
    limited.subcommand("OUTPUT").keywords = {{"TABLELIMIT", {{std::to_string(limit)}}}};
    const ObservedRun whole(sample.world, sample.command);
    const ObservedRun beginning(sample.world, limited);
    const std::string key = "CD_CaseByCaseComparisonTableName";
    RC_ASSERT((whole.run().table(key) == nullptr) == (beginning.run().table(key) == nullptr));
    if (whole.run().table(key) == nullptr) return;
    const auto& all = whole.run().table(key)->cells;
    const auto& some = beginning.run().table(key)->cells;
    const std::size_t mismatched = factsOf(whole).mismatched;
    RC_ASSERT(some.size() * std::max<std::size_t>(mismatched, 1) == all.size() * std::min(limit, mismatched));
    RC_ASSERT(
        std::equal(some.begin(), some.end(), all.begin(), [](const output::Cell& left, const output::Cell& right) {
          return passed(*left.content) == passed(*right.content);
        }));
  });
}

// Premises: as above. Case IDs are compared whether named or not.
TEST(Law, VariablesComparedOneByOneCountAsTheyDoTogether) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aSortedPair);
    const RunFacts together = factsOf(ObservedRun(sample.world, sample.command));
    for (const Variable& variable : sample.world.active.variables) {
      Command alone = sample.command;
      alone.subcommand("VARIABLES").values = std::vector<Word>{nameWord(variable.name)};
      const RunFacts facts = factsOf(ObservedRun(sample.world, alone));
      const std::string name = folded(variable.name);
      const auto countIn = [&](const RunFacts& run) {
        const auto found = run.byVariable.find(name);
        return found == run.byVariable.end() ? 0 : found->second;
      };
      RC_ASSERT(countIn(facts) == countIn(together));
      RC_ASSERT(facts.pairs == together.pairs);
      RC_ASSERT(facts.flagged(-1) == together.flagged(-1));
    }
  });
}

// Premises: every case ID of what is put behind is greater than all before it, on both sides.
TEST(Law, CasesPutBehindChangeNothingOfThoseBefore) {
  forRandomPairs(usualPairs, [] {
    const TwoSamples samples = chosen([] {
      const Dataset active = numberedDataset(3, 8);
      const auto likeness = [&](const Dataset& dataset) {
        Dataset made = likenessOf(dataset, Variables::same);
        sortCases(made, {"id"}, {0});
        for (Case& one : made.cases) one[0] = std::clamp(numberOf(one[0]), 0.0, 100.0);
        sortCases(made, {"id"}, {0});
        return made;
      };
      Sample before{worldOf(active, likeness(active)), comparingAll({"id"})};
      Sample behind = before;
      behind.world.compared = likeness(active);
      for (Dataset* dataset : {&behind.world.active, &behind.world.compared}) {
        for (Case& one : dataset->cases) one[0] = numberOf(one[0]) + 1000;
      }
      return TwoSamples{before, behind};
    });
    const auto joined = [](Dataset dataset, const Dataset& behind) {
      dataset.cases.insert(dataset.cases.end(), behind.cases.begin(), behind.cases.end());
      return dataset;
    };
    const World& first = samples.one.world;
    const World& second = samples.other.world;
    const World both = worldOf(joined(first.active, second.active), joined(first.compared, second.compared));
    const RunFacts one = factsOf(ObservedRun(first, samples.one.command));
    const RunFacts other = factsOf(ObservedRun(second, samples.other.command));
    const RunFacts together = factsOf(ObservedRun(both, samples.one.command));
    std::vector<double> flags = one.flags;
    flags.insert(flags.end(), other.flags.begin(), other.flags.end());
    RC_ASSERT(together.flags == flags);
    RC_ASSERT(together.pairs == one.pairs + other.pairs);
    RC_ASSERT(together.mismatched == one.mismatched + other.mismatched);
    RC_ASSERT(together.comparedRead == one.comparedRead + other.comparedRead);
  });
}

}  // namespace workbench::tests::model::indifference_laws_test
