// Walks that fail: what is reported, what is left of the output, what has already been done.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "host/messages.h"
#include "tests/procedure/faked_run.h"
#include "tests/procedure/table_keys.h"

namespace workbench::tests::walk_failures_test {

const std::string byId = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";
const std::string bothOutputs = " /SAVE MATCHDATASET=YES MATCHNAME=agreed MISMATCHDATASET=YES MISMATCHNAME=differing";

DatasetBuilder cases(const std::vector<double>& ids, const std::vector<double>& values) {
  return dataset().numeric("id", ids).numeric("x", values);
}

// Ten cases, of which every other one differs from those of alternating(true).
DatasetBuilder alternating(bool changed) {
  std::vector<double> ids;
  std::vector<double> values;
  for (int id = 0; id < 10; ++id) {
    ids.push_back(id);
    values.push_back(changed && id % 2 != 0 ? id + 100 : id);
  }
  return cases(ids, values);
}

template <class Thrown>
std::function<void(WrappedIterator&)> throwsAt(std::int64_t ordinal, Thrown thrown) {
  return [ordinal, thrown](WrappedIterator& iterator) {
    iterator.beforeCase = [ordinal, thrown](std::int64_t now) {
      if (now == ordinal) throw thrown;
    };
  };
}

bool contains(const std::vector<std::string>& lines, const std::string& text) {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

TEST(AFailedWalk, TakesTheFourTablesBackAndLeavesByVrixGoToCaller) {
  ProcedureRun run(cases({1, 3, 2}, {1, 1, 1}), cases({1, 3, 4}, {2, 1, 1}));
  run.run(byId + " /OUTPUT VARPROPERTIES=ALL");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.notes(), "");
}

TEST(AFailedWalk, LeavesTheDictionaryTablesWhereTheyAre) {
  ProcedureRun run(dataset().numeric("id", {2, 1}, [](data::Variable& id) { id.label = "ID"; }),
                   dataset().numeric("id", {1, 2}));
  run.run(byId + " /OUTPUT VARPROPERTIES=LABEL");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10) CD_DictCompTableName(1)");
}

TEST(AFailedWalk, LeavesTheFlagsThatWereWritten) {
  ProcedureRun activeFirst(cases({1, 2, 5, 4}, {1, 1, 1, 1}), cases({1, 2, 5, 6}, {1, 2, 1, 1}));
  activeFirst.run(byId);
  EXPECT_EQ(activeFirst.messages(), "2/3 The active dataset is not sort...\n");
  EXPECT_EQ(activeFirst.values("CasesCompare"), "0 1 0 .");

  ProcedureRun comparisonFirst(cases({1, 2, 5, 6}, {1, 1, 1, 1}), cases({1, 2, 5, 4}, {1, 2, 1, 1}));
  comparisonFirst.run(byId);
  EXPECT_EQ(comparisonFirst.messages(), "2/3 The comparison dataset is not sort...\n");
  EXPECT_EQ(comparisonFirst.values("CasesCompare"), "0 1 0 .");
}

TEST(AFailedWalk, FlagsTheActiveLeftoversUpToTheCaseOutOfOrder) {
  ProcedureRun run(cases({1, 5, 6, 4, 7}, {1, 1, 1, 1, 1}), cases({1}, {1}));
  run.run(byId);
  EXPECT_EQ(run.messages(), "2/3 The active dataset is not sort...\n");
  EXPECT_EQ(run.values("CasesCompare"), "0 -1 -1 . .");
}

TEST(AFailedWalk, FlagsNoActiveLeftoversWhenTheComparisonDatasetEndedOutOfOrder) {
  ProcedureRun run(cases({1, 5, 6}, {1, 1, 1}), cases({1, 3, 2}, {1, 1, 1}));
  run.run(byId);
  EXPECT_EQ(run.messages(), "2/3 The comparison dataset is not sort...\n");
  EXPECT_EQ(run.values("CasesCompare"), "0 . .");
}

TEST(AFailedWalk, ClosesTheOutputsWhenCasesAreOutOfOrderAndTheHostAbandonsThem) {
  ProcedureRun run(cases({1, 2, 1}, {1, 1, 1}), cases({1, 2, 3}, {1, 2, 1}));
  run.run(byId + bothOutputs);
  EXPECT_EQ(run.journalLines({".Close()"}),
            (std::vector<std::string>{"VRIX_DataSource#2.Close()", "VRIX_DataSource#3.Close()"}));
  EXPECT_EQ(run.valuesOf("agreed", "id"), "no dataset");
  EXPECT_EQ(run.valuesOf("differing", "id"), "no dataset");
  EXPECT_EQ(run.notes(), "");
  EXPECT_EQ(run.journalLine("Caption("), -1);  // the case table gets none
}

