// Laws about saved cases: they are the compared ones, and they are what they claim to be.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/model/host_dataset.h"
#include "tests/model/law_samples.h"
#include "tests/model/messages.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"
#include "tests/model/run_facts.h"

namespace workbench::tests::model::saved_cases_laws_test {

constexpr int usualPairs = 700;

// The cases that have this flag, without their flags.
Dataset flaggedCases(const Dataset& active, const RunFacts& facts, const std::vector<double>& flags) {
  Dataset some = active;
  some.cases.clear();
  for (std::size_t place = 0; place < active.cases.size(); ++place) {
    if (std::count(flags.begin(), flags.end(), facts.flags[place]) > 0) some.cases.push_back(active.cases[place]);
  }
  return some;
}

Command savingBoth(Command command, const Word& matched, const Word& mismatched) {
  command.set("SAVE", "MATCHDATASET", {"YES"});
  command.set("SAVE", "MATCHNAME", matched);
  command.set("SAVE", "MISMATCHDATASET", {"YES"});
  command.set("SAVE", "MISMATCHNAME", mismatched);
  return command;
}

// Premises: both datasets have the same variables and are in the order of the case IDs, two at most; no filter, as with
// the flag variable every case is read.
Sample aPairToBeSaved() {
  const Dataset active = lawDataset();
  Sample sample{worldOf(active, likenessOf(active, Variables::same)), {}};
  const std::vector<std::string> ids = anyIds(sample.world, 2);
  sortByIds(sample.world, ids);
  sample.command = savingBoth(comparingAll(ids), {"agreed"}, {"differing"});
  return sample;
}

TEST(Law, MatchedAndMismatchedCasesTogetherAreTheComparedOnes) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aPairToBeSaved);
    ObservedRun observed(sample.world, sample.command);
    const RunFacts facts = factsOf(observed);
    const Dataset matched = *observed.saved("agreed");
    const Dataset mismatched = *observed.saved("differing");
    RC_ASSERT(matched.cases.size() + mismatched.cases.size() == facts.pairs);
    RC_ASSERT(matched.cases == flaggedCases(sample.world.active, facts, {0}).cases);
    RC_ASSERT(mismatched.cases == flaggedCases(sample.world.active, facts, {1}).cases);
    // Put together in the order of the flags they are the compared cases.
    std::vector<Case> together;
    std::size_t nextMatched = 0;
    std::size_t nextMismatched = 0;
    for (const double flag : facts.flags) {
      if (flag == 0) together.push_back(matched.cases[nextMatched++]);
      if (flag == 1) together.push_back(mismatched.cases[nextMismatched++]);
    }
    RC_ASSERT(together == flaggedCases(sample.world.active, facts, {0, 1}).cases);
    RC_TAG(facts.pairs == 0 ? "nothing is saved" : "cases are saved");
  });
}

TEST(Law, SavedDatasetsCompareEqualToTheCasesTheyClaim) {
  forRandomPairs(usualPairs, [] {
    Sample sample = chosen(aPairToBeSaved);
    // A code such as -1 is different even from itself.
    for (Variable& variable : sample.world.active.variables) {
      if (variable.missing.code == -1 || std::abs(variable.missing.code) > 3) variable.missing.code = 0;
    }
    ObservedRun observed(sample.world, sample.command);
    const RunFacts facts = factsOf(observed);
    for (const double flag : {0.0, 1.0}) {
      const Dataset claimed = flaggedCases(sample.world.active, facts, {flag});
      const Dataset saved = *observed.saved(flag == 0 ? "agreed" : "differing");
      const RunFacts again = factsOf(ObservedRun(worldOf(claimed, saved), comparingAll()));
      RC_ASSERT(again.messages == (std::vector<std::string>{messageLine(4, 1, say::allAttributesMatch),
                                                            messageLine(4, 1, say::allValuesMatch)}));
      RC_ASSERT(again.pairs == claimed.cases.size());
    }
  });
}

// Premises: as above; besides, what is saved holds a case, and every text in it begins with a letter other than that of
// a word for a missing value, and every number can be shown in its format: a file without a dictionary says by its
// texts alone what is a number.
Sample aPairToBeSavedInFiles() {
  Dataset active = numberedDataset(3, 9);
  for (std::size_t place = 0; place < active.variables.size(); ++place) {
    if (active.variables[place].format.type >= 41) active.variables[place].format.type = 5;
    for (Case& one : active.cases) {
      if (!active.variables[place].isNumber()) {
        one[place] = ofWidth(anyOf<std::string>({"x", "xy", "x y", "x,y", "x\"y", "xyzxyzxyz"}),
                             static_cast<std::size_t>(active.variables[place].width));
      } else if (one[place] == Value(systemMissing)) {
        one[place] = 4.0;
      }
    }
  }
  Dataset compared = active;
  for (Case& one : compared.cases) {
    if (oneIn(3)) one.back() = anyValue(compared.variables.back());
  }
  Sample sample{worldOf(active, compared), {}};
  sample.command = savingBoth(comparingAll({"id"}), {outputFile("m.csv"), true}, {outputFile("n.csv"), true});
  return sample;
}

TEST(Law, SavedFilesCompareEqualToTheCasesTheyClaim) {
  forRandomPairs(60, [] {
    const Sample sample = chosen(aPairToBeSavedInFiles);
    RunFacts facts;
    {
      const ObservedRun observed(sample.world, sample.command);
      facts = factsOf(observed);
    }
    RC_ASSERT(facts.outcome == "completed");
    std::vector<Dataset> read;
    for (const char* name : {"m.csv", "n.csv"}) read.push_back(fromHost(*openFile(outputFile(name))));
    for (std::size_t side = 0; side < 2; ++side) {
      Dataset claimed = flaggedCases(sample.world.active, facts, {static_cast<double>(side)});
      RC_ASSERT(read[side].cases.size() == claimed.cases.size());
      if (claimed.cases.empty()) continue;
      Dataset saved = read[side];
      saved.path.clear();
      const RunFacts again = factsOf(ObservedRun(worldOf(claimed, saved), comparingAll()));
      RC_ASSERT(again.pairs == claimed.cases.size());
      RC_ASSERT(again.flagged(0) == again.pairs);
      RC_ASSERT(std::count(again.messages.begin(), again.messages.end(), messageLine(4, 1, say::allValuesMatch)) == 1);
      // No variable was left out of the comparison.
      RC_ASSERT(std::none_of(again.messages.begin(), again.messages.end(), [](const std::string& message) {
        return message.find(uncomparedPattern) != std::string::npos;
      }));
    }
  });
}

}  // namespace workbench::tests::model::saved_cases_laws_test
