#include "workbench/datasets/dataset_manager.h"

#include <gtest/gtest.h>

#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "workbench/output/document.h"

namespace workbench::datasets {
namespace {

using data::Dataset;
using data::testing::casesOf;
using data::testing::data;
using data::testing::keptDataset;

class Manager : public ::testing::Test {
 protected:
  Manager() {
    currentRun().datasets = &manager_;
    currentRun().adapter = &manager_;
    currentRun().command = &command_;
  }
  // What the host has said, sentence by sentence.
  std::string said() const {
    std::string all;
    for (const auto& item : command_.items) {
      all += std::get<output::StringText>(std::get<output::Message>(item).text.held).key + "\n";
    }
    return all;
  }
  std::shared_ptr<Dataset> open(const std::optional<std::string>& handle, double value = 1) {
    auto dataset = keptDataset(data().numeric("x", {value}));
    EXPECT_TRUE(manager_.open(dataset, handle));
    return dataset;
  }
  static void addVariable(Dataset& dataset) { dataset.addVariable(data::plainVariable("flag", 0)); }

  data::testing::RunScope run_;
  output::Command command_;
  DatasetManager manager_;
};

TEST_F(Manager, MakesWhatIsOpenedTheActiveDataset) {
  EXPECT_EQ(manager_.active(), nullptr);
  EXPECT_EQ(manager_.makeActiveSource(), nullptr);
  const auto first = open("first");
  const auto second = open("Second");
  EXPECT_EQ(manager_.active(), second);
  EXPECT_EQ(manager_.activeHandle(), "Second");
  ASSERT_TRUE(manager_.activate("FIRST"));
  EXPECT_EQ(manager_.active(), first);
  EXPECT_EQ(manager_.handles(), (std::vector<std::string>{"first", "Second"}));
  EXPECT_EQ(manager_.find("second"), second);
  EXPECT_EQ(manager_.find("third"), nullptr);
}

TEST_F(Manager, RefusesHandlesThatAreNotWellFormedOrNotOpen) {
  EXPECT_FALSE(manager_.open(keptDataset(data().numeric("x", {})), "a.csv"));
  EXPECT_EQ(manager_.active(), nullptr);
  EXPECT_EQ(manager_.activate("none").problem().text(), "No open dataset has the name none.");
  EXPECT_FALSE(manager_.close("none"));
}

TEST_F(Manager, HasNoActiveDatasetAfterThatWasClosed) {
  open("first");
  ASSERT_TRUE(manager_.close("first"));
  EXPECT_EQ(manager_.active(), nullptr);
  EXPECT_EQ(GetAdapter().GetActiveDataset(), nullptr);
  EXPECT_EQ(said(), "");
}

TEST_F(Manager, ShowsTheActiveDatasetToTheHostOnlyWhenItHasAHandle) {
  open(std::nullopt);
  EXPECT_EQ(GetAdapter().GetActiveDataset(), nullptr);
  open("first");
  ASSERT_NE(GetAdapter().GetActiveDataset(), nullptr);
  EXPECT_EQ(GetAdapter().GetActiveDataset()->GetHandle(), "first");
}

TEST_F(Manager, WarnsWhenAddedVariablesAreLostWithADataset) {
  addVariable(*open(std::nullopt));
  open("first");
  EXPECT_EQ(said(), "The active dataset was closed; the variables that were added to it had not been saved.\n");
  addVariable(*manager_.active());
  ASSERT_TRUE(manager_.close("first"));
  EXPECT_NE(said().find("first was closed;"), std::string::npos);
}

TEST_F(Manager, SaysNothingOfAnUnnamedDatasetThatLosesNothing) {
  const auto unnamed = open(std::nullopt);
  unnamed->addVariable(data::plainVariable("flag", 0));
  unnamed->markSaved();
  open("first");
  EXPECT_EQ(said(), "");
}

TEST_F(Manager, ReplacesADatasetWithANote) {
  open("other", 1);
  open("first", 2);
  manager_.openOutput("OTHER", keptDataset(data().numeric("x", {3})));
  EXPECT_EQ(said(), "The open dataset other was replaced.\n");
  EXPECT_EQ(casesOf(*manager_.find("other")), "3");
  EXPECT_EQ(manager_.activeHandle(), "first") << "an output does not become active";
}

TEST_F(Manager, GivesDatasetsByHandleWithoutRegardToCase) {
  open("first");
  const SvrDMItemPtr found = ServerDataManager::GetInstance().GetDataSet("FIRST");
  ASSERT_TRUE(found.IsValid());
  EXPECT_EQ(found->GetHandle(), "first");
  EXPECT_FALSE(ServerDataManager::GetInstance().GetDataSet("second").IsValid());
}

TEST_F(Manager, KeepsADatasetForWhoHoldsAReferenceUntilTheCommandEnds) {
  open("first", 4);
  const SvrDMItemPtr held = manager_.GetDataSet("first");
  ASSERT_TRUE(manager_.close("first"));
  const auto view = held->OpenView(false);
  EXPECT_EQ(data::testing::walked(*view, 0), "0:4");
  data::letGoOfAllHandedOut();
  EXPECT_THROW(held->OpenView(false), ErrorText);
}

TEST_F(Manager, FreesTheCasesOfAClosedDatasetWhoseReferenceWasLeftBehind) {
  std::weak_ptr<Dataset> watched = open("first");
  auto* const leaked = new SvrDMItemPtr(manager_.GetDataSet("first"));
  ASSERT_TRUE(manager_.close("first"));
  EXPECT_FALSE(watched.expired());
  data::letGoOfAllHandedOut();
  EXPECT_TRUE(watched.expired());
  delete leaked;
}

TEST_F(Manager, KeepsOpenDatasetsWhenACommandEnds) {
  open("first", 5);
  data::letGoOfAllHandedOut();
  EXPECT_EQ(casesOf(*manager_.find("first")), "5");
}

TEST_F(Manager, ShowsAViewThatOnlyReads) {
  open("first", 6);
  const SvrDMInputDataSource view(manager_.GetDataSet("first"), false);
  EXPECT_EQ(view.GetHandle(), "first");
  EXPECT_EQ(data::testing::walked(*view, 0), "0:6");
  EXPECT_THROW((*view).MakeVariable(0, nullptr), ErrorText);
}

TEST_F(Manager, ShowsAViewThroughWhichVariablesCanBeAdded) {
  const auto dataset = open("first", 6);
  {
    const SvrDMInputDataSource view(manager_.GetDataSet("first"), true);
    std::int32_t flag = -1;
    (*view).MakeVariable(0, &flag).SetName("flag");
    const auto cases = (*view).CreateCaseIterator(IteratorOptions::standard);
    while (cases->NextCase()) cases->GetObsPointer(flag)->number = 1;
  }
  EXPECT_EQ(casesOf(*dataset), "6,1");
}

TEST_F(Manager, WritesItsCallsToTheJournal) {
  open("first");
  const data::testing::JournalLines journalLines;
  {
    SvrDMItemPtr found = ServerDataManager::GetInstance().GetDataSet("FIRST");
    const SvrDMInputDataSource view(found, false);
    (*view).GetNVars();
    GetAdapter().GetActiveDataset();
    ServerDataManager::GetInstance().GetDataSet("none");
  }
  EXPECT_EQ(journalLines.lines,
            "ServerDataManager::GetInstance()\n"
            "ServerDataManager.GetDataSet(\"FIRST\") -> SvrDMDataset(first)\n"
            "SvrDMInputDataSource#1 = SvrDMInputDataSource(SvrDMDataset(first), false)\n"
            "*SvrDMInputDataSource#1 -> VRIX_DataSource#1\n"
            "VRIX_DataSource#1.GetNVars() -> 1\n"
            "GetAdapter()\n"
            "HostAdapter.GetActiveDataset() -> SvrDMDataset(first)\n"
            "ServerDataManager::GetInstance()\n"
            "ServerDataManager.GetDataSet(\"none\") -> empty\n"
            "~SvrDMInputDataSource#1\n"
            "~VRIX_DataSource#1\n");
}

TEST(HostDatasets, CannotBeReachedWithoutARun) {
  const data::testing::RunScope run;
  currentRun().datasets = nullptr;
  currentRun().adapter = nullptr;
  EXPECT_THROW(ServerDataManager::GetInstance(), ErrorText);
  EXPECT_THROW(GetAdapter(), ErrorText);
}

}  // namespace
}  // namespace workbench::datasets
