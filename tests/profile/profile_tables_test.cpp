// What the tables of a profile hold.
#include <gtest/gtest.h>

#include "tests/procedure/table_text.h"
#include "tests/profile/profile_run.h"
#include "workbench/output/text_rendering.h"

namespace workbench::tests::profile_tables_test {

using data::Variable;

const std::string byId = "/COMPDATASET=b /VARIABLES=ALL /CASEID=id";

DatasetBuilder active() {
  return dataset()
      .numeric("id", {1, 2, 3, 5, 6})
      .numeric("x", {10, 20, missing, 40, 50})
      .text("town", 8, {"Ghent", "Mons", "", "Lund", "Delft"});
}
DatasetBuilder compared() {
  return dataset()
      .numeric("id", {1, 2, 3, 4, 5})
      .numeric("x", {11, 17, 1, 2, missing})
      .text("town", 8, {"Gent", "Mons", "Ghent", "Lund", "Lund"});
}

TEST(Profile, CountsPairedAndUnpairedCases) {
  ProfileRun run(active(), compared());
  run.run(byId);
  EXPECT_EQ(cellsOf(run.table(keys::pairedCases)),
            "PD_CasesPaired|PD_Count = 4\n"
            "PD_CasesAgreeing|PD_Count = 0\n"
            "PD_CasesAgreeing|PD_Percent = 0%\n"
            "PD_CasesDiffering|PD_Count = 4\n"
            "PD_CasesDiffering|PD_Percent = 100%\n"
            "PD_OnlyInActive|PD_Count = 1\n"
            "PD_OnlyInComparison|PD_Count = 1\n");
}

TEST(Profile, TellsTheAgreementOverallAndByVariableWithoutTheCaseIds) {
  ProfileRun run(active(), compared());
  run.run(byId);
  EXPECT_EQ(cellsOf(run.table(keys::agreement)),
            "PD_AllVariables|PD_ValuesCompared = 8\n"
            "PD_AllVariables|PD_ValuesAgreeing = 2\n"
            "PD_AllVariables|PD_ValuesDiffering = 6\n"
            "PD_AllVariables|PD_Agreement = 25%\n"
            "<x>|PD_ValuesCompared = 4\n"
            "<x>|PD_ValuesAgreeing = 0\n"
            "<x>|PD_ValuesDiffering = 4\n"
            "<x>|PD_Agreement = 0%\n"
            "<town>|PD_ValuesCompared = 4\n"
            "<town>|PD_ValuesAgreeing = 2\n"
            "<town>|PD_ValuesDiffering = 2\n"
            "<town>|PD_Agreement = 50%\n");
}

TEST(Profile, TakesDifferencesOfValidValuesOnlyAndNamesTheCaseOfTheLargest) {
  ProfileRun run(active(), compared());
  run.run(byId);
  EXPECT_EQ(cellsOf(run.table(keys::differences)),
            "<x>|PD_PairsCompared = 2\n"
            "<x>|PD_PairsDiffering = 2\n"
            "<x>|PD_Mean = x:-1\n"
            "<x>|PD_MeanAbsolute = x:2\n"
            "<x>|PD_Difference = x:-3\n"
            "<x>|<id,1> = id:2\n"
            "<x>|PD_MissingInActive = 1\n"
            "<x>|PD_MissingInComparison = 1\n"
            "<x>|PD_MissingInBoth = 0\n");
}

TEST(Profile, NamesTheRowOfTheLargestDifferenceWithoutCaseIds) {
  ProfileRun run(dataset().numeric("x", {1, 1, 1}), dataset().numeric("x", {1, 4, -2}));
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_Difference"}), "3");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_Row"}), "2");
}

TEST(Profile, CountsUserMissingValuesAsMissingOnTheirSide) {
  const DatasetBuilder::Change nineIsMissing = [](Variable& variable) {
    variable.missing.code = 1;
    variable.missing.values[0].number = 9;
  };
  ProfileRun run(dataset().numeric("x", {9, 9, 1, missing}, nineIsMissing), dataset().numeric("x", {9, 1, 2, missing}));
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_MissingInActive"}), "2");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_MissingInBoth"}), "1");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_PairsCompared"}), "1");
  EXPECT_EQ(run.cell(keys::agreement, {"x", "PD_ValuesAgreeing"}), "2");
}

TEST(Profile, TakesNearNumbersForEqualWhereAComparisonDoes) {
  const DatasetBuilder::Change asDate = [](Variable& variable) { variable.format = {FormatType::dateTime, 20, 0}; };
  const double near = 1e9 * (1 + 1e-14);
  ProfileRun run(dataset().numeric("x", {1e9}).numeric("when", {1e9}, asDate),
                 dataset().numeric("x", {near}).numeric("when", {near}, asDate));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_PairsDiffering"}), "0");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_MeanAbsolute"}), "0");
  EXPECT_EQ(run.cell(keys::differences, {"when", "PD_PairsDiffering"}), "1");
}

