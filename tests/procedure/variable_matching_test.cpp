// Variable matching: which variables are paired, and what is said of the others.
#include <gtest/gtest.h>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"

namespace workbench::tests::variable_matching_test {

const std::string couldNot = "4/2 The following variables could...[%1:, ^1:]1";
const std::string noneMatch = "0/3 The variables do not match in t...\n";
const std::string allEqual = "4/1 All attribute values in the da...\n";
const std::string allValuesEqual = "4/1 All values in the tw...\n";

// The variables that were compared, in their order. Requires: the datasets differ.
std::string compared(const ProcedureRun& run) { return run.categories(keys::byVariables, 0); }

DatasetBuilder abc(double value) { return dataset().numeric("a", {value}).numeric("b", {value}).numeric("c", {value}); }

TEST(VariableMatching, ComparesTheNamedVariablesInTheOrderOfTheActiveDictionary) {
  ProcedureRun run(abc(1), dataset().numeric("c", {2}).numeric("a", {2}).numeric("b", {2}));
  EXPECT_EQ(compared(run.run("/COMPDATASET=b /VARIABLES=c a")), "a c");
  EXPECT_EQ(compared(run.run("/COMPDATASET=b /VARIABLES=ALL /SAVE FLAGMISMATCHES=NO")), "a b c");
}

TEST(VariableMatching, ComparesACaseIdThatWasNotNamed) {
  ProcedureRun run(dataset().numeric("x", {1}).numeric("id", {5}), dataset().numeric("x", {2}).numeric("id", {5}));
  EXPECT_EQ(compared(run.run("/COMPDATASET=b /VARIABLES=x /CASEID=id")), "x id");
}

TEST(VariableMatching, ComparesACaseIdThatWasNamedOnce) {
  ProcedureRun run(dataset().numeric("id", {5}).numeric("x", {1}), dataset().numeric("x", {2}).numeric("id", {5}));
  EXPECT_EQ(compared(run.run("/COMPDATASET=b /VARIABLES=x id /CASEID=id")), "id x");
}

TEST(VariableMatching, NamesAVariableThatTheComparisonDatasetDoesNotHold) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}).numeric("c", {1}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), couldNot + "{[b]}\n" + allValuesEqual);
}

TEST(VariableMatching, NamesAVariableThatIsANumberHereAndATextThere) {
  ProcedureRun run(dataset().numeric("a", {1}).text("b", 3, {"1"}).numeric("c", {1}),
                   dataset().numeric("a", {1}).numeric("b", {1}).text("c", 3, {"1"}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), couldNot + "{[b|c]}\n" + allValuesEqual);
  EXPECT_EQ(run.outcome(), "completed");
  EXPECT_EQ(run.values("CasesCompare"), "0");
}

TEST(VariableMatching, NamesFirstWhatTheActiveDatasetDoesNotHold) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}).numeric("zebra", {1}));
  run.run("/COMPDATASET=b /VARIABLES=zebra c a Yak b");
  EXPECT_EQ(run.messages(), couldNot + "{[zebra|Yak|b|c]}\n" + allValuesEqual);
}

TEST(VariableMatching, PassesThePatternToBeResolvedAndTheNamesAsTheyStand) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}));
  run.run("/COMPDATASET=b /VARIABLES=a b nobody");
  const auto* message = std::get_if<output::Message>(&run.command().items[1]);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(exact(message->text), "The following variables could...[%1:, ^1:]1{[\"nobody\"|\"b\"]}");
}

TEST(VariableMatching, SaysNothingOfVariablesThatOnlyTheComparisonDatasetHolds) {
  ProcedureRun run(dataset().numeric("a", {1}), abc(1));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.messages(), allValuesEqual);
}

TEST(VariableMatching, SaysThatNoVariableMatchesWhenNoneCanBeCompared) {
  ProcedureRun names(abc(1), dataset().numeric("x", {1}));
  EXPECT_EQ(names.run("/COMPDATASET=b /VARIABLES=ALL").messages(), noneMatch + allValuesEqual);
  ProcedureRun types(dataset().numeric("a", {1}), dataset().text("a", 1, {"1"}));
  EXPECT_EQ(types.run("/COMPDATASET=b /VARIABLES=ALL").messages(), noneMatch + allValuesEqual);
}

