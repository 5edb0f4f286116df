// Stages of the driver by themselves, given what no command leads to.
#include <gtest/gtest.h>

#include "driver/comparison_summary.h"
#include "driver/dataset_resolution.h"
#include "driver/flag_variable.h"
#include "tests/support/dataset_builder.h"
#include "workbench/data/working/active_source.h"
#include "workbench/datasets/dataset_manager.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"
#include "workbench/text/wording.h"

namespace compdatas {
namespace {

using workbench::tests::dataset;

class DriverStages : public ::testing::Test {
 protected:
  DriverStages() {
    static const auto english = std::move(*workbench::text::Wording::load("en"));
    static_cast<void>(manager_.open(dataset().numeric("x", {1, 2}).build(), "a"));
    active_ = manager_.makeActiveSource();
    workbench::CurrentRun& run = workbench::currentRun();
    run.command = &command_;
    run.datasets = &manager_;
    run.adapter = &manager_;
    run.wording = english.get();
    run.activeSource = active_.get();
  }
  ~DriverStages() override { workbench::currentRun() = workbench::CurrentRun(); }

  // The values of the first table's cells, in the order in which they were written.
  std::vector<double> numbersOfTheFirstTable() const {
    std::vector<double> numbers;
    const auto& table = std::get<std::unique_ptr<workbench::output::Table>>(command_.items.front());
    for (const auto& cell : table->cells) {
      numbers.push_back(std::get<workbench::output::NumberText>(cell.content->held).value);
    }
    return numbers;
  }

  workbench::datasets::DatasetManager manager_;
  workbench::output::Command command_;
  std::unique_ptr<workbench::data::ActiveSource> active_;
};

TEST_F(DriverStages, AnEmptyNameGivesTheFlagVariableItsDefaultName) {
  CompareOptions options;
  options.setFlagVarName("");
  ProcedureDataSource source;
  EXPECT_EQ(makeFlagVariable(options, source), "CasesCompare");
  EXPECT_EQ(manager_.active()->dictionary().find("CasesCompare"), 1);
}

TEST_F(DriverStages, ACountBelowZeroLeavesItsCellEmptyLikeZero) {
  BpProcedure procedure("Compare Datasets", 7);
  writeCaseCounts(procedure, -1, 5);
  EXPECT_EQ(numbersOfTheFirstTable(), std::vector<double>{5});
}

TEST_F(DriverStages, AComparisonThatIsNeitherADatasetNorADataFileIsNone) {
  const CompareOptions options;
  RunNames names;
  UserCaseFileSpec matched;
  UserCaseFileSpec mismatched;
  EXPECT_TRUE(checkNames(options, matched, mismatched, names));
  EXPECT_EQ(names.comparison + names.active + names.matched + names.mismatched, "");
  ComparisonData comparison;
  const SvrDMItemPtr managed = findManagedDataset(options.compDataset(), names.comparison);
  EXPECT_FALSE(managed.IsValid());
  EXPECT_TRUE(openComparison(options, managed, comparison));
  EXPECT_EQ(comparison.source(), nullptr);
  EXPECT_EQ(comparison.displayText, "");
  EXPECT_TRUE(command_.items.empty());
}

TEST_F(DriverStages, WithoutAComparisonSourceItsColumnOfTheSummaryHasEmptyTexts) {
  BpProcedure procedure("Compare Datasets", 7);
  const ProcedureDataSource source;
  writeDatasetSummary(procedure, source, {nullptr, ""});
  const auto& table = std::get<std::unique_ptr<workbench::output::Table>>(command_.items.front());
  ASSERT_EQ(table->cells.size(), 10U);
  for (std::size_t index = 1; index < table->cells.size(); index += 2) {
    const auto& text = std::get<workbench::output::StringText>(table->cells[index].content->held);
    EXPECT_EQ(text.key, "");
    EXPECT_FALSE(text.translate);
  }
}

}  // namespace
}  // namespace compdatas