TEST(AFailedWalk, AddsNoNotesWhenOneDatasetHasEndedAndTheOtherIsOutOfOrder) {
  for (const bool inActive : {true, false}) {
    const DatasetBuilder unsorted = cases({1, 3, 2}, {1, 1, 1});
    const DatasetBuilder ended = cases({1}, {1});
    ProcedureRun run(inActive ? unsorted : ended, inActive ? ended : unsorted);
    run.run(byId);
    EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
    EXPECT_EQ(run.notes(), "");
  }
}

TEST(AFailedWalk, ReportsAnErrorTextOfEitherDataset) {
  FakedRun active(alternating(false), alternating(true));
  active.activeSource.onIterator = throwsAt(5, ErrorText("The disk is gone."));
  active.run(byId);
  EXPECT_EQ(active.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(active.messages(), "2/3 The disk is gone.\n");
  EXPECT_EQ(active.values("CasesCompare"), "0 1 0 1 0 . . . . .");
  EXPECT_EQ(active.tables(), "CD_CompSummaryTableName(10)");

  FakedRun compared(alternating(false), alternating(true));
  compared.onComparisonView = [](WrappedSource& view) { view.onIterator = throwsAt(0, ErrorText("No such page.")); };
  compared.run(byId);
  EXPECT_EQ(compared.messages(), "2/3 No such page.\n");
  EXPECT_EQ(compared.values("CasesCompare"), ". . . . . . . . . .");
}

TEST(AFailedWalk, AbsorbsAnyOtherExceptionWithoutAMessage) {
  FakedRun standard(alternating(false), alternating(true));
  standard.activeSource.onIterator = throwsAt(3, std::runtime_error("internal"));
  standard.run(byId);
  EXPECT_EQ(standard.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(standard.messages(), "");
  EXPECT_EQ(standard.values("CasesCompare"), "0 1 0 . . . . . . .");

  FakedRun number(alternating(false), alternating(true));
  number.activeSource.onIterator = throwsAt(3, 42);
  number.run(byId);
  EXPECT_EQ(number.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(number.messages(), "");
}

TEST(AFailedWalk, IsReportedOnceWhenItFailsAmongTheLeftovers) {
  FakedRun run(alternating(false), cases({0, 1}, {0, 1}));
  run.activeSource.onIterator = throwsAt(7, ErrorText("The disk is gone."));
  run.run(byId);
  EXPECT_EQ(run.messages(), "2/3 The disk is gone.\n");
  EXPECT_EQ(run.values("CasesCompare"), "0 0 -1 -1 -1 -1 -1 . . .");
}

TEST(AFailedWalk, NeitherClosesOutputsNorAddsNotesAfterAnExceptionButDestroysAllItMade) {
  FakedRun run(alternating(false), alternating(true));
  int destroyed = 0;
  run.activeSource.onIterator = [&](WrappedIterator& iterator) {
    throwsAt(5, ErrorText("The disk is gone."))(iterator);
    iterator.whenDestroyed = [&] { destroyed += 1; };
  };
  run.onComparisonView = [&](WrappedSource& view) {
    view.onIterator = [&](WrappedIterator& iterator) { iterator.whenDestroyed = [&] { destroyed += 10; }; };
  };
  run.run(byId + bothOutputs);
  EXPECT_EQ(destroyed, 11);
  EXPECT_EQ(run.notes(), "");
  EXPECT_EQ(run.journalLine(".Close()"), -1);
  EXPECT_TRUE(contains(run.journal(), "~UserOutputCaseFile#1"));
  EXPECT_TRUE(contains(run.journal(), "~UserOutputCaseFile#2"));
  EXPECT_EQ(run.valuesOf("agreed", "id"), "no dataset");
  EXPECT_EQ(run.valuesOf("differing", "id"), "no dataset");
}

// Tells of no active dataset when it is asked first, so that a name like the active dataset's is refused only when an
// output is opened under it.
class ForgetfulAdapter final : public HostAdapter {
 public:
  explicit ForgetfulAdapter(HostAdapter& other) : other_(other) {}
  SvrDMDataset* GetActiveDataset() override { return ++asked_ == 1 ? nullptr : other_.GetActiveDataset(); }

 private:
  HostAdapter& other_;
  int asked_ = 0;
};

TEST(AFailedWalk, EndsAtOnceWhenTheSecondOutputCannotBeOpened) {
  ProcedureRun run(alternating(false), alternating(true));
  ForgetfulAdapter adapter(run.manager());
  run.fakeAdapter = &adapter;
  run.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME=agreed MISMATCHDATASET=YES MISMATCHNAME=a");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "2/3 a is the active dataset and cannot be replaced; choose another name.\n");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.notes(), "");
  EXPECT_EQ(run.values("CasesCompare"), ". . . . . . . . . .");
  EXPECT_EQ(run.journalLine("CreateCaseIterator"), -1);
  EXPECT_TRUE(contains(run.journal(), "~UserOutputCaseFile#1"));
  EXPECT_EQ(run.valuesOf("agreed", "id"), "no dataset");
}

TEST(AFailedWalk, EndsAtOnceWhenTheFirstOutputCannotBeOpened) {
  ProcedureRun run(alternating(false), alternating(true));
  ForgetfulAdapter adapter(run.manager());
  run.fakeAdapter = &adapter;
  run.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME=A MISMATCHDATASET=YES MISMATCHNAME=differing");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "2/3 A is the active dataset and cannot be replaced; choose another name.\n");
  EXPECT_EQ(run.journalLine("= UserOutputCaseFile("), -1);
}

TEST(AFailedWalk, RefusesTwoFilesThatAreOneWhenTheSecondIsOpened) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("compare-datasets-walk-failures" + std::to_string(::getpid()));
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder / "real");
  std::filesystem::create_directory_symlink(folder / "real", folder / "link");
  ProcedureRun run(alternating(false), alternating(true));
  run.run(byId + " /SAVE MATCHDATASET=YES MATCHNAME='" + (folder / "real" / "cases.csv").string() +
          "' MISMATCHDATASET=YES MISMATCHNAME='" + (folder / "link" / "cases.csv").string() + "'");
  const bool isLeft = std::filesystem::exists(folder / "real" / "cases.csv");
  std::filesystem::remove_all(folder);
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "2/3 The data file " + (folder / "link" / "cases.csv").string() +
                                " is written twice by one command; choose another name.\n");
  EXPECT_FALSE(isLeft);
}

