// The verdict: read from what a comparison issued, and never "same" on a guess.
#include "workbench/app/verdict.h"

#include <gtest/gtest.h>

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
  void matchedSummary(double notCompared) {
    Table& made = table("CD_MatchedSummaryTableName", {dimension({"CD_Cases", "CD_CasesNotCompared"}),
                                                       dimension({"CD_Count"}), dimension({"CD_Active"})});
    count(made, {1, 1, 1}, 5);
    count(made, {2, 1, 1}, notCompared);
  }
  void mismatches(double cases) {
    Table& made =
        table("CD_MismatchedByCasesTableName", {dimension({"CD_CasesContainingMismatches"}), dimension({"CD_Count"})});
    count(made, {1, 1}, cases);
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
  ComparisonVerdict verdict(std::optional<std::int64_t> flagsNotEqual = std::nullopt) const {
    return *verdictOf(command, [&](const std::string&, std::int64_t) { return flagsNotEqual; });
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
  EXPECT_EQ(issued.verdict(0).verdict, Verdict::same);
  EXPECT_EQ(issued.verdict(1).verdict, Verdict::different);
  Issued longer;
  longer.flagNote();
  longer.caseCounts(5, 6);
  EXPECT_EQ(longer.verdict(0).verdict, Verdict::different);
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
