// The command: what it takes, what it refuses and why, and what it leaves out.
#include <gtest/gtest.h>

#include "tests/profile/profile_run.h"

namespace workbench::tests::profile_command_test {

DatasetBuilder active() { return dataset().numeric("id", {1, 2}).numeric("x", {1, 2}).text("t", 4, {"a", "b"}); }

// What was said when the command was refused; the tables when it was not.
std::string said(ProcedureRun& run, const std::string& subcommands) {
  run.run(subcommands);
  return run.command().openedTable() ? run.tables() : run.messages();
}

TEST(ProfileCommand, OpensAllItsTables) {
  ProfileRun run(active(), active());
  EXPECT_EQ(said(run, "/COMPDATASET=b /VARIABLES=ALL /CASEID=id"),
            "PD_PairedCases(7) PD_AgreementTable(12) PD_DifferencesTable(7) PD_ChangesTable(0)");
  EXPECT_EQ(run.messages(), "");
  EXPECT_EQ(run.outcome(), "completed");
}

TEST(ProfileCommand, ShowsAsManyChangesAsAskedOrNone) {
  ProfileRun run(active(), active());
  EXPECT_EQ(said(run, "/COMPDATASET=b /VARIABLES=x /OUTPUT CHANGES=0"),
            "PD_PairedCases(7) PD_AgreementTable(8) PD_DifferencesTable(7)");
  EXPECT_NE(said(run, "/COMPDATASET=b /VARIABLES=x /OUTPUT CHANGES=1001").find("from 0 to 1000"), std::string::npos);
}

TEST(ProfileCommand, RefusesTheActiveDatasetItself) {
  ProfileRun run(active(), active());
  const std::string refusal =
      "2/3 The active dataset cannot be profiled against itself. Name another dataset in COMPDATASET.\n";
  EXPECT_EQ(said(run, "/COMPDATASET=A /VARIABLES=ALL"), refusal);
  EXPECT_EQ(said(run, "/COMPDATASET=* /VARIABLES=ALL"), refusal);
}

TEST(ProfileCommand, RefusesADatasetThatIsNotThere) {
  ProfileRun run(active(), active());
  EXPECT_TRUE(said(run, "/COMPDATASET=c /VARIABLES=ALL").starts_with("2/3 The dataset does not exist."));
  EXPECT_FALSE(said(run, "/COMPDATASET='no/such.csv' /VARIABLES=ALL").empty());
}

TEST(ProfileCommand, RefusesCaseIdsThatAreNotInBothDatasetsWithTheSameType) {
  const std::string refusal = "2/3 The case IDs are not in both datasets with the same type. Name others in CASEID.\n";
  ProfileRun without(active(), dataset().numeric("x", {1}));
  EXPECT_EQ(said(without, "/COMPDATASET=b /VARIABLES=ALL /CASEID=id"), refusal);
  ProfileRun ofAnotherType(active(), dataset().text("id", 3, {"1"}));
  EXPECT_EQ(said(ofAnotherType, "/COMPDATASET=b /VARIABLES=ALL /CASEID=id"), refusal);
}

TEST(ProfileCommand, NamesTheDatasetAndTheRowThatAreOutOfOrder) {
  ProfileRun run(dataset().numeric("id", {1, 3, 2}), dataset().numeric("id", {1, 2, 3}));
  EXPECT_EQ(said(run, "/COMPDATASET=b /VARIABLES=ALL /CASEID=id"),
            "2/3 The active dataset is not in ascending order of the case IDs: row ^1 belongs before the row above it. "
            "Sort it first.{3}\n");
  ProfileRun other(dataset().numeric("id", {1}), dataset().numeric("id", {1, 2, 3, 0}));
  EXPECT_EQ(said(other, "/COMPDATASET=b /VARIABLES=ALL /CASEID=id"),
            "2/3 The comparison dataset is not in ascending order of the case IDs: row ^1 belongs before the row above "
            "it. Sort it first.{4}\n");
}

TEST(ProfileCommand, NamesWhatWasAskedForAndCannotBeProfiled) {
  ProfileRun run(active(), dataset().numeric("id", {1, 2}).numeric("t", {1, 2}));
  const std::string pattern =
      "4/2 These variables are not in both datasets with the same type, so they are not profiled: [%1:, ^1:]1.";
  run.run("/COMPDATASET=b /VARIABLES=id x t nothing");
  EXPECT_EQ(run.messages(), pattern + "{[nothing|x|t]}\n");
  EXPECT_EQ(run.categories(keys::agreement, 0), "PD_AllVariables id");
}

TEST(ProfileCommand, TakesAllForTheVariablesOfBothDatasets) {
  ProfileRun run(active(), dataset().numeric("id", {1, 2}).numeric("t", {1, 2}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.categories(keys::agreement, 0), "PD_AllVariables id");
  EXPECT_NE(run.messages().find("{[t]}"), std::string::npos) << run.messages();
}

TEST(ProfileCommand, LeavesOutWhatIsExcepted) {
  ProfileRun run(active(), active());
  run.run("/COMPDATASET=b /VARIABLES=ALL EXCEPT=X nothing");
  EXPECT_EQ(run.categories(keys::agreement, 0), "PD_AllVariables id t");
  EXPECT_EQ(run.messages(), "");
}

TEST(ProfileCommand, CompletesWithoutAVariableToProfile) {
  ProfileRun run(active(), dataset().numeric("y", {1, 2, 3}));
  EXPECT_EQ(said(run, "/COMPDATASET=b /VARIABLES=ALL"),
            "PD_PairedCases(7) PD_AgreementTable(3) PD_DifferencesTable(0) PD_ChangesTable(0)");
}

TEST(ProfileCommand, GivesBackAllThatItWasGiven) {
  ProfileRun run(active(), active());
  run.run("/COMPDATASET=b /VARIABLES=ALL /CASEID=id");
  EXPECT_EQ(run.leftAlive(), "");
}

}  // namespace workbench::tests::profile_command_test
