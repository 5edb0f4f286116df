#include <fmt/format.h>
#include <gtest/gtest.h>

#include "host/parser.h"
#include "tests/language/named_variables.h"
#include "tests/language/sample_grammar.h"
#include "workbench/language/tokens.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"

namespace workbench::language {
namespace {

// The indexes of a list over the variables id, age, Größe, first name, Z; or "column: what is wrong".
std::string listed(std::string_view list, bool mayBeNew = false, std::string_view toBeginWith = "") {
  static const CommandDescriptor grammar = compareGrammar();
  const auto source = namedVariables({"id", "age", "Größe", "first name", "Z"});
  output::Command document;
  currentRun().command = &document;
  VarSpecObj variables(toBeginWith, "VARIABLES", grammar, *source, mayBeNew);
  const bool isValid = variables.ValidateVariables(tokensOf(list), RepeatVarOptions::refuse);
  currentRun().command = nullptr;
  if (!isValid) {
    const auto& message = std::get<output::Message>(document.items.at(0));
    EXPECT_EQ(message.source, output::Message::Source::parser);
    EXPECT_EQ(document.items.size(), 1U);
    EXPECT_TRUE(variables.GetValidVarList().empty());
    return fmt::format("{}: {}", message.column.value_or(0), std::get<output::StringText>(message.text.held).key);
  }
  EXPECT_TRUE(document.items.empty());
  return fmt::format("{}", fmt::join(variables.GetValidVarList(), " "));
}

TEST(VariableList, NamesVariablesInTheOrderWritten) {
  EXPECT_EQ(listed("Z id"), "4 0");
  EXPECT_EQ(listed("AGE, GRÖßE"), "1 2");
  EXPECT_EQ(listed("'first name' \"id\""), "3 0");
}

TEST(VariableList, MayBeEmpty) { EXPECT_EQ(listed(""), ""); }

TEST(VariableList, ExpandsARangeInTheOrderOfTheDictionary) {
  EXPECT_EQ(listed("age TO 'first name' id"), "1 2 3 0");
  EXPECT_EQ(listed("id to id"), "0");
}

TEST(VariableList, ExpandsAll) { EXPECT_EQ(listed("all"), "0 1 2 3 4"); }

TEST(VariableList, RefusesAVariableThatIsNamedTwice) {
  EXPECT_EQ(listed("id age ID"), "8: COMPARE DATASETS, VARIABLES: the variable id is named twice.");
  EXPECT_EQ(listed("age ALL"), "5: COMPARE DATASETS, VARIABLES: the variable age is named twice.");
  EXPECT_EQ(listed("ALL ALL"), "5: COMPARE DATASETS, VARIABLES: the variable id is named twice.");
  EXPECT_EQ(listed("age id TO Z"), "5: COMPARE DATASETS, VARIABLES: the variable age is named twice.");
}

TEST(VariableList, RefusesAnUnknownVariableAndNamesTheNearestOne) {
  EXPECT_EQ(listed("id agee"),
            "4: COMPARE DATASETS, VARIABLES: there is no variable agee in the active dataset. Did you mean age?");
  EXPECT_EQ(listed("id TO q"), "7: COMPARE DATASETS, VARIABLES: there is no variable q in the active dataset.");
  EXPECT_EQ(listed("5"), "1: COMPARE DATASETS, VARIABLES: there is no variable 5 in the active dataset.");
}

TEST(VariableList, RefusesToWithoutANameOnEitherSide) {
  const std::string before = ": COMPARE DATASETS, VARIABLES: TO stands between the names of two variables; ";
  EXPECT_EQ(listed("TO age"), "1" + before + "there is none before it.");
  EXPECT_EQ(listed("id TO age TO Z"), "11" + before + "there is none before it.");
  EXPECT_EQ(listed("id TO"), "4" + before + "there is none behind it.");
  EXPECT_EQ(listed("id TO ALL"), "4" + before + "there is none behind it.");
  EXPECT_EQ(listed("id TO /"), "4" + before + "there is none behind it.");
  EXPECT_EQ(listed("ALL TO id"), "1" + before + "ALL is none.");
}

TEST(VariableList, RefusesARangeThatRunsBackwards) {
  EXPECT_EQ(listed("Z TO age"),
            "6: COMPARE DATASETS, VARIABLES: age stands before Z in the dataset; a range names the earlier variable "
            "first.");
}

TEST(VariableList, RefusesMarksAndStrayCommas) {
  EXPECT_EQ(listed("id + age"), "4: COMPARE DATASETS, VARIABLES: found +, expected the name of a variable.");
  EXPECT_EQ(listed("id,, age"), "4: COMPARE DATASETS, VARIABLES: a comma stands only between two names.");
  EXPECT_EQ(listed(", id"), "1: COMPARE DATASETS, VARIABLES: a comma stands only between two names.");
  EXPECT_EQ(listed("id,"), "3: COMPARE DATASETS, VARIABLES: a comma stands only between two names.");
}

TEST(VariableList, MayNameNewVariablesWhereThatIsAllowed) {
  EXPECT_EQ(listed("id brand_new", true), "0 -1");
  EXPECT_EQ(listed("x X", true), "3: COMPARE DATASETS, VARIABLES: the variable X is named twice.");
  EXPECT_EQ(listed("id TO x", true), "7: COMPARE DATASETS, VARIABLES: there is no variable x in the active dataset.");
}

TEST(VariableList, StartsWithTheListThatItWasMadeWith) { EXPECT_EQ(listed("age", false, "Z id"), "4 0 1"); }

}  // namespace
}  // namespace workbench::language
