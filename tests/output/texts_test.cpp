// The texts of host/output.h: what they keep of what was passed, and when.
#include <gtest/gtest.h>

#include <cfloat>

#include "host/messages.h"
#include "tests/output/fakes.h"
#include "workbench/output/text_access.h"

namespace workbench::output {
namespace {

TEST(CellTexts, KeepAKeyToTheLetter) {
  const BpString passed("All values in the tw...", true);
  const auto& text = std::get<StringText>(textOf(passed).held);
  EXPECT_EQ(text.key, "All values in the tw...");
  EXPECT_TRUE(text.translate);
}

TEST(CellTexts, TakeFromAVariableWhatItIsAtTheCall) {
  FakeVariable variable("age");
  variable.labelled("Age in years").formatted(FormatType::number, 8, 2).valueLabel(1, "One");
  const BpVariable name(variable, BpVariableShow::nameAndLabel);
  const BpDataValue value(variable, 1, BpValueShow::inPrintFormat);
  variable.labelled("changed").formatted(FormatType::date, 10, 0).valueLabel(1, "changed");
  variable.SetName("changed");

  EXPECT_EQ(std::get<VariableText>(textOf(name).held).name, "age");
  EXPECT_EQ(std::get<VariableText>(textOf(name).held).label, "Age in years");
  const auto& kept = std::get<ValueText>(textOf(value).held);
  EXPECT_EQ(kept.variable->name, "age");
  EXPECT_EQ(kept.variable->format, FormatType::number);
  EXPECT_EQ(kept.variable->decimals, 2);
  EXPECT_EQ(kept.label, "One");
}

TEST(CellTexts, OfOneVariableShareWhatTheyNeedOfIt) {
  FakeVariable variable("age");
  const BpDataValue first(variable, 1, BpValueShow::inPrintFormat);
  const BpDataValue second(variable, 2, BpValueShow::inPrintFormat);
  variable.formatted(FormatType::date, 10, 0);
  const BpDataValue changed(variable, 3, BpValueShow::inPrintFormat);

  const auto variableOf = [](const BpCellText& text) { return std::get<ValueText>(textOf(text).held).variable; };
  EXPECT_EQ(variableOf(first), variableOf(second));
  EXPECT_NE(variableOf(first), variableOf(changed));
}

TEST(CellTexts, FindTheLabelOfATextWhateverItsTrailingBlanks) {
  FakeVariable town("town", 8);
  town.valueLabel("Gh", "Ghent");
  const BpDataValue value(town, "Gh      ", BpValueShow::inPrintFormat);
  const auto& kept = std::get<ValueText>(textOf(value).held);
  EXPECT_EQ(std::get<std::string>(kept.value), "Gh");
  EXPECT_EQ(kept.label, "Ghent");
}

TEST(CellTexts, KeepAVariableWithoutALabelWithoutOne) {
  const FakeVariable variable("age");
  const BpVariable text(variable, BpVariableShow::nameAndLabel);
  EXPECT_FALSE(std::get<VariableText>(textOf(text).held).label.has_value());
}

TEST(CellTexts, AreReplicatedAsWhatTheyAre) {
  FakeVariable variable("age");
  const BpDataValue value(variable, 41, BpValueShow::inPrintFormat);
  EXPECT_NE(dynamic_cast<BpString*>(plain("a").Replicate().get()), nullptr);
  EXPECT_NE(dynamic_cast<BpNumber*>(count(1).Replicate().get()), nullptr);
  EXPECT_NE(dynamic_cast<BpVariable*>(BpVariable(variable, BpVariableShow::name).Replicate().get()), nullptr);
  EXPECT_NE(dynamic_cast<BpDataValue*>(value.Replicate().get()), nullptr);
  const std::unique_ptr<BpCellText> copy = both(count(1), count(2)).Replicate();
  EXPECT_NE(dynamic_cast<BpComposite*>(copy.get()), nullptr);
  EXPECT_EQ(std::get<CompositeText>(textOf(*copy).held).items.size(), 2U);
}

TEST(Composite, KeepsItemsAndSublistsInTheirOrder) {
  BpComposite composite("^1: [%1:, ^1:]2", false);
  composite.Add(plain("towns"));
  composite.Sublist();
  composite.Add(plain("Ghent"));
  composite.Add(plain("Delft"));
  composite.EndSublist();
  composite.Finish();
  const auto& kept = std::get<CompositeText>(textOf(composite).held);
  ASSERT_EQ(kept.items.size(), 2U);
  EXPECT_EQ(std::get<ListText>(kept.items[1].held).items.size(), 2U);
}

TEST(Composite, IsRefusedBeforeItIsFinished) {
  const RunningCommand command;
  BpComposite open("^1", false);
  EXPECT_EQ(refusal([&] { textOf(open); }),
            "The composite text \"^1\" was used before it was finished: call Finish first.");
  EXPECT_THROW(open.Replicate(), ErrorText);
  BpComposite outer("^1", false);
  EXPECT_THROW(outer.Add(open), ErrorText);
  open.Finish();
  EXPECT_NO_THROW(outer.Add(open));
}

TEST(Composite, RefusesCallsOutOfTheirOrder) {
  BpComposite composite("^1", false);
  EXPECT_THROW(composite.EndSublist(), ErrorText);
  composite.Sublist();
  EXPECT_THROW(composite.Sublist(), ErrorText);
  EXPECT_THROW(composite.Finish(), ErrorText);
  composite.EndSublist();
  composite.Finish();
  EXPECT_THROW(composite.Add(plain("late")), ErrorText);
  EXPECT_THROW(composite.Sublist(), ErrorText);
  EXPECT_THROW(composite.Finish(), ErrorText);
}

}  // namespace
}  // namespace workbench::output
