#include <gtest/gtest.h>

#include "host/data.h"
#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "workbench/data/working/active_source.h"

namespace workbench::data {
namespace {

using testing::casesOf;
using testing::data;
using testing::keptDataset;

class ProcedureView : public ::testing::Test {
 protected:
  void activate(testing::Data content) {
    dataset_ = keptDataset(std::move(content));
    active_ = makeActiveSource(dataset_);
    currentRun().activeSource = active_.get();
  }

  testing::RunScope run_;
  std::shared_ptr<Dataset> dataset_;
  std::unique_ptr<ActiveSource> active_;
};

TEST_F(ProcedureView, CannotBeMadeWithoutAnActiveDataset) {
  currentRun().activeSource = nullptr;
  EXPECT_THROW(ProcedureDataSource(), ErrorText);
}

TEST_F(ProcedureView, ShowsTheDictionaryOfTheActiveDataset) {
  activate(data().numeric("age", {1}).text("town", 12, {"Ghent"}).numeric("w", {2}).filter("age"));
  dataset_->dictionary().weight = 2;
  dataset_->dictionary().split = {1, 0};
  dataset_->dictionary().attributes.Add("Source", {"survey"});
  const ProcedureDataSource source;
  EXPECT_EQ(source.GetNVars(), 3);
  EXPECT_EQ(source.GetVariable(1).GetName(), "town");
  EXPECT_EQ(source.FindVarIndex("TOWN", FindOptions::standard), 1);
  EXPECT_EQ(source.FindVarIndex("city", FindOptions::standard), -1);
  EXPECT_EQ(source.GetFilterVarIndex(), 0);
  EXPECT_EQ(source.GetWeightVarIndex(), 2);
  EXPECT_EQ(source.GetNSplitVars(), 2);
  EXPECT_EQ(source.GetSplitVarIndex(0), 1);
  EXPECT_EQ(source.GetSplitVarIndex(1), 0);
  EXPECT_EQ(source.ObsIndex(2), 3U) << "the string takes two slots";
  EXPECT_EQ(source.GetCaseSize(), 4U);
  EXPECT_EQ(source.GetFileSpecExt().GetGeneric(), "");
  EXPECT_EQ(source.GetAttributes().Name(0), "Source");
  EXPECT_THROW(source.GetVariable(3), ErrorText);
  EXPECT_THROW(source.GetSplitVarIndex(2), ErrorText);
}

TEST_F(ProcedureView, AddsNoMoreVariablesThanWereAnnounced) {
  activate(data().numeric("x", {1}));
  ProcedureDataSource source;
  EXPECT_THROW(source.MakeVariable(0, nullptr), ErrorText);
  source.SetMaxObsAdded(1);
  std::int32_t index = -1;
  source.MakeVariable(0, &index);
  EXPECT_EQ(index, 1);
  EXPECT_THROW(source.MakeVariable(0, nullptr), ErrorText);
  EXPECT_EQ(source.GetNVars(), 2);
}

TEST_F(ProcedureView, LeavesAnAddedVariableInTheDatasetWhenItsRunFails) {
  activate(data().numeric("x", {1, 2}));
  try {
    ProcedureDataSource source;
    source.SetMaxObsAdded(1);
    VRIX_Variable& flag = source.MakeVariable(0, nullptr);
    flag.SetName(source.GoodVarName("x"));
    flag.SetFormat(FormatType::number, 1, 0);
    flag.SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel::nominal);
    flag.SetLabel("Comparison");
    flag.AddValueLabel(1, "differs");
    flag.AddValueLabel(0, "same");
    flag.AddValueLabel(-1, "alone");
    throw VrixGoToCaller();
  } catch (const VrixGoToCaller&) {
  }
  const Variable& flag = dataset_->dictionary().at(dataset_->dictionary().find("x_1"));
  EXPECT_EQ(flag.format.width, 1);
  EXPECT_EQ(flag.level, VRIX_Variable_Enumerations::MeasurementLevel::nominal);
  EXPECT_EQ(flag.label, "Comparison");
  ASSERT_EQ(flag.numberLabels.size(), 3U);
  EXPECT_EQ(flag.numberLabels[0].second, "alone") << "labels are kept in the order of the values";
  EXPECT_EQ(casesOf(*dataset_), "1,. 2,.");
  EXPECT_TRUE(dataset_->hasUnsavedVariables());
}

TEST_F(ProcedureView, KeepsReferencesToVariablesWhileOthersAreAdded) {
  activate(data().numeric("x", {1}));
  ProcedureDataSource source;
  const std::string& name = source.GetVariable(0).GetName();
  source.SetMaxObsAdded(100);
  for (int added = 0; added < 100; ++added) source.MakeVariable(0, nullptr).SetLabel("label");
  EXPECT_EQ(name, "x");
  EXPECT_EQ(source.GetNVars(), 101);
}

TEST_F(ProcedureView, RefusesNamesThatAreTakenOrNoNames) {
  activate(data().numeric("Age", {1}));
  ProcedureDataSource source;
  source.SetMaxObsAdded(1);
  VRIX_Variable& added = source.MakeVariable(0, nullptr);
  EXPECT_THROW(added.SetName("aGE"), ErrorText);
  EXPECT_THROW(added.SetName(""), ErrorText);
  EXPECT_THROW(added.SetName("a\nb"), ErrorText);
  added.SetName("flag");
  added.SetName("FLAG");
  EXPECT_EQ(source.FindVarIndex("flag", FindOptions::standard), 1);
  EXPECT_EQ(dataset_->dictionary().at(1).name, "FLAG");
}

TEST_F(ProcedureView, DoesNotLetTheDatasetsOwnVariablesBeChanged) {
  activate(data().numeric("x", {1}));
  ProcedureDataSource source;
  EXPECT_THROW(source.GetVariable(0).SetLabel("other"), ErrorText);
  EXPECT_THROW(source.MakeVariable(-1, nullptr), ErrorText);
  EXPECT_THROW(source.MakeVariable(32768, nullptr), ErrorText);
}

TEST_F(ProcedureView, MakesAVariableLikeOneOfAnotherSource) {
  activate(data().numeric("x", {1}));
  auto other = data().text("town", 10, {"Ghent"});
  other.dictionary.at(0).label = "Town";
  DatasetSource comparison(keptDataset(other), SourceKind::readOnlyView);
  ProcedureDataSource source;
  source.SetMaxObsAdded(2);
  EXPECT_EQ(*source.MakeVariable(comparison.GetVariable(0), nullptr).GetLabel(), "Town");
  EXPECT_EQ(source.MakeVariable(comparison.GetVariable(0), nullptr).GetName(), "town_1");
}

TEST_F(ProcedureView, IsNotWrittenToCaseByCase) {
  activate(data().numeric("x", {1}));
  ProcedureDataSource source;
  const OBS slot{};
  EXPECT_THROW(source.WriteCase(&slot), ErrorText);
  EXPECT_THROW(source.CommitDictionary(), ErrorText);
  EXPECT_THROW(source.Close(), ErrorText);
}

TEST_F(ProcedureView, OfAComparisonCannotBeAddedTo) {
  DatasetSource comparison(keptDataset(data().numeric("x", {1})), SourceKind::readOnlyView);
  EXPECT_THROW(comparison.MakeVariable(0, nullptr), ErrorText);
  EXPECT_THROW(comparison.SetAttributes(DatasourceAttributes()), ErrorText);
}

TEST_F(ProcedureView, WritesItsCallsToTheJournal) {
  activate(data().numeric("x", {1}));
  const testing::JournalLines journalLines;
  {
    ProcedureDataSource source;
    source.SetUseFilter(false);
    source.SetMaxObsAdded(1);
    source.MakeVariable(0, nullptr).SetName("flag");
    source.FindVarIndex("flag", FindOptions::standard);
    source.GetVariable(0).GetType();
    EXPECT_THROW(source.GetVariable(7), ErrorText);
    const auto cases = source.CreateCaseIterator(IteratorOptions::standard);
    cases->NextCase();
  }
  EXPECT_EQ(journalLines.lines,
            "ProcedureDataSource#1 = ProcedureDataSource()\n"
            "ProcedureDataSource#1.SetUseFilter(false)\n"
            "ProcedureDataSource#1.SetMaxObsAdded(1)\n"
            "ProcedureDataSource#1.MakeVariable(0, null) -> VRIX_Variable(Variable)\n"
            "VRIX_Variable(Variable).SetName(\"flag\")\n"
            "ProcedureDataSource#1.FindVarIndex(\"flag\", 0) -> 1\n"
            "ProcedureDataSource#1.GetVariable(0) -> VRIX_Variable(x)\n"
            "VRIX_Variable(x).GetType()\n"
            "ProcedureDataSource#1.GetVariable(7) throws ErrorText(\"There is no variable with the index 7.\")\n"
            "ProcedureDataSource#1.CreateCaseIterator(0) -> VRIX_InputCaseIterator#1\n"
            "VRIX_InputCaseIterator#1.NextCase() -> true\n"
            "~VRIX_InputCaseIterator#1\n"
            "~ProcedureDataSource#1\n");
}

}  // namespace
}  // namespace workbench::data
