// A law about the host's order and the procedure's: they never disagree.
#include <gtest/gtest.h>

#include "tests/model/host_dataset.h"
#include "tests/model/law_samples.h"
#include "tests/model/random_choice.h"
#include "tests/model/random_command.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"
#include "tests/model/run_facts.h"
#include "workbench/data/working/sort.h"
#include "workbench/runtime/current_run.h"

namespace workbench::tests::model::sorted_cases_law_test {

constexpr int usualPairs = 1000;

Dataset sortedByHost(const Dataset& dataset, const std::vector<std::string>& ids,
                     const std::vector<std::size_t>& widths, const std::string& collation) {
  const std::shared_ptr<data::Dataset> sorted = toHost(dataset);
  data::SortRequest request;
  request.by = ids;
  request.cutWidths = widths;
  currentRun().settings.collation = collation;
  const auto result = data::sortCases(*sorted, request);
  currentRun() = CurrentRun();
  RC_ASSERT(static_cast<bool>(result));
  return fromHost(*sorted);
}

// Premises: the host cuts texts to the widths of the active variables, as the procedure does; no text between two other
// case IDs is blank (such a text does not go up from a blank start, so the ID behind it is held against the case
// before it, which the host's order does not do).
Sample aPairToBeSorted() {
  const Dataset active = lawDataset();
  Sample made{worldOf(active, likenessOf(active)), {}};
  if (oneIn(3)) made.world.collation = anyOf<std::string>({"de", "sv"});
  const std::vector<std::string> ids = anyIds(made.world, 3);
  made.command = comparingAll(ids);
  if (ids.size() < 3) return made;
  for (Dataset* dataset : {&made.world.active, &made.world.compared}) {
    const std::size_t middle = *placeOf(*dataset, ids[1]);
    for (Case& one : dataset->cases) {
      auto* text = std::get_if<std::string>(&one[middle]);
      if (text != nullptr && text->front() == ' ') text->front() = 'x';
    }
  }
  return made;
}

TEST(Law, CasesThatTheHostSortedAreNeverOutOfOrder) {
  forRandomPairs(usualPairs, [] {
    const Sample sample = chosen(aPairToBeSorted);
    const std::vector<std::string> ids = caseIdsOf(sample.command);
    if (ids.empty()) return;
    std::vector<std::size_t> widths;
    for (const std::string& id : ids) {
      widths.push_back(
          static_cast<std::size_t>(sample.world.active.variables[*placeOf(sample.world.active, id)].width));
    }
    World sorted = sample.world;
    sorted.active = sortedByHost(sample.world.active, ids, widths, sample.world.collation);
    sorted.compared = sortedByHost(sample.world.compared, ids, widths, sample.world.collation);
    RC_ASSERT(factsOf(ObservedRun(sorted, sample.command)).outcome == "completed");
  });
}

}  // namespace workbench::tests::model::sorted_cases_law_test
