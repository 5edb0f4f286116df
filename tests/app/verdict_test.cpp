// The verdict and the answer: read from what a comparison issued, and never "same" on a guess.
#include "workbench/app/verdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "workbench/output/phrase.h"

namespace workbench::app {
namespace {

using output::Command;
using output::Table;
using output::Text;
using output::Verdict;

Text key(const std::string& text) { return Text{output::StringText{text, true}}; }

output::Dimension dimension(const std::vector<std::string>& leaves) {
  output::Dimension made;
  made.title = key("dimension");
  output::Category root;
  root.isGroup = true;
  made.nodes.push_back(root);
  for (const std::string& leaf : leaves) {
    output::Category category;
    category.title = key(leaf);
    made.nodes[0].children.push_back(static_cast<std::int32_t>(made.nodes.size()));
    made.nodes.push_back(category);
  }
  return made;
}

// A comparison that completed, with what a test adds.
struct Issued {
  Issued() {
    command.name = "COMPARE DATASETS";
    command.procedureTitle = "Compare Datasets";
  }
  Table& table(const std::string& tableKey, std::vector<output::Dimension> dimensions) {
    auto made = std::make_unique<Table>();
    made->title = key(tableKey);
    made->dimensions = std::move(dimensions);
    Table& reference = *made;
    command.items.emplace_back(std::move(made));
    return reference;
  }
  static void cell(Table& table, const std::vector<std::int32_t>& at, Text content) {
    output::Cell made;
    made.content = std::make_shared<const Text>(std::move(content));
    table.cells.push_back(made);
    table.addresses.insert(table.addresses.end(), at.begin(), at.end());
  }
  static void count(Table& table, const std::vector<std::int32_t>& at, double number) {
    cell(table, at, Text{output::NumberText{number, BpFormat::count}});
  }
  // Of 5 cases in either dataset, but for those that only one of them has.
  void matchedSummary(double onlyActive, double onlyComparison = 0) {
    Table& made = table("CD_MatchedSummaryTableName",
                        {dimension({"CD_Cases", "CD_CasesCompared"}), dimension({"CD_Count", "CD_Percent"}),
                         dimension({"CD_Active", "CD_Comparison"})});
    count(made, {1, 1, 1}, 5 + onlyActive);
    count(made, {1, 1, 2}, 5 + onlyComparison);
    for (const std::int32_t side : {1, 2}) {
      count(made, {2, 1, side}, 5);
      count(made, {2, 2, side}, 100);
    }
  }
  void mismatches(double cases) {
    Table& made = table("CD_MismatchedByCasesTableName",
                        {dimension({"CD_CasesCompared", "CD_CasesContainingMismatches"}), dimension({"CD_Count"})});
    count(made, {1, 1}, 5);
    count(made, {2, 1}, cases);
  }
  void mismatchesByVariable(const std::vector<double>& counts) {
    std::vector<std::string> names;
    for (std::size_t variable = 0; variable < counts.size(); ++variable)
      names.push_back(std::string(1, 'a' + static_cast<char>(variable)));
    Table& made = table("CD_MismatchedByVarsTableName", {dimension(names), dimension({"CD_Count", "CD_Percent"})});
    for (std::size_t variable = 0; variable < counts.size(); ++variable) {
      count(made, {static_cast<std::int32_t>(variable) + 1, 1}, counts[variable]);
      count(made, {static_cast<std::int32_t>(variable) + 1, 2}, counts[variable] * 20);
    }
  }
  // Their rows in the active dataset.
  void listedCases(const std::vector<double>& rows) {
    std::vector<std::string> results(rows.size(), "case");
    Table& made =
        table("CD_CaseByCaseComparisonTableName", {dimension({"CD_Active", "CD_Compare"}), dimension(results)});
    for (std::size_t row = 0; row < rows.size(); ++row) {
      count(made, {1, static_cast<std::int32_t>(row) + 1}, rows[row]);
      count(made, {2, static_cast<std::int32_t>(row) + 1}, rows[row] + 1);
    }
  }
  void caseCounts(double active, double compared) {
    Table& made =
        table("CD_CompSummaryTableName", {dimension({"CD_Cases"}), dimension({"CD_Active", "CD_Comparison"})});
    count(made, {1, 1}, active);
    count(made, {1, 2}, compared);
  }
  void message(const std::string& text) {
    output::Message made;
    made.text = key(text);
    command.items.emplace_back(made);
  }
  void flagNote() {
    output::Note made;
    made.group = 3;
    made.texts[0] = made.texts[1] = Text{output::StringText{"", false}};
    made.texts[2] = Text{output::StringText{"CasesCompare", false}};
    command.items.emplace_back(made);
  }
  // The flags are handed over one and two at a time.
  ComparisonVerdict verdict(const std::optional<std::vector<double>>& flags = std::nullopt) const {
    return *verdictOf(command, [&](const std::string& variable, std::int64_t cases, const FlagVisit& visit) {
      if (!flags) return false;
      EXPECT_EQ(variable, "CasesCompare");
      EXPECT_EQ(static_cast<std::size_t>(cases), flags->size());
      std::vector<OBS> values(flags->size());
      std::transform(flags->begin(), flags->end(), values.begin(), [](double flag) { return OBS{.number = flag}; });
      const std::span<const OBS> all(values);
      for (std::size_t at = 0; at < all.size();) {
        const std::size_t count = std::min<std::size_t>(all.size() - at, at % 3 == 0 ? 1 : 2);
        visit(all.subspan(at, count));
        at += count;
      }
      return true;
    });
  }
  std::string answer(const char* language = "en",
                     const std::optional<std::vector<double>>& flags = std::nullopt) const {
    return shownAnswer(verdict(flags).answer, **text::Wording::load(language));
  }

