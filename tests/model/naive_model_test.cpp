// The procedure against a comparison done by hand, over random small datasets, settings and commands.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/model/messages.h"
#include "tests/model/observed_run.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_command.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"

namespace workbench::tests::model::naive_model_test {

constexpr int usualPairs = 2500;

// What became of the run, so that a test says what it went through.
std::string kindOf(const Foretold& foretold) {
  const std::vector<std::string>& items = foretold.report.items;
  const auto says = [&](std::string_view text) {
    return std::any_of(items.begin(), items.end(),
                       [&](const std::string& item) { return item.find(text) != std::string::npos; });
  };
  if (!foretold.walked) {
    if (says(parserRefusal)) return "refused: syntax or list of variables";
    if (says(say::caseIdsDoNotMatch)) return "refused: case IDs do not match";
    if (foretold.report.outcome != "completed") return "left: an output cannot be opened";
    return items.empty() ? "refused: nothing is said" : "refused: another message";
  }
  if (foretold.walked->unsorted) return "left: a dataset is out of order";
  const std::string dictionaries = says("table CD_DictComp") ? ", dictionaries differ" : "";
  if (foretold.walked->allMatch()) return "compared: all values match" + dictionaries;
  if (foretold.walked->mismatched.empty()) return "compared: cases without partner" + dictionaries;
  return "compared: values differ" + dictionaries;
}

TEST(TheProcedure, AgreesWithAComparisonDoneByHand) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(anySample);
    const bool keepsJournal = chosen([] { return oneIn(2); });
    const std::string difference = disagreement(sample.world, sample.command,
                                                keepsJournal ? ObservedRun::Journal::kept : ObservedRun::Journal::none);
    RC_TAG(kindOf(foretell(sample.world, sample.command)));
    RC_LOG() << difference;
    RC_ASSERT(difference == "");
  });
}

}  // namespace workbench::tests::model::naive_model_test