TEST(AFailedWalk, HasNoMessageWhenNoComparisonIteratorCanBeMade) {
  FakedRun run(alternating(false), alternating(true));
  run.onComparisonView = [](WrappedSource& view) { view.withoutIterators = true; };
  run.run(byId + bothOutputs);
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.journalLine("ProcedureDataSource#1.CreateCaseIterator"), -1);  // the active one is not even tried
  EXPECT_EQ(run.journalLine("CommitDictionary"), -1);
  EXPECT_EQ(run.values("CasesCompare"), ". . . . . . . . . .");
}

TEST(AFailedWalk, HasNoMessageWhenNoActiveIteratorCanBeMade) {
  FakedRun run(alternating(false), alternating(true));
  run.activeSource.withoutIterators = true;
  run.run(byId);
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "");
}

// Fails when it is asked the third time, which is when an output is opened.
class FailingAdapter final : public HostAdapter {
 public:
  explicit FailingAdapter(HostAdapter& other) : other_(other) {}
  SvrDMDataset* GetActiveDataset() override {
    if (++asked_ == 3) throw std::runtime_error("the adapter has failed");
    return other_.GetActiveDataset();
  }

 private:
  HostAdapter& other_;
  int asked_ = 0;
};

TEST(AFailedWalk, LetsAnyOtherExceptionOfOpeningAnOutputLeaveTheRunWithEverythingDestroyed) {
  ProcedureRun run(alternating(false), alternating(true));
  FailingAdapter adapter(run.manager());
  run.fakeAdapter = &adapter;
  run.run(byId + bothOutputs);
  EXPECT_EQ(run.outcome(), "left by: the adapter has failed");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.journal().back(), "~BpProcedure#1");
  EXPECT_TRUE(contains(run.journal(), "~BpPivotTable#5"));
  EXPECT_TRUE(contains(run.journal(), "~SvrDMInputDataSource#1"));
}

TEST(AFailedWalk, ReportsThatTheActiveCasesCannotBeReadAtAll) {
  const DatasetBuilder active =
      dataset().text("t", 2, {"a"}).numeric("x", {1}).with([](data::Dictionary& dictionary) { dictionary.filter = 0; });
  ProcedureRun run(active, dataset().numeric("x", {1}));
  run.run("/COMPDATASET=b /VARIABLES=x /SAVE FLAGMISMATCHES=NO");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(),
            "2/3 The string variable t cannot be a filter; switch the filter off or name a numeric variable.\n");
}

// A manager that fails once the command has been parsed, so that a dataset that was found is not found again.
class FailingManager final : public ServerDataManager {
 public:
  explicit FailingManager(ServerDataManager& others) : others_(others) {}
  SvrDMItemPtr GetDataSet(std::string_view name) override {
    if (++asked_ > 1) throw std::runtime_error("the manager has failed");
    return others_.GetDataSet(name);
  }

 private:
  ServerDataManager& others_;
  int asked_ = 0;
};

TEST(ARunWithoutComparisonData, RefusesCaseIds) {
  ProcedureRun run(alternating(false), alternating(true));
  FailingManager manager(run.manager());
  run.fakeManager = &manager;
  run.run(byId);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.messages(),
            "2/3 The comparison cannot be performed because the case ID variables do not match in the two datasets.\n");
  EXPECT_EQ(run.tables(), "");
}

TEST(ARunWithoutComparisonData, FindsNoVariableAndFailsItsWalk) {
  ProcedureRun run(alternating(false), alternating(true));
  FailingManager manager(run.manager());
  run.fakeManager = &manager;
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "0/3 The variables do not match in t...\n");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.values("CasesCompare"), ". . . . . . . . . .");
}

}  // namespace workbench::tests::walk_failures_test