TEST(VariableMatching, SaysThatNoVariableMatchesWhenOnlyUnknownOnesWereNamed) {
  ProcedureRun run(abc(1), abc(1));
  EXPECT_EQ(run.run("/COMPDATASET=b /VARIABLES=nobody noone").messages(), noneMatch + allValuesEqual);
}

TEST(VariableMatching, DoesNotSaySoWhenACaseIdIsLeftToCompare) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}));
  EXPECT_EQ(run.run("/COMPDATASET=b /VARIABLES=b /CASEID=a").messages(), couldNot + "{[b]}\n" + allValuesEqual);
}

TEST(VariableMatching, FindsNamesWithoutRegardToCaseAndShowsTheActiveOnes) {
  ProcedureRun run(dataset().numeric("Age", {1}), dataset().numeric("AGE", {2}));
  EXPECT_EQ(compared(run.run("/COMPDATASET=b /VARIABLES=age")), "Age");
}

TEST(VariableMatching, PairsTextsOfAnyTwoWidths) {
  ProcedureRun run(dataset().text("t", 8, {"same", "same"}), dataset().text("t", 20, {"same", "same but more"}));
  EXPECT_EQ(run.run("/COMPDATASET=b /VARIABLES=t").values("CasesCompare"), "0 1");
}

TEST(VariableMatching, WritesNoDictionaryTableWhenNoVariableMatches) {
  ProcedureRun run(abc(1), dataset().numeric("x", {1}));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=ALL");
  EXPECT_EQ(run.messages(), noneMatch + allValuesEqual);
  EXPECT_EQ(run.table(keys::dictionary), nullptr);
  EXPECT_EQ(run.table(keys::valueLabels), nullptr);
}

TEST(ClosingChecks, SayThatAllSelectedPropertiesAgreeOnce) {
  ProcedureRun run(abc(1), abc(1));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=ALL");
  EXPECT_EQ(run.messages(), allEqual + allValuesEqual);
  EXPECT_EQ(run.table(keys::dictionary), nullptr);
  EXPECT_EQ(run.table(keys::valueLabels), nullptr);
}

TEST(ClosingChecks, SaySoAlsoBesideVariablesWithoutPartner) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}).numeric("b", {1}));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=LABEL");
  EXPECT_EQ(run.messages(), couldNot + "{[c]}\n" + allEqual + allValuesEqual);
}

TEST(ClosingChecks, SayNothingOfPropertiesWhenNoneWereAskedFor) {
  for (const char* output : {"", " /OUTPUT VARPROPERTIES=NONE", " /OUTPUT CASETABLE=YES"}) {
    ProcedureRun run(abc(1), abc(1));
    run.run(std::string("/COMPDATASET=b /VARIABLES=ALL") + output);
    EXPECT_EQ(run.messages(), allValuesEqual);
    EXPECT_EQ(run.table(keys::dictionary), nullptr);
  }
}

TEST(ClosingChecks, SayNothingWhenOneOfManyVariablesDiffers) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}).numeric("b", {1}).numeric(
                               "c", {1}, [](data::Variable& c) { c.label = "The third"; }));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=LABEL");
  EXPECT_EQ(run.messages(), allValuesEqual);
  EXPECT_NE(run.table(keys::dictionary), nullptr);
}

TEST(ClosingChecks, CountACaseIdsPropertiesToo) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}, [](data::Variable& a) { a.label = "ID"; }).numeric("b", {1}));
  run.run("/COMPDATASET=b /VARIABLES=b /CASEID=a /OUTPUT VARPROPERTIES=LABEL");
  EXPECT_EQ(run.messages(), allValuesEqual);
  EXPECT_EQ(run.categories(keys::dictionary, 0), "a b");
}

TEST(ClosingChecks, CountNoVariableWithoutPartnerAsDifferent) {
  ProcedureRun run(abc(1), dataset().numeric("a", {1}).text("b", 4, {"x"}));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=ALL");
  EXPECT_EQ(run.messages(), couldNot + "{[b|c]}\n" + allEqual + allValuesEqual);
  EXPECT_EQ(run.table(keys::dictionary), nullptr);
}

}  // namespace workbench::tests::variable_matching_test