TEST(Profile, SaysInWhatDifferencesOfDatesAndTimesAreMeasured) {
  const DatasetBuilder::Change asDate = [](Variable& variable) { variable.format = {FormatType::date, 10, 0}; };
  ProfileRun run(dataset().numeric("day", {20000}, asDate), dataset().numeric("day", {20001}, asDate));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_NE(captionOf(run.table(keys::differences)).find("in days"), std::string::npos);
  ProfileRun plain(dataset().numeric("x", {1}), dataset().numeric("x", {2}));
  plain.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(captionOf(plain.table(keys::differences)).find("in days"), std::string::npos);
}

TEST(Profile, TakesNoDifferenceOfDurationsWhoseMonthsHaveNoFixedLength) {
  const DatasetBuilder::Change asDuration = [](Variable& variable) { variable.format = {FormatType::duration, 10, 0}; };
  ProfileRun run(dataset().numeric("d", {60}, asDuration), dataset().numeric("d", {61}, asDuration));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(cellsOf(run.table(keys::differences)), "");
  EXPECT_EQ(run.cell(keys::agreement, {"d", "PD_ValuesDiffering"}), "1");
}

std::string changesIn(const ProcedureRun& run) {
  const output::Table* table = run.table(keys::changes);
  std::string all;
  for (std::size_t cell = 0; cell < table->cells.size(); cell += 2) {
    const auto& nodes = table->dimensions[0].nodes;
    const auto& category = nodes[static_cast<std::size_t>(table->at(cell)[0])];
    all += output::shown(category.title, text::wordingInForce()) + ", " +
           output::shown(*table->cells[cell].content, text::wordingInForce()) + "\n";
  }
  return all;
}

TEST(Profile, ListsTheMostFrequentChangesOfEveryVariable) {
  ProfileRun run(dataset().numeric("x", {2, 2, 2, 1, missing}).text("t", 4, {"a", "a", "", "b", "b"}),
                 dataset().numeric("x", {3, 3, 1, 1, 7}).text("t", 6, {"abcdef", "a", "c", "", "b"}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(changesIn(run),
            "2 \xE2\x86\x92 3, 2\n"
            ". \xE2\x86\x92 7, 1\n"
            "2 \xE2\x86\x92 1, 1\n"
            "(blank) \xE2\x86\x92 c, 1\n"
            "a \xE2\x86\x92 abcdef, 1\n"
            "b \xE2\x86\x92 (blank), 1\n");
}

TEST(Profile, ShowsChangesWithTheValueLabelsOfTheirSides) {
  ProfileRun run(dataset().numeric("sex", {1}, [](Variable& v) { v.numberLabels = {{1.0, "male"}}; }),
                 dataset().numeric("sex", {2}, [](Variable& v) { v.numberLabels = {{2.0, "woman"}}; }));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(changesIn(run), "1 (male) \xE2\x86\x92 2 (woman), 1\n");
}

TEST(Profile, SumsTheChangesThatAreNotListed) {
  ProfileRun run(dataset().numeric("x", {1, 1, 2, 3, 4}), dataset().numeric("x", {9, 9, 8, 8, 8}));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT CHANGES=1");
  EXPECT_EQ(changesIn(run), "1 \xE2\x86\x92 9, 2\nOther changes, 3\n");
}

TEST(Profile, TellsHowManyChangesWereNotKept) {
  std::vector<double> zeros(10'002, 0.0);
  std::vector<double> numbers;
  for (double number = 1; numbers.size() < zeros.size(); ++number) numbers.push_back(number);
  ProfileRun run(dataset().numeric("x", zeros), dataset().numeric("x", numbers));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT CHANGES=1");
  const output::Table* table = run.table(keys::changes);
  ASSERT_EQ(table->footnotes.size(), 1U);
  EXPECT_TRUE(passed(table->footnotes[0]).ends_with("{2}")) << passed(table->footnotes[0]);
}

TEST(Profile, ShowsADifferenceThatHasTheBitsOfNoValueAsTheNumberBesideIt) {
  ProfileRun run(dataset().numeric("x", {DBL_MAX}), dataset().numeric("x", {0}));
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_Difference"}), "-1.7976931348623155e+308");
  EXPECT_EQ(run.cell(keys::differences, {"x", "PD_Mean"}), "-1.7976931348623155e+308");
}

TEST(Profile, UsesTheFilterOfTheActiveDataset) {
  ProfileRun run(dataset().numeric("f", {1, 0, 1}).numeric("x", {1, 2, 3}).with([](data::Dictionary& dictionary) {
    dictionary.filter = 0;
  }),
                 dataset().numeric("x", {1, 3}));
  run.run("/COMPDATASET=b /VARIABLES=x");
  EXPECT_EQ(run.cell(keys::pairedCases, {"PD_CasesPaired", "PD_Count"}), "2");
  EXPECT_EQ(run.cell(keys::pairedCases, {"PD_CasesDiffering", "PD_Count"}), "0");
}

}  // namespace workbench::tests::profile_tables_test
