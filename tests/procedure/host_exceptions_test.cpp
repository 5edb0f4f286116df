// What the host throws, at every call of a run: what the procedure says of it, and that nothing of the run stays
// behind.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "tests/procedure/faked_run.h"
#include "tests/procedure/procedure_run.h"

namespace workbench::tests::host_exceptions_test {

using data::testing::TemporaryFolder;
using Throw = std::function<void()>;

DatasetBuilder cases() {
  return dataset().numeric("id", {1, 2, 3}).numeric("x", {1, 2, 3}, [](data::Variable& variable) {
    variable.label = "One";
    variable.numberLabels = {{1, "one"}};
  });
}
DatasetBuilder others() { return dataset().numeric("id", {1, 2, 4}).numeric("x", {1, 7, 3}); }

const std::string command = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";

// Named for the tests' own names.
struct Thrown {
  const char* name;
  Throw now;
};
void PrintTo(const Thrown& thrown, std::ostream* out) { *out << thrown.name; }

const Throw errorText = [] { throw ErrorText("The host is out of order."); };
const Throw standardException = [] { throw std::runtime_error("The host is out of memory."); };
const Throw number = [] { throw 42; };

// Lets the host throw at the first journal line that holds the text, behind the given number of such lines.
void throwAt(ProcedureRun& run, const std::string& text, const Throw& thrown, int passedOver = 0) {
  run.onJournalLine = [text, thrown, passedOver](const std::string& line) mutable {
    if (line.starts_with("~") || line.find(text) == std::string::npos || passedOver-- != 0) return;
    thrown();
  };
}

class DatasetLookup : public ::testing::TestWithParam<Thrown> {};

TEST_P(DatasetLookup, WhateverItThrowsIsADiagnosticLineAndTheRunGoesOnWithoutAComparisonDataset) {
  ProcedureRun run(cases(), others());
  throwAt(run, "ServerDataManager.GetDataSet(", GetParam().now);
  run.run(command);
  EXPECT_EQ(run.missingInOrder({"ServerDataManager.GetDataSet(\"b\")", "BP_ToFront(0, \"caught an exception here\")",
                                "ProcedureDataSource#1.FindVarIndex(\"CasesCompare\", 0)", "BpError("}),
            "");
  EXPECT_EQ(run.messages(),
            "2/3 The comparison cannot be performed because the case ID variables do not match in the two datasets.\n");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.tables(), "");
  EXPECT_EQ(run.journalLine("SvrDMInputDataSource"), -1);
  EXPECT_EQ(run.journalLine("GetSystemFile("), -1);
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
}

TEST_P(DatasetLookup, WithoutCaseIdsSuchARunShowsTheActiveDatasetAndEndsByVrixGoToCaller) {
  ProcedureRun run(cases(), others());
  throwAt(run, "ServerDataManager::GetInstance()", GetParam().now);
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.cell("CD_CompSummaryTableName", {"CD_Dataset", "CD_Active"}), "a");
  EXPECT_EQ(run.cell("CD_CompSummaryTableName", {"CD_Dataset", "CD_Comparison"}), "");
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
}

TEST_P(DatasetLookup, IsNoMatterToADataFileWhichIsOpenedAllTheSame) {
  const TemporaryFolder folder;
  ProcedureRun run(cases(), others());
  throwAt(run, "ServerDataManager::GetInstance()", GetParam().now);
  run.run("/COMPDATASET='" + folder.write("b.csv", "id,x\n1,1\n2,7\n4,3\n") + "' /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(run.missingInOrder({"BP_ToFront(0, \"caught an exception here\")", "GetSystemFile("}), "");
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.values("CasesCompare"), "0 1 -1");
}

INSTANTIATE_TEST_SUITE_P(Of, DatasetLookup,
                         ::testing::Values(Thrown{"ErrorText", errorText},
                                           Thrown{"StandardException", standardException}, Thrown{"Number", number}),
                         [](const auto& thrown) { return std::string(thrown.param.name); });