  Command command;
};

TEST(Verdict, IsSameWhenEveryCaseHasAPartnerAndNoneDiffers) {
  Issued issued;
  issued.matchedSummary(0);
  issued.message("All values in the tw...");
  EXPECT_EQ(issued.verdict().verdict, Verdict::same);
}

TEST(Verdict, IsDifferentWhenACaseHasNoPartnerThoughAllValuesMatch) {
  Issued issued;
  issued.matchedSummary(1);
  issued.message("All values in the tw...");
  EXPECT_EQ(issued.verdict().verdict, Verdict::different);
}

TEST(Verdict, IsDifferentWhenAPairDiffers) {
  Issued issued;
  issued.matchedSummary(0);
  issued.mismatches(2);
  EXPECT_EQ(issued.verdict().verdict, Verdict::different);
}

TEST(Verdict, IsDifferentWhenAVariableCouldNotBePaired) {
  for (const char* text : {"The variables do not match in t...", "The following variables could...[%1:, ^1:]1"}) {
    Issued issued;
    issued.matchedSummary(0);
    issued.message(text);
    EXPECT_EQ(issued.verdict().verdict, Verdict::different) << text;
  }
}

TEST(Verdict, IsDifferentWhenACellOfTheDictionaryTableIsNotEmpty) {
  Issued issued;
  issued.matchedSummary(0);
  Table& table = issued.table("CD_DictCompTableName", {dimension({"x"}), dimension({"CD_AttributeLabel"})});
  Issued::cell(table, {1, 1}, Text{output::StringText{"", false}});
  EXPECT_EQ(issued.verdict().verdict, Verdict::same);
  Issued::cell(table, {1, 1}, Text{output::CompositeText{"(1) ^1\n(2) ^2", false, {}}});
  EXPECT_EQ(issued.verdict().verdict, Verdict::different);
}

TEST(Verdict, WithoutSummariesFlagsAndCaseCountsDecide) {
  Issued issued;
  issued.table("CD_MatchedSummaryTableName", {});
  issued.flagNote();
  issued.caseCounts(5, 5);
  EXPECT_EQ(issued.verdict({{0, 0, 0, 0, 0}}).verdict, Verdict::same);
  EXPECT_EQ(issued.verdict({{0, 0, 1, 0, 0}}).verdict, Verdict::different);
  EXPECT_EQ(issued.verdict({{0, 0, -1, 0, 0}}).verdict, Verdict::different);
  EXPECT_EQ(issued.verdict({{0, 0, 7, 0, 0}}).verdict, Verdict::different);
  Issued longer;
  longer.flagNote();
  longer.caseCounts(5, 6);
  EXPECT_EQ(longer.verdict({{0, 0, 0, 0, 0}}).verdict, Verdict::different);
}

TEST(Verdict, WithoutSummariesAndFlagsItIsDifferentAndSaysWhetherThatIsAGuess) {
  Issued matching;
  matching.caseCounts(5, 5);
  matching.message("All values in the tw...");
  EXPECT_EQ(matching.verdict().verdict, Verdict::different);
  EXPECT_TRUE(matching.verdict().isGuess);
  Issued differing;
  differing.caseCounts(5, 5);
  EXPECT_EQ(differing.verdict().verdict, Verdict::different);
  EXPECT_FALSE(differing.verdict().isGuess);
}

TEST(Verdict, IsTroubleWhenTheComparisonWasRefusedOrFailed) {
  for (const Command::Outcome outcome : {Command::Outcome::refused, Command::Outcome::failed}) {
    Issued issued;
    issued.matchedSummary(0);
    issued.command.outcome = outcome;
    EXPECT_EQ(issued.verdict().verdict, Verdict::trouble);
  }
}

TEST(Answer, CountsDifferingCasesAndVariablesAndCasesOfOneDatasetOnly) {
  Issued issued;
  issued.matchedSummary(1203, 1);
  issued.mismatches(2);
  issued.mismatchesByVariable({0, 2, 1});
  EXPECT_EQ(issued.answer(),
            "2 of 5 compared cases differ, in 2 of 3 variables; 1,203 cases only in the active dataset; "
            "1 case only in the comparison dataset");
  EXPECT_EQ(issued.answer("de"),
            "2 von 5 verglichenen Fällen weichen ab, in 2 von 3 Variablen; 1.203 Fälle nur im aktiven Dataset; "
            "1 Fall nur im Vergleichsdataset");
}

TEST(Answer, HasTheFormsOfOne) {
  Issued issued;
  issued.matchedSummary(0);
  issued.mismatches(1);
  issued.mismatchesByVariable({1});
  EXPECT_EQ(issued.answer(), "1 of 5 compared cases differs, in 1 of 1 variable");
  EXPECT_EQ(issued.answer("de"), "1 von 5 verglichenen Fällen weicht ab, in 1 von 1 Variable");
}

TEST(Answer, SaysThatNoDifferenceWasFoundAndWhetherDictionariesWereHeldAgainstEachOther) {
  Issued issued;
  issued.matchedSummary(0);
  issued.message("All values in the tw...");
  EXPECT_EQ(issued.answer(), "No difference was found: 5 cases were compared");
  EXPECT_EQ(issued.answer("de"), "Kein Unterschied gefunden: 5 Fälle wurden verglichen");
  issued.message("All attribute values in the da...");
  EXPECT_EQ(issued.answer(), "No difference was found: 5 cases were compared, and the dictionary properties");
}

TEST(Answer, NamesWhatElseDiffersWhereNoValueDoes) {
  Issued issued;
  issued.matchedSummary(0);
  Table& table = issued.table("CD_DictCompTableName", {dimension({"x", "y"}), dimension({"CD_AttributeLabel"})});
  Issued::cell(table, {1, 1}, Text{output::StringText{"", false}});
  Issued::cell(table, {2, 1}, Text{output::CompositeText{"(1) ^1\n(2) ^2", false, {}}});
  output::ListText names{{key("a"), key("b")}};
  output::Message unpaired;
  unpaired.text = Text{output::CompositeText{"The following variables could...[%1:, ^1:]1", true, {Text{names}}}};
  issued.command.items.emplace_back(unpaired);
  EXPECT_EQ(issued.answer(),
            "No value differs in 5 compared cases; 2 variables could not be compared; 1 dictionary property differs");
}

TEST(Answer, SaysWhenCasesWerePairedByPosition) {
  Issued issued;
  issued.command.syntax = "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL.";
  issued.matchedSummary(2);
  EXPECT_EQ(issued.answer(),
            "No value differs in 5 compared cases; the active dataset has 2 more cases; cases were paired by their "
            "position");
  issued.command.syntax = "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL\n  /CaseId=id.";
  EXPECT_EQ(issued.answer(), "No value differs in 5 compared cases; 2 cases only in the active dataset");
}

TEST(Answer, ComesFromTheFlagsWhereThereAreNoSummaries) {
  Issued issued;
  issued.flagNote();
  issued.caseCounts(5, 6);
  EXPECT_EQ(issued.answer("en", {{1, 0, 1, -1, 1}}),
            "3 of 4 compared cases differ; 1 case only in the active dataset; 2 cases only in the comparison dataset");
  EXPECT_EQ(issued.answer(), "The datasets differ; in how many cases is not known");
  issued.message("All values in the tw...");
  EXPECT_EQ(issued.answer(), "All values that were compared match; whether every case has a partner is not known");
}

TEST(Answer, TellsARefusedComparisonFromOneThatWasBrokenOff) {
  Issued issued;
  issued.command.outcome = Command::Outcome::refused;
  EXPECT_EQ(issued.answer(), "The comparison was refused; no case was compared");
  issued.command.outcome = Command::Outcome::failed;
  EXPECT_EQ(issued.answer(), "The comparison was broken off; what it shows is not complete");
  EXPECT_EQ(issued.verdict().answer.verdict, Verdict::trouble);
  EXPECT_TRUE(issued.verdict().charts.empty());
}

TEST(Pictures, DivideTheCasesOfEitherDataset) {
  Issued issued;
  issued.matchedSummary(3, 4);
  issued.mismatches(2);
  const auto chart = std::get<output::PartsChart>(issued.verdict().charts.at(0));
  EXPECT_EQ(chart.wholes.at(0).counts, (std::vector<double>{3, 2, 3}));
  EXPECT_EQ(chart.wholes.at(1).counts, (std::vector<double>{3, 2, 4}));
}

TEST(Pictures, HaveABarForEachVariableWithAMismatchTheLargestFirst) {
  Issued issued;
  issued.matchedSummary(0);
  issued.mismatches(3);
  issued.mismatchesByVariable({0, 1, 3, 1});
  const auto chart = std::get<output::BarChart>(issued.verdict().charts.at(1));
  std::string bars;
  for (const auto& bar : chart.bars) {
    bars += std::get<output::StringText>(bar.label.held).key + std::to_string(static_cast<int>(bar.count));
  }
  EXPECT_EQ(bars, "c3b1d1");
  EXPECT_EQ(chart.empty, 1U);
  EXPECT_EQ(chart.whole, 5);
}

TEST(Pictures, ShowByTheFlagsWhereCasesDiffer) {
  Issued issued;
  issued.matchedSummary(0);
  issued.mismatches(3);
  issued.flagNote();
  const auto chart = std::get<output::StripChart>(issued.verdict({{1, 0, 1, 0, 1}}).charts.at(1));
  EXPECT_EQ(chart.counts, (std::vector<double>{1, 0, 1, 0, 1}));
  EXPECT_EQ(chart.cases, 5);
  EXPECT_FALSE(chart.note.has_value());
}

TEST(Pictures, JoinCasesOfALongDatasetInEqualStretches) {
  Issued issued;
  issued.flagNote();
  issued.caseCounts(1001, 1001);
  std::vector<double> flags(1001, 0);
  flags[0] = flags[4] = flags[5] = flags[1000] = 1;
  const auto chart = std::get<output::StripChart>(issued.verdict(flags).charts.at(1));
  ASSERT_EQ(chart.counts.size(), 200U);
  EXPECT_EQ(chart.counts.front(), 2);
  EXPECT_EQ(chart.counts[1], 1);
  EXPECT_EQ(chart.counts.back(), 1);
  EXPECT_EQ(std::accumulate(chart.counts.begin(), chart.counts.end(), 0.0), 4);
}

TEST(Pictures, WithoutFlagsShowTheListedCasesAndSaySoWhenThereAreMore) {
  Issued issued;
  issued.matchedSummary(0);
  issued.mismatches(3);
  issued.listedCases({1, 4});
  const auto chart = std::get<output::StripChart>(issued.verdict().charts.at(1));
  EXPECT_EQ(chart.counts, (std::vector<double>{1, 0, 0, 1, 0}));
  EXPECT_TRUE(chart.note.has_value());
  Issued whole;
  whole.matchedSummary(0);
  whole.mismatches(2);
  whole.listedCases({1, 4});
  EXPECT_FALSE(std::get<output::StripChart>(whole.verdict().charts.at(1)).note.has_value());
}

TEST(Verdict, AnotherProcedureHasNone) {
  Issued issued;
  issued.command.procedureTitle = "Count Missing";
  EXPECT_FALSE(verdictOf(issued.command, {}).has_value());
}

TEST(Verdict, TheWorseOfTwoCountsAndBecomesTheExitStatus) {
  EXPECT_EQ(worse(Verdict::same, Verdict::different), Verdict::different);
  EXPECT_EQ(worse(Verdict::trouble, Verdict::different), Verdict::trouble);
  EXPECT_EQ(exitStatus(Verdict::same), 0);
  EXPECT_EQ(exitStatus(Verdict::different), 1);
  EXPECT_EQ(exitStatus(Verdict::trouble), 2);
  EXPECT_EQ(exitStatus(std::nullopt), 0);
}

}  // namespace
}  // namespace workbench::app
