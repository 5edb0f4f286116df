// A law about results as JSON: whatever a run issues, the document keeps its format.
#include <gtest/gtest.h>

#include "tests/model/observed_run.h"
#include "tests/model/random_pairs.h"
#include "tests/model/random_sample.h"
#include "tests/results/results_schema.h"

namespace workbench::tests::model::document_law_test {

// Premises: none.
TEST(Law, EveryRunLeavesAResultsDocumentThatKeepsItsFormat) {
  forRandomPairs(500, [] {
    const Sample sample = chosen(anySample);
    ObservedRun observed(sample.world, sample.command);
    const std::vector<std::string> faults = faultsOfText(observed.run().document());
    RC_ASSERT(faults == std::vector<std::string>());
  });
}

}  // namespace workbench::tests::model::document_law_test