TEST(HostExceptions, ADatasetThatWasClosedSinceItWasNamedIsNoComparisonDataset) {
  ProcedureRun run(cases(), others());
  run.onJournalLine = [&run](const std::string& line) {
    if (line == "ServerDataManager::GetInstance()") static_cast<void>(run.manager().close("b"));
  };
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.journalLine("BP_ToFront"), -1);
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
}

TEST(HostExceptions, OnlyAnErrorTextOfTheDataFileIsReported) {
  const TemporaryFolder folder;
  const std::string file = "'" + folder.write("b.csv", "id,x\n1,1\n") + "'";
  ProcedureRun run(cases(), others());
  throwAt(run, "GetSystemFile(", errorText);
  run.run("/COMPDATASET=" + file + " /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), "2/4 The host is out of order.\n");
  EXPECT_EQ(run.outcome(), "completed");

  throwAt(run, "GetSystemFile(", standardException);
  run.run("/COMPDATASET=" + file + " /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.outcome(), "left by: The host is out of memory.");

  throwAt(run, "GetSystemFile(", number);
  run.run("/COMPDATASET=" + file + " /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.outcome(), "left by what is no exception");
}

// One call of every stage outside the walk: what the host throws there leaves the procedure as it is.
struct Stage {
  std::string call;
  std::string tables;  // those that were shown before it
};
void PrintTo(const Stage& stage, std::ostream* out) { *out << stage.call; }
class StageOutsideTheWalk : public ::testing::TestWithParam<Stage> {};

TEST_P(StageOutsideTheWalk, LetsAnExceptionOfTheHostLeaveWithAllObjectsOfTheRunDestroyed) {
  for (const Throw& thrown : {errorText, number}) {
    ProcedureRun run(cases(), others());
    throwAt(run, GetParam().call, thrown);
    run.run(command + " /OUTPUT VARPROPERTIES=ALL");
    ASSERT_NE(run.journalLine(GetParam().call), -1);
    EXPECT_TRUE(run.outcome() == "left by: The host is out of order." ||
                run.outcome() == "left by what is no exception")
        << run.outcome();
    EXPECT_EQ(run.messages(), "");
    EXPECT_TRUE(run.tables().starts_with(GetParam().tables)) << run.tables();
    EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
    EXPECT_EQ(run.journal().back(), "~BpProcedure#1");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Of, StageOutsideTheWalk,
    ::testing::Values(Stage{"ValidateVariables(", ""}, Stage{"SetUseFilter(", ""}, Stage{"GoodVarName(", ""},
                      Stage{".MakeVariable(0", ""}, Stage{"AddValueLabel(0,", ""}, Stage{"GetAdapter()", ""},
                      Stage{"HostAdapter.GetActiveDataset()", ""}, Stage{"*SvrDMInputDataSource#1", ""},
                      Stage{"FindVarIndex(\"CasesCompare\"", ""}, Stage{"VRIX_DataSource#1.FindVarIndex(\"id\"", ""},
                      Stage{"MinDataColumnWidth(180)", "CD_CompSummaryTableName(0)"},
                      Stage{"VRIX_DataSource#1.GetFilterVarIndex()", "CD_CompSummaryTableName(5)"},
                      Stage{"VRIX_Variable(x).GetAttributes()", "CD_CompSummaryTableName(10)"},
                      Stage{"BpPivotTable#2.Dimension(", "CD_CompSummaryTableName(10) CD_DictCompTableName(0)"}));

TEST(HostExceptions, OfTheSummaryTablesLeaveAfterTheWalkHasReleasedItsIterators) {
  ProcedureRun run(cases(), others());
  throwAt(run, "BpPivotTable#3.Dimension(", standardException);
  run.run(command);
  EXPECT_EQ(run.outcome(), "left by: The host is out of memory.");
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
  EXPECT_EQ(run.missingInOrder({"~VRIX_InputCaseIterator#1", "BpPivotTable#3.Dimension(", "~BpPivotTable#5",
                                "~BpPivotTable#4", "~BpPivotTable#3", "~BpPivotTable#2", "~BpProcedure#1"}),
            "");
}

TEST(HostExceptions, OfTheLastTableLeaveBeforeTheComparisonDatasetWasClosedAndItIsClosedAllTheSame) {
  ProcedureRun run(cases(), others());
  throwAt(run, "BpPivotTable#6.Dimension(", errorText);
  run.run(command);
  EXPECT_EQ(run.outcome(), "left by: The host is out of order.");
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
  EXPECT_NE(run.journalLine("~SvrDMInputDataSource#1"), -1);
}

TEST(HostExceptions, ComparisonIteratorsThatCannotBeMadeEndTheWalkWithoutAWordAndWithoutAnActiveIterator) {
  FakedRun run(cases(), others());
  run.onComparisonView = [](WrappedSource& view) { view.withoutIterators = true; };
  run.run(command);
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(run.journalLine("ProcedureDataSource#1.CreateCaseIterator("), -1);
  EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
}

TEST(HostExceptions, ActiveIteratorsThatCannotBeMadeEndTheWalkToo) {
  FakedRun run(cases(), others());
  int destroyed = 0;
  run.activeSource.withoutIterators = true;
  run.onComparisonView = [&](WrappedSource& view) {
    view.onIterator = [&](WrappedIterator& iterator) { iterator.whenDestroyed = [&] { ++destroyed; }; };
  };
  run.run(command);
  EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
  EXPECT_EQ(destroyed, 1);
}

TEST(HostExceptions, AnErrorTextOfTheWalkIsReportedAndAnythingElseEndsItWithoutAWord) {
  const std::vector<std::pair<Throw, std::string>> reports = {
      {errorText, "2/3 The host is out of order.\n"}, {standardException, ""}, {number, ""}};
  for (const auto& [thrown, messages] : reports) {
    ProcedureRun run(cases(), others());
    throwAt(run, "VRIX_InputCaseIterator#1.NextCase()", thrown, 1);
    run.run(command);
    EXPECT_EQ(run.outcome(), "left by VrixGoToCaller");
    EXPECT_EQ(run.messages(), messages);
    EXPECT_EQ(run.tables(), "CD_CompSummaryTableName(10)");
    EXPECT_EQ(run.leftAlive(), "UserCaseFileSpec#1");
  }
}

// Whatever call the host fails at: the run ends, and of its objects the options alone are left.
TEST(HostExceptions, NoCallThatFailsLeavesAnythingBehindButTheOptions) {
  const std::string full = command +
                           " /SAVE MATCHDATASET=YES MATCHNAME=m MISMATCHDATASET=YES MISMATCHNAME=u "
                           "/OUTPUT VARPROPERTIES=ALL";
  std::size_t lines = 0;
  {
    ProcedureRun run(cases(), others());
    lines = run.run(full).journal().size();
    ASSERT_EQ(run.outcome(), "completed");
  }
  ASSERT_GT(lines, 500U);
  for (std::size_t failing = 1; failing < lines; ++failing) {
    ProcedureRun run(cases(), others());
    std::string failed;
    run.onJournalLine = [&](const std::string& line) {
      if (!failed.empty() || run.journal().size() != failing + 1 || line.starts_with("~")) return;
      failed = line;
      throw ErrorText("The host is out of order.");
    };
    run.run(full);
    if (failed.empty()) continue;  // it was a destruction
    // Only a look-up that fails lets the run go on, which the case IDs then end.
    const bool isLookup = run.journalLine("BP_ToFront") != -1;
    EXPECT_EQ(run.outcome() == "completed", isLookup) << failed << "\n" << run.outcome();
    const bool isReported = run.messages().find("2/3 The host is out of order.\n") != std::string::npos;
    EXPECT_EQ(isReported, run.outcome() == "left by VrixGoToCaller") << failed << "\n" << run.outcome();
    // The object whose making failed was never there.
    const std::string unmade = failed.find(" = ") == std::string::npos ? "" : failed.substr(0, failed.find(' '));
    std::string left = run.leftAlive();
    if (!unmade.empty() && left.ends_with(unmade)) left.erase(left.size() - unmade.size());
    EXPECT_TRUE(left == "UserCaseFileSpec#1" || left == "UserCaseFileSpec#1 " || left.empty())
        << "left alive: " << left << "\nafter: " << failed;
  }
}

}  // namespace workbench::tests::host_exceptions_test
