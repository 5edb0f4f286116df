#include "tests/model/naive_case_tables.h"

#include <algorithm>

#include "tests/model/cell_text.h"
#include "tests/model/table.h"

namespace workbench::tests::model {

namespace {

std::string share(std::size_t part, std::size_t whole) {
  return percentage(whole == 0 ? 0 : static_cast<double>(part) * 100.0 / static_cast<double>(whole));
}

}  // namespace

std::string matchedSummary(const WalkedCases& walked, bool isFilled) {
  Table table("CD_MatchedSummaryTableName", "Matched Summary");
  if (!isFilled) return table.text();
  table.addDimension("CD_Results", "(0,1,false,false)");
  table.addDimension("CD_Statistics", "(0,1,false,false)");
  table.addDimension("CD_Dataset", "(1,2,true,false)");
  const auto row = [&](const std::string& what, const std::string& statistic, const std::string& active,
                       const std::string& compared) {
    table.write({{what}, {statistic}, {"CD_Datasets", "CD_Active"}}, active);
    table.write({{what}, {statistic}, {"CD_Datasets", "CD_Comparison"}}, compared);
  };
  const std::size_t active = walked.activeRead;
  const std::size_t compared = walked.comparedRead;
  const std::size_t pairs = walked.pairs();
  row("CD_Cases", "CD_Count", count(active), count(compared));
  row("CD_CasesCompared", "CD_Count", count(pairs), count(pairs));
  row("CD_CasesCompared", "CD_Percent", share(pairs, active), share(pairs, compared));
  row("CD_CasesNotCompared", "CD_Count", count(active - pairs), count(compared - pairs));
  row("CD_CasesNotCompared", "CD_Percent", share(active - pairs, active), share(compared - pairs, compared));
  return table.text();
}

std::string mismatchedByCases(const WalkedCases& walked, bool isFilled) {
  Table table("CD_MismatchedByCasesTableName", "Mismatched By Cases");
  if (!isFilled) return table.text();
  table.addDimension("CD_Results", "(0,1,false,false)");
  table.addDimension("CD_Statistics", "(0,1,false,false)");
  const std::size_t mismatched = walked.mismatched.size();
  table.write({{"CD_CasesCompared"}, {"CD_Count"}}, count(walked.pairs()));
  table.write({{"CD_CasesContainingMismatches"}, {"CD_Count"}}, count(mismatched));
  table.write({{"CD_CasesContainingMismatches"}, {"CD_Percent"}}, share(mismatched, walked.pairs()));
  return table.text();
}

std::string mismatchedByVariables(const World& world, const std::vector<ComparedVariable>& variables,
                                  const WalkedCases& walked, bool isFilled) {
  Table table("CD_MismatchedByVarsTableName", "Mismatched By Variables");
  if (!isFilled) return table.text();
  table.setLeastColumnWidth(70);
  table.addDimension("CD_Variables", "(0,1,false,false)");
  table.addDimension("CD_Mismatched", "(1,1,false,false)");
  table.nameCategory(1, {"CD_Count"});
  table.noteCategory(1, {"CD_Percent"}, keyedComposite("Based on ^1 cases compa...", {count(walked.pairs())}));
  for (const ComparedVariable& variable : variables) {
    const std::string row = variableText(world.active.variables[variable.active]);
    table.write({{row}, {"CD_Count"}}, count(variable.mismatches));
    table.write({{row}, {"CD_Percent"}}, share(variable.mismatches, walked.pairs()));
  }
  return table.text();
}

std::string caseByCase(const World& world, const Options& options, const std::vector<CaseIdPlace>& ids,
                       const std::vector<ComparedVariable>& variables, const WalkedCases& walked) {
  Table table("CD_CaseByCaseComparisonTableName", "Case By Case Comparison");
  table.addDimension("CD_Cases", "(1,1,true,false)");
  table.addDimension("CD_Results", "(0,1,true,true)");
  table.nameGroup(0, {"CD_CaseID"});
  table.nameGroup(0, {"CD_Row"});
  const std::size_t mismatched = walked.mismatched.size();
  const std::size_t shown = std::min(mismatched, options.limit.value_or(mismatched));
  for (std::size_t number = 0; number < shown; ++number) {
    const ShownCase& one = walked.mismatched[number];
    const Path result = {count(number)};
    const Case& active = world.active.cases[one.active];
    const Case& compared = world.compared.cases[one.compared];
    for (const CaseIdPlace& id : ids) {
      const Variable& variable = world.active.variables[id.active];
      table.write({{"CD_CaseID", plain(variable.name)}, result}, valueText(variable, active[id.active]));
    }
    table.write({{"CD_Row", "CD_Active"}, result}, count(one.activeRow));
    table.write({{"CD_Row", "CD_Compare"}, result}, count(one.comparedRow));
    for (std::size_t place = 0; place < variables.size(); ++place) {
      if (variables[place].isCaseId) continue;
      const Variable& here = world.active.variables[variables[place].active];
      const Variable& there = world.compared.variables[variables[place].compared];
      const std::string both = bothSides(valueText(here, active[variables[place].active]),
                                         valueText(there, compared[variables[place].compared]));
      table.write({{variableText(here)}, result}, one.agrees[place] ? plain("") : both);
    }
  }
  const bool isLimited = options.limit && shown == *options.limit;
  table.setCaption(isLimited ? composite("^1\n^2", {sidesCaption, keyedComposite("Displaying the first ...",
                                                                                 {count(shown), count(mismatched)})})
                             : sidesCaption);
  return table.text();
}

}  // namespace workbench::tests::model
