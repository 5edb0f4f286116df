#include <gtest/gtest.h>

#include "host/data.h"
#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "workbench/data/working/case_filter.h"
#include "workbench/data/working/dictionary_variable.h"

namespace workbench::data {
namespace {

TEST(DatasourceAttributes, KeepsNamesInTheOrderInWhichTheyWereAdded) {
  DatasourceAttributes attributes;
  attributes.Add("Unit", {"EUR"});
  attributes.Add("Source", {"Q12", "Q13"});
  attributes.Add("Unit", {"USD"});
  ASSERT_EQ(attributes.Size(), 2);
  EXPECT_EQ(attributes.Name(0), "Unit");
  EXPECT_EQ(attributes.Values(0), std::vector<std::string>{"USD"});
  EXPECT_EQ(attributes.Name(1), "Source");
}

TEST(DatasourceAttributes, AreEqualInAnyOrderOfNamesButNotOfValues) {
  DatasourceAttributes first;
  first.Add("a", {"1", "2"});
  first.Add("b", {});
  DatasourceAttributes second;
  second.Add("b", {});
  second.Add("a", {"1", "2"});
  EXPECT_TRUE(first == second);
  second.Add("a", {"2", "1"});
  EXPECT_FALSE(first == second);
}

TEST(DatasourceAttributes, WithANameBeginningWithADollarCountInEquality) {
  DatasourceAttributes plain;
  DatasourceAttributes own;
  own.Add("$host", {"x"});
  EXPECT_FALSE(plain == own);
}

TEST(DatasourceAttributes, AreIndependentCopies) {
  DatasourceAttributes first;
  first.Add("a", {"1"});
  DatasourceAttributes second = first;
  second.Add("a", {"2"});
  EXPECT_EQ(first.Values(0).front(), "1");
  first = DatasourceAttributes();
  EXPECT_EQ(first.Size(), 0);
  EXPECT_EQ(second.Values(0).front(), "2");
}

TEST(ValueLabelMap, WalksNumbersInAscendingOrder) {
  VRIX_ValueLabelMap labels(0);
  labels.Add(10, "ten");
  labels.Add(-1, "minus one");
  labels.Add(2, "two");
  labels.Add(10, "TEN");
  std::string walk;
  double value = 0;
  const std::string* label = nullptr;
  while (labels.GetNextPair(value, label)) walk += fmt::format("{}={} ", value, *label);
  EXPECT_EQ(walk, "-1=minus one 2=two 10=TEN ");
  labels.Reset();
  EXPECT_TRUE(labels.GetNextPair(value, label));
  EXPECT_EQ(value, -1);
}

TEST(ValueLabelMap, TakesNoAccountOfBlanksAtTheEndOfATextValue) {
  VRIX_ValueLabelMap labels(8);
  labels.Add("m   ", "male");
  ASSERT_NE(labels.GetLabel("m"), nullptr);
  EXPECT_EQ(*labels.GetLabel("m     "), "male");
  EXPECT_EQ(labels.GetLabel("mm"), nullptr);
  VRIX_ValueLabelMap wider(16);
  wider.Add("m", "male");
  EXPECT_TRUE(labels == wider);
}

TEST(ValueLabelMap, DiffersByALabelOrByAValue) {
  VRIX_ValueLabelMap first(0);
  first.Add(1, "yes");
  VRIX_ValueLabelMap second(0);
  EXPECT_FALSE(first == second);
  second.Add(1, "Yes");
  EXPECT_FALSE(first == second);
  second.Add(1, "yes");
  EXPECT_TRUE(first == second);
}

TEST(ValueLabelMap, RefusesALabelOfTheOtherKind) {
  VRIX_ValueLabelMap labels(0);
  EXPECT_THROW(labels.Add("x", "label"), ErrorText);
}

TEST(ValueLabelMap, CopiesWithAWalkAndReferencesOfTheirOwn) {
  RefCountPtr<VRIX_ValueLabelMap> labels(new VRIX_ValueLabelMap(0));
  labels->Add(1, "one");
  double value = 0;
  const std::string* label = nullptr;
  EXPECT_TRUE(labels->GetNextPair(value, label));
  RefCountPtr<VRIX_ValueLabelMap> copy(new VRIX_ValueLabelMap(*labels));
  EXPECT_TRUE(copy->GetNextPair(value, label));
  labels = {};
  EXPECT_EQ(*copy->GetLabel(1.0), "one");
}

TEST(DictionaryVariable, GivesItsMissingValuesByTheirCode) {
  Variable range = plainVariable("x", 0);
  range.missing.code = -2;
  range.missing.values[0].number = 7;
  range.missing.values[1].number = 9;
  const DictionaryVariable variable(range, 0, nullptr);
  const OBS *first = nullptr, *second = nullptr, *third = nullptr;
  EXPECT_EQ(variable.GetMissingValues(first, second, third), -2);
  EXPECT_EQ(first->number, 7);
  EXPECT_EQ(second->number, 9);
  EXPECT_EQ(third, nullptr);
}

TEST(DictionaryVariable, HasNoLabelsWhereNoneWereGiven) {
  const DictionaryVariable variable(plainVariable("x", 12), 0, nullptr);
  EXPECT_EQ(variable.GetLabel(), nullptr);
  EXPECT_FALSE(variable.GetValueLabels().IsValid());
  EXPECT_EQ(variable.GetType(), 12);
}

TEST(DictionaryVariable, CannotBeChangedWithoutAnEditor) {
  DictionaryVariable variable(plainVariable("x", 0), 0, nullptr);
  EXPECT_THROW(variable.SetLabel("label"), ErrorText);
  EXPECT_THROW(variable.SetName("y"), ErrorText);
  EXPECT_EQ(variable.GetName(), "x");
}

TEST(DictionaryVariable, IsCopiedWithAllItsProperties) {
  Variable original = plainVariable("town", 10);
  original.label = "Town";
  original.textLabels = {{"G", "Ghent"}, {"L", "Leuven"}};
  original.missing.code = 1;
  std::memcpy(original.missing.values[0].text, "?       ", 8);
  original.displayWidth = 12;
  original.alignment = VRIX_Variable_Enumerations::Alignment::center;
  original.role = VRIX_Variable_Enumerations::Role::split;
  original.attributes.Add("Unit", {"none"});
  const DictionaryVariable variable(original, 0, nullptr);
  const Variable copy = variableLike(variable);
  EXPECT_EQ(copy.name, "town");
  EXPECT_EQ(copy.width, 10);
  EXPECT_EQ(copy.label, "Town");
  EXPECT_EQ(copy.textLabels, original.textLabels);
  EXPECT_EQ(copy.missing.code, 1);
  EXPECT_EQ(copy.missing.values[0].text[0], '?');
  EXPECT_EQ(copy.displayWidth, 12);
  EXPECT_EQ(copy.alignment, original.alignment);
  EXPECT_EQ(copy.role, original.role);
  EXPECT_EQ(copy.format.type, FormatType::text);
  EXPECT_TRUE(copy.attributes == original.attributes);
}

TEST(CaseFilter, HoldsSystemAndUserMissingValuesForMissing) {
  MissingValues values;
  EXPECT_TRUE(isMissing(testing::missing, values));
  EXPECT_FALSE(isMissing(0, values));
  values.code = 2;
  values.values[0].number = 8;
  values.values[1].number = 9;
  values.values[2].number = 1;
  EXPECT_TRUE(isMissing(9, values));
  EXPECT_FALSE(isMissing(1, values));
  values.code = -3;
  EXPECT_TRUE(isMissing(8.5, values));
  EXPECT_TRUE(isMissing(1, values));
  EXPECT_FALSE(isMissing(7, values));
  for (const std::int32_t code : {-4, -1, 4}) {
    values.code = code;
    EXPECT_FALSE(isMissing(8.5, values) || isMissing(8, values)) << code;
  }
}

}  // namespace
}  // namespace workbench::data
