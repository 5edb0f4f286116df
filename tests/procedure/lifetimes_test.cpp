// Lifetimes: who holds the comparison dataset, for how long, and what is given back on each way out of a run.
#include <gtest/gtest.h>

#include "host/datasets.h"
#include "tests/procedure/procedure_run.h"
#include "workbench/data/working/dataset_source.h"
#include "workbench/data/working/journaled_source.h"
#include "workbench/runtime/journal.h"

namespace workbench::tests::lifetimes_test {

DatasetBuilder cases() { return dataset().numeric("id", {1, 2}).numeric("x", {1, 2}); }
DatasetBuilder others() { return dataset().numeric("id", {1, 2}).numeric("x", {1, 3}); }
DatasetBuilder withoutId() { return dataset().numeric("x", {1, 3}); }
DatasetBuilder unsorted() { return dataset().numeric("id", {2, 1}).numeric("x", {1, 3}); }

const std::string command = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";

// An open dataset that says in the journal when its last reference has gone.
class CountedDataset final : public SvrDMDataset {
 public:
  explicit CountedDataset(std::shared_ptr<data::Dataset> cases) : cases_(std::move(cases)) {}

  void Retain() override { ++references; }
  void Release() override {
    if (--references == 0) note("SvrDMDataset(b) is held by nobody");
  }
  std::string GetHandle() const override { return "b"; }
  std::unique_ptr<VRIX_DataSource> OpenView(bool forWriting) override {
    openedForWriting = forWriting;
    return std::make_unique<data::JournaledSource>(
        std::make_unique<data::DatasetSource>(cases_, data::SourceKind::readOnlyView), "VRIX_DataSource");
  }

  int references = 0;
  bool openedForWriting = true;

 private:
  static void note(const char* line) {
    if (workbench::journal().isOn()) workbench::journal().line(line);
  }

  std::shared_ptr<data::Dataset> cases_;
};

class OneDataset final : public ServerDataManager {
 public:
  explicit OneDataset(CountedDataset& shown) : shown_(shown) {}
  SvrDMItemPtr GetDataSet(std::string_view) override { return SvrDMItemPtr(&shown_); }

 private:
  CountedDataset& shown_;
};

struct CountedRun {
  CountedRun(const DatasetBuilder& active, const DatasetBuilder& compared)
      : run(active, compared), shown(run.manager().find("b")), manager(shown) {
    run.fakeManager = &manager;
  }

  ProcedureRun run;
  CountedDataset shown;
  OneDataset manager;
};

TEST(Lifetimes, TheReferenceToTheComparisonDatasetGoesBehindTheTablesAndBeforeTheOutputSpecifications) {
  CountedRun counted(cases(), others());
  counted.run.run(command);
  EXPECT_EQ(counted.run.outcome(), "completed");
  EXPECT_EQ(counted.shown.references, 0);
  EXPECT_FALSE(counted.shown.openedForWriting);
  EXPECT_EQ(counted.run.missingInOrder({"~SvrDMInputDataSource#1", "~VRIX_DataSource#1", "~BpPivotTable#2",
                                        "SvrDMDataset(b) is held by nobody", "~UserCaseFileSpec#3",
                                        "~UserCaseFileSpec#2", "~VarSpecObj#2", "~ProcedureDataSource#1"}),
            "");
}

TEST(Lifetimes, AFailedWalkGivesTheReferenceBackToo) {
  CountedRun counted(unsorted(), others());
  counted.run.run(command);
  EXPECT_EQ(counted.run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(counted.shown.references, 0);
  EXPECT_EQ(counted.run.missingInOrder({"BpPivotTable#5.Destroy()", "~SvrDMInputDataSource#1", "~BpPivotTable#2",
                                        "SvrDMDataset(b) is held by nobody", "~UserCaseFileSpec#3"}),
            "");
}

TEST(Lifetimes, AfterRefusedCaseIdsTheViewThatStaysHoldsTheOnlyReference) {
  CountedRun counted(cases(), withoutId());
  counted.run.run(command);
  EXPECT_EQ(counted.run.outcome(), "completed");
  EXPECT_EQ(counted.shown.references, 1);
  EXPECT_EQ(counted.run.leftAlive(), "UserCaseFileSpec#1 SvrDMInputDataSource#1 VRIX_DataSource#1");
}

TEST(Lifetimes, ADatasetThatWasOnlyNamedIsHeldNoLongerThanTheChecks) {
  CountedRun counted(cases(), others());
  counted.run.run(command + " /SAVE MATCHDATASET=YES MATCHNAME=a");
  EXPECT_EQ(counted.run.messages(), "2/3 MATCHNAME cannot be one of ...\n");
  EXPECT_EQ(counted.shown.references, 0);
}

// Of all that a run makes the options alone stay, on every path; the comparison dataset too where case IDs are refused.
struct Path {
  const char* name;
  DatasetBuilder active;
  DatasetBuilder compared;
  std::string command;
  std::string outcome;
};
void PrintTo(const Path& path, std::ostream* out) { *out << path.name; }
class EveryPath : public ::testing::TestWithParam<Path> {};

TEST_P(EveryPath, LeavesOnlyTheOptionsBehindAndDestroysTheOutputLast) {
  const Path& path = GetParam();
  ProcedureRun run(path.active, path.compared);
  run.run(path.command);
  EXPECT_EQ(run.outcome(), path.outcome);
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
  EXPECT_EQ(run.journal().back(), "~BpProcedure#1");
}

const std::string everyOutput =
    " /SAVE MATCHDATASET=YES MATCHNAME=m MISMATCHDATASET=YES MISMATCHNAME=u /OUTPUT VARPROPERTIES=ALL";

INSTANTIATE_TEST_SUITE_P(
    Of, EveryPath,
    ::testing::Values(Path{"Differences", cases(), others(), command, "completed"},
                      Path{"Outputs", cases(), others(), command + everyOutput, "completed"},
                      Path{"NoDifferences", cases(), cases(), command, "completed"},
                      Path{"NoCases", dataset().numeric("x", {}), dataset().numeric("x", {}),
                           "/COMPDATASET=b /VARIABLES=ALL", "completed"},
                      Path{"SyntaxError", cases(), others(), command + " /OUTPUT TABLELIMIT=0", "completed"},
                      Path{"NoDataset", cases(), others(), "/VARIABLES=ALL", "completed"},
                      Path{"NoVariables", cases(), others(), "/COMPDATASET=b", "completed"},
                      Path{"SameDataset", cases(), others(), "/COMPDATASET=a /VARIABLES=ALL", "completed"},
                      Path{"OutputRefused", cases(), others(), command + " /SAVE MISMATCHDATASET=YES MISMATCHNAME=b",
                           "completed"},
                      Path{"FailedWalk", unsorted(), others(), command + everyOutput, "left by VrixGoToCaller"}),
    [](const auto& path) { return std::string(path.param.name); });

}  // namespace workbench::tests::lifetimes_test
