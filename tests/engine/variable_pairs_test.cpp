// What variable matching leaves of every examined variable.
#include <gtest/gtest.h>

#include "engine/case_id.h"
#include "engine/dictionary_comparison.h"
#include "engine/variable_matching.h"
#include "tests/engine/engine_run.h"

namespace workbench::tests {
namespace {

using compdatas::DatasetComparer;
using compdatas::DictionaryState;
using compdatas::Property;
using compdatas::VariablePair;

const DatasetComparer& matched(EngineRun& run) {
  EXPECT_TRUE(compdatas::validateCaseIds(run.comparer()));
  compdatas::matchVariables(run.comparer());
  return run.comparer();
}

std::string selected(const DatasetComparer& comparer) {
  std::string all;
  for (const bool on : comparer.propertyOn) all += on ? '1' : '0';
  return all;
}

DatasetBuilder::Change attributes(const std::vector<std::pair<std::string, std::vector<std::string>>>& named) {
  return [=](data::Variable& variable) {
    for (const auto& [name, values] : named) variable.attributes.Add(name, values);
  };
}

TEST(VariablePairs, AreInTheOrderOfTheActiveDictionaryWithCaseIdsAmongThem) {
  EngineRun run(dataset().numeric("a", {}).numeric("b", {}).numeric("c", {}).numeric("d", {}),
                dataset().numeric("d", {}).numeric("c", {}).numeric("a", {}));
  const DatasetComparer& comparer = matched(run.compare({"d", "b"}).pairBy({"c", "a"}));
  ASSERT_EQ(comparer.variablePairs.size(), 4U);
  std::string all;
  for (const VariablePair& pair : comparer.variablePairs) {
    all += std::to_string(pair.activeIndex) + ':' + std::to_string(pair.compareIndex) + (pair.compared ? "=" : "-") +
           (pair.isCaseId ? "id " : " ");
  }
  EXPECT_EQ(all, "0:2=id 1:-1- 2:1=id 3:0= ");
}

TEST(VariablePairs, KnowTheActiveWidthAndTheSlotsItTakes) {
  EngineRun run(dataset().text("one", 1, {}).text("eight", 8, {}).text("nine", 9, {}).numeric("n", {}),
                dataset().text("one", 30, {}).text("eight", 30, {}).text("nine", 30, {}).numeric("n", {}));
  const DatasetComparer& comparer = matched(run.compare({"one", "eight", "nine", "n"}));
  std::string all;
  for (const VariablePair& pair : comparer.variablePairs) {
    all += std::to_string(pair.width) + '/' + std::to_string(pair.outSlots) + ' ';
  }
  EXPECT_EQ(all, "1/1 8/1 9/2 0/1 ");
}

TEST(VariablePairs, AreRecordedAsFarAsTheyWereExamined) {
  EngineRun run(dataset().numeric("gone", {}).numeric("kind", {}), dataset().text("kind", 3, {}));
  const DatasetComparer& comparer = matched(run.compare({"gone", "kind"}));
  const VariablePair& gone = comparer.variablePairs[0];
  EXPECT_FALSE(gone.foundInCompare);
  EXPECT_FALSE(gone.typeEqual);
  EXPECT_TRUE(gone.fuzzyNumeric);
  const VariablePair& kind = comparer.variablePairs[1];
  EXPECT_TRUE(kind.foundInCompare);
  EXPECT_EQ(kind.compareIndex, 0);
  EXPECT_FALSE(kind.typeEqual);
  EXPECT_FALSE(kind.compared);
  EXPECT_FALSE(kind.dictEqual);
  EXPECT_FALSE(kind.labelEqual);
  EXPECT_EQ(comparer.dictionaryState, DictionaryState::nothingPaired);
}

TEST(VariablePairs, CountAPropertyThatWasNotSelectedAsEqual) {
  EngineRun run(dataset().numeric("x", {}, [](data::Variable& x) { x.label = "X"; }),
                dataset().numeric("x", {}, [](data::Variable& x) { x.displayWidth = 3; }));
  run.options.setVarProperties({"COLUMNS"});
  const VariablePair& pair = matched(run.compare({"x"})).variablePairs[0];
  EXPECT_TRUE(pair.labelEqual);
  EXPECT_FALSE(pair.columnsEqual);
  EXPECT_FALSE(pair.dictEqual);
}

TEST(SelectedProperties, HoldPresenceAndStorageTypeAlwaysAndTheOthersByTheirKeywords) {
  EngineRun none(dataset().numeric("x", {}), dataset().numeric("x", {}));
  EXPECT_EQ(selected(matched(none.compare({"x"}))), "11000000000");
  EngineRun all(dataset().numeric("x", {}), dataset().numeric("x", {}));
  all.options.setVarPropertiesAll();
  EXPECT_EQ(selected(matched(all.compare({"x"}))), "11111111111");
  const std::vector<std::string> keywords = {"MEASURE", "WIDTH", "LABEL", "VALUELABELS", "MISSING",
                                             "COLUMNS", "ALIGN", "ROLE",  "ATTRIBUTES"};
  for (std::size_t index = 0; index < keywords.size(); ++index) {
    EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
    run.options.setVarProperties({keywords[index]});
    std::string expected = "11000000000";
    expected[index + 2] = '1';
    EXPECT_EQ(selected(matched(run.compare({"x"}))), expected) << keywords[index];
  }
}

TEST(SelectedProperties, AreFoundWithoutRegardToCase) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  run.options.setVarProperties({"Label", "role"});
  EXPECT_EQ(selected(matched(run.compare({"x"}))), "11001000010");
}

TEST(SelectedProperties, AreNotEvenSetWhenThereIsNothingToExamine) {
  EngineRun run(dataset().numeric("x", {}), dataset().numeric("x", {}));
  run.options.setVarPropertiesAll();
  const DatasetComparer& comparer = matched(run);
  EXPECT_EQ(selected(comparer), "00000000000");
  EXPECT_EQ(comparer.dictionaryState, DictionaryState::differences);
  EXPECT_EQ(run.messages(), "");
}

TEST(DictionaryStates, FollowFromWhatAgrees) {
  const auto state = [](const DatasetBuilder& compared, bool withProperties) {
    EngineRun run(dataset().numeric("x", {}), compared);
    if (withProperties) run.options.setVarPropertiesAll();
    return matched(run.compare({"x"})).dictionaryState;
  };
  const DatasetBuilder same = dataset().numeric("x", {});
  const DatasetBuilder labelled = dataset().numeric("x", {}, [](data::Variable& x) { x.label = "X"; });
  EXPECT_EQ(state(same, true), DictionaryState::nothingToShow);
  EXPECT_EQ(state(same, false), DictionaryState::nothingToShow);
  EXPECT_EQ(state(labelled, true), DictionaryState::differences);
  EXPECT_EQ(state(labelled, false), DictionaryState::nothingToShow);
  EXPECT_EQ(state(dataset().numeric("y", {}), true), DictionaryState::nothingPaired);
  EXPECT_EQ(state(dataset().numeric("y", {}), false), DictionaryState::nothingPaired);
}

TEST(AttributeNames, AreKeptAsFirstMetAndInOrderWithoutTheHostsOwn) {
  EngineRun run(dataset()
                    .numeric("x", {}, attributes({{"Unit", {"EUR"}}, {"$x", {"1"}}, {"Source", {"a", "b"}}}))
                    .numeric("y", {}, attributes({{"Zone", {"1"}}, {"Source", {"c"}}})),
                dataset()
                    .numeric("x", {}, attributes({{"Area", {"9"}}, {"Unit", {"USD", ""}}}))
                    .numeric("y", {}, attributes({{"$y", {"1"}}})));
  const DatasetComparer& comparer = matched(run.compare({"x", "y"}));
  EXPECT_EQ(comparer.attributeNames, (std::vector<std::string>{"Unit", "Source", "Area", "Zone"}));
  EXPECT_EQ(std::vector<std::string>(comparer.attributeNameSet.begin(), comparer.attributeNameSet.end()),
            (std::vector<std::string>{"Area", "Source", "Unit", "Zone"}));
  const auto& values = comparer.variablePairs[0].attributeValues;
  ASSERT_EQ(values.size(), 3U);
  EXPECT_EQ(values.find("Unit")->second.active, "EUR");
  EXPECT_EQ(values.find("Unit")->second.compare, "USD, ");
  EXPECT_EQ(values.find("Source")->second.active, "a, b");
  EXPECT_EQ(values.find("Source")->second.compare, "");
  EXPECT_EQ(values.find("Area")->second.active, "");
}

TEST(AttributeNames, OfVariablesThatAreNotComparedAreNotCollected) {
  EngineRun run(dataset().numeric("gone", {}, attributes({{"A", {"1"}}})).numeric("kind", {}),
                dataset().text("kind", 2, {}, attributes({{"B", {"1"}}})));
  EXPECT_TRUE(matched(run.compare({"gone", "kind"})).attributeNames.empty());
}

TEST(AttributeValueText, JoinsTheValuesInTheirOrder) {
  EXPECT_EQ(compdatas::attributeValueText({}), "");
  EXPECT_EQ(compdatas::attributeValueText({"a"}), "a");
  EXPECT_EQ(compdatas::attributeValueText({"b", "", "a, c"}), "b, , a, c");
}

}  // namespace
}  // namespace workbench::tests
