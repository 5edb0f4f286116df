#include "workbench/output/text_rendering.h"

#include <gtest/gtest.h>

#include <cfloat>

#include "tests/output/fakes.h"
#include "workbench/output/text_access.h"

namespace workbench::output {
namespace {

std::string shownOf(const BpCellText& text) { return shown(textOf(text), english()); }

BpDataValue value(const FakeVariable& variable, double number) {
  return {variable, number, BpValueShow::inPrintFormat};
}

TEST(TextRendering, ResolvesOnlyWhatIsToBeTranslated) {
  EXPECT_EQ(shownOf(key("All values in the tw...")), "All values in the two datasets match.");
  EXPECT_EQ(shownOf(plain("All values in the tw...")), "All values in the tw...");
  EXPECT_EQ(shownOf(key("A key that nobody knows")), "A key that nobody knows");
}

TEST(TextRendering, FillsThePatternThatAKeyStandsFor) {
  BpComposite composite("Based on ^1 cases compa...", true);
  composite.Add(count(120));
  composite.Finish();
  EXPECT_EQ(shownOf(composite), "Based on 120 cases compared.");
}

TEST(TextRendering, ShowsAVariableByNameLabelOrBoth) {
  FakeVariable variable("age");
  const auto shownAs = [&](BpVariableShow show) { return shownOf(BpVariable(variable, show)); };
  EXPECT_EQ(shownAs(BpVariableShow::nameAndLabel), "age");
  EXPECT_EQ(shownAs(BpVariableShow::labelElseName), "age");
  variable.labelled("Age in years");
  EXPECT_EQ(shownAs(BpVariableShow::name), "age");
  EXPECT_EQ(shownAs(BpVariableShow::nameAndLabel), "age (Age in years)");
  EXPECT_EQ(shownAs(BpVariableShow::labelElseName), "Age in years");
}

TEST(TextRendering, ShowsAValueInThePrintFormatOfItsVariable) {
  FakeVariable variable("income");
  variable.formatted(FormatType::comma, 12, 2).valueLabel(1234.5, "a label");
  EXPECT_EQ(shownOf(value(variable, 1234.5)), "1,234.50");
  EXPECT_EQ(shown(textOf(value(variable, 1234.5)), english(), {NumberStyle::plain, false}), "1234.50");
  EXPECT_EQ(shownOf(value(variable, -DBL_MAX)), ".");
  EXPECT_EQ(shownOf(BpDataValue(FakeVariable("town", 8), "Ghent   ", BpValueShow::inPrintFormat)), "Ghent");
}

TEST(TextRendering, ShowsTwoValuesInFullThatDifferButWouldReadAlike) {
  FakeVariable variable("income");
  variable.formatted(FormatType::number, 8, 2);
  EXPECT_EQ(shownOf(both(value(variable, 1.001), value(variable, 1.002))), "(1) 1.001\n(2) 1.002");
  EXPECT_EQ(shownOf(both(value(variable, 1.25), value(variable, 1.5))), "(1) 1.25\n(2) 1.50");
  EXPECT_EQ(shownOf(both(value(variable, 1.001), value(variable, 1.001))), "(1) 1.00\n(2) 1.00");
  EXPECT_EQ(shownOf(both(value(variable, 0.0), value(variable, -0.0))), "(1) 0\n(2) -0");
}

TEST(TextRendering, ShowsValuesInFullThatReadAlikeDeepInOneText) {
  FakeVariable variable("income");
  variable.formatted(FormatType::number, 8, 0);
  const auto missingValues = [&](double first, double second) {
    BpComposite list("[%1:, ^1:]1", false);
    list.Sublist();
    list.Add(value(variable, first));
    list.Add(value(variable, second));
    list.EndSublist();
    list.Finish();
    return list;
  };
  EXPECT_EQ(shownOf(both(missingValues(8, 9), missingValues(8, 9.25))), "(1) 8, 9\n(2) 8, 9.25");
}

TEST(TextRendering, TellsMomentsApartAsFarAsItTakes) {
  FakeVariable moment("moment");
  moment.formatted(FormatType::dateTime, 19, 0);
  EXPECT_EQ(shownOf(both(value(moment, 0.25), value(moment, 0))),
            "(1) 1970-01-01T00:00:00.25\n(2) 1970-01-01T00:00:00");
  EXPECT_EQ(shownOf(both(value(moment, 1e-9), value(moment, 2e-9))), "(1) 1e-09\n(2) 2e-09");
  FakeVariable day("day");
  day.formatted(FormatType::date, 10, 0);
  EXPECT_EQ(shownOf(both(value(day, 1), value(day, 1.5))), "(1) 1970-01-02\n(2) 1.5");
}

TEST(TextRendering, ShowsTheTitlesOfCategoriesInFullThatWouldReadAlike) {
  FakeVariable variable("size");
  const Text first = textOf(value(variable, 1));
  const Text second = textOf(value(variable, 1.25));
  const Text third = textOf(value(variable, 2));
  EXPECT_EQ(shownTogether({&first, &second, &third}, english()), (std::vector<std::string>{"1", "1.25", "2"}));
}

TEST(TextRendering, MarksLineBreaksOfDataButNotOfPatterns) {
  const BpComposite composite = both(plain("a\nb"), plain("c"));
  EXPECT_EQ(shown(textOf(composite), english(), {NumberStyle::asFormatted, true}), "(1) a\u240Ab\n(2) c");
}

}  // namespace
}  // namespace workbench::output
