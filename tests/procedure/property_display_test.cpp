// Property display: how a property of a variable is shown in the Dictionary Comparison table.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"
#include "tests/procedure/table_text.h"
#include "workbench/output/text_rendering.h"
#include "workbench/text/wording.h"

namespace workbench::tests::property_display_test {

using Change = DatasetBuilder::Change;
namespace enumerations = VRIX_Variable_Enumerations;

// The two texts of the only cell of a run in which this property differs.
std::string shown(const std::string& property, const DatasetBuilder& active, const DatasetBuilder& compared) {
  ProcedureRun run(active, compared);
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=" + property);
  const output::Table* table = run.table(keys::dictionary);
  if (table == nullptr || table->cells.size() != 1) return "not one cell";
  const std::string cell = exact(*table->cells[0].content);
  const std::string pattern = "\"(1) ^1\\n(2) ^2\"";
  return cell.starts_with(pattern) ? cell.substr(pattern.size()) : "not two values: " + cell;
}

std::string shownNumbers(const std::string& property, const Change& active, const Change& compared) {
  return shown(property, dataset().numeric("x", {1}, active), dataset().numeric("x", {1}, compared));
}

Change missingNumbers(std::int32_t code, double first = 0, double second = 0, double third = 0) {
  return [=](data::Variable& x) {
    x.missing.code = code;
    x.missing.values[0].number = first;
    x.missing.values[1].number = second;
    x.missing.values[2].number = third;
  };
}

Change missingTexts(const std::vector<std::string>& values) {
  return [=](data::Variable& x) {
    x.missing.code = static_cast<std::int32_t>(values.size());
    for (std::size_t place = 0; place < values.size(); ++place) {
      std::string padded = values[place];
      padded.resize(8, ' ');
      std::memcpy(x.missing.values[place].text, padded.data(), 8);
    }
  };
}

// How the missing values of the active variable are shown beside a variable without any.
std::string shownMissing(const Change& active) {
  const std::string both = shownNumbers("MISSING", active, {});
  const std::string none = "|\"\"{}}";
  EXPECT_TRUE(both.ends_with(none)) << both;
  return both.substr(1, both.size() - none.size() - 1);
}

// What people see in the only cell of a run over numbers with these missing values.
std::string read(const Change& active, const Change& compared) {
  static const auto english = std::move(*text::Wording::load("en"));
  ProcedureRun run(dataset().numeric("x", {1}, active), dataset().numeric("x", {1}, compared));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=MISSING");
  return output::shown(*run.table(keys::dictionary)->cells.at(0).content, *english);
}

const double lowest = pvGetCmnMch()->constants[CmnMch::lowestValidNumber];
const double highest = pvGetCmnMch()->constants[CmnMch::highestNumber];

TEST(MissingValueDisplay, ListsDiscreteValues) {
  EXPECT_EQ(shownMissing(missingNumbers(1, 9)), "\"[%1:, ^1:]1\"{[x:9]}");
  EXPECT_EQ(shownMissing(missingNumbers(2, 9, 8)), "\"[%1:, ^1:]1\"{[x:9|x:8]}");
  EXPECT_EQ(shownMissing(missingNumbers(3, 9, 8, -7.5)), "\"[%1:, ^1:]1\"{[x:9|x:8|x:-7.5]}");
}

TEST(MissingValueDisplay, ShowsRangesWithTheirEndsAndTheValueBesideThem) {
  EXPECT_EQ(shownMissing(missingNumbers(-2, 1, 9)), "\"^1 - ^2\"{x:1|x:9}");
  EXPECT_EQ(shownMissing(missingNumbers(-3, 1, 9, 99)), "\"^1 - ^2, ^3\"{x:1|x:9|x:99}");
}

TEST(MissingValueDisplay, ShowsTheLowestAndTheHighestNumberAsWords) {
  EXPECT_EQ(shownMissing(missingNumbers(-2, lowest, 9)), "\"LO - ^1\"{x:9}");
  EXPECT_EQ(shownMissing(missingNumbers(-3, lowest, 9, 99)), "\"LO - ^1, ^2\"{x:9|x:99}");
  EXPECT_EQ(shownMissing(missingNumbers(-2, 1, highest)), "\"^1 - HI\"{x:1}");
  EXPECT_EQ(shownMissing(missingNumbers(-3, 1, highest, 99)), "\"^1 - HI, ^2\"{x:1|x:99}");
  EXPECT_EQ(shownMissing(missingNumbers(-2, lowest, highest)), "\"LO - HI\"{}");
  EXPECT_EQ(shownMissing(missingNumbers(-3, lowest, highest, 99)), "\"LO - HI, ^1\"{x:99}");
}

TEST(MissingValueDisplay, ReadsAsOneListOrRangeBehindTheMarkOfEachDataset) {
  EXPECT_EQ(read(missingNumbers(3, 9, 8, 7), missingNumbers(1, 9)), "(1) 9, 8, 7\n(2) 9");
  EXPECT_EQ(read(missingNumbers(-3, lowest, highest, 99), missingNumbers(-2, lowest, highest)),
            "(1) LO - HI, 99\n(2) LO - HI");
  EXPECT_EQ(read(missingNumbers(-3, 1, highest, 99), {}), "(1) 1 - HI, 99\n(2) ");
}

TEST(MissingValueDisplay, TakesOnlyTheVeryLowestAndHighestForThoseWords) {
  EXPECT_EQ(shownMissing(missingNumbers(-2, missing, 9)), "\"^1 - ^2\"{x:.|x:9}");
  // The two the wrong way round are plain ends.
  const std::string swapped = shownMissing(missingNumbers(-2, highest, lowest));
  EXPECT_TRUE(swapped.starts_with("\"^1 - ^2\"{x:1.79")) << swapped;
}

TEST(MissingValueDisplay, ShowsNothingOfUnknownSpecifications) {
  EXPECT_EQ(shownNumbers("MISSING", missingNumbers(-1), missingNumbers(-1)), "{\"\"{}|\"\"{}}");
  EXPECT_EQ(shownNumbers("MISSING", missingNumbers(4), missingNumbers(-4)), "{\"\"{}|\"\"{}}");
}

TEST(MissingValueDisplay, ShowsBothDatasetsSpecificationsEachUnderItsOwnVariable) {
  EXPECT_EQ(shown("MISSING", dataset().numeric("X", {1}, missingNumbers(1, 9)),
                  dataset().numeric("x", {1}, missingNumbers(-2, 1, 9))),
            "{\"[%1:, ^1:]1\"{[X:9]}|\"^1 - ^2\"{x:1|x:9}}");
}

TEST(MissingValueDisplay, ShowsTextsWithoutTheBlanksAtTheirEnd) {
  for (const std::int32_t width : {8, 3}) {
    EXPECT_EQ(
        shown("MISSING", dataset().text("t", width, {"a"}, missingTexts({"NA"})), dataset().text("t", width, {"a"})),
        "{\"[%1:, ^1:]1\"{[t:\"NA\"]}|\"\"{}}");
  }
  EXPECT_EQ(
      shown("MISSING", dataset().text("t", 8, {"a"}, missingTexts({"", "a b", " c"})), dataset().text("t", 8, {"a"})),
      "{\"[%1:, ^1:]1\"{[t:\"\"|t:\"a b\"|t:\" c\"]}|\"\"{}}");
}

TEST(MissingValueDisplay, ShowsNoMoreOfATextThanItsVariableIsWide) {
  EXPECT_EQ(shown("MISSING", dataset().text("t", 2, {"a"}, missingTexts({"ABCDEFGH"})), dataset().text("t", 2, {"a"})),
            "{\"[%1:, ^1:]1\"{[t:\"AB\"]}|\"\"{}}");
}

TEST(MissingValueDisplay, ShowsTheFirstEightBytesOfAWideTextsMissingValue) {
  EXPECT_EQ(
      shown("MISSING", dataset().text("t", 20, {"a"}, missingTexts({"ABCDEFGH"})), dataset().text("t", 20, {"a"})),
      "{\"[%1:, ^1:]1\"{[t:\"ABCDEFGH\"]}|\"\"{}}");
}

TEST(PropertyDisplay, HasAKeyForEveryAlignment) {
  const auto aligned = [](int value) {
    return [=](data::Variable& x) { x.alignment = static_cast<enumerations::Alignment>(value); };
  };
  EXPECT_EQ(shownNumbers("ALIGN", aligned(0), aligned(1)), "{CD_Left|CD_Right}");
  EXPECT_EQ(shownNumbers("ALIGN", aligned(2), aligned(3)), "{CD_Center|CD_Unknown}");
}

TEST(PropertyDisplay, HasAKeyForEveryMeasurementLevel) {
  const auto measured = [](int value) {
    return [=](data::Variable& x) { x.level = static_cast<enumerations::MeasurementLevel>(value); };
  };
  EXPECT_EQ(shownNumbers("MEASURE", measured(0), measured(1)), "{CD_Unknown|CD_Nominal}");
  EXPECT_EQ(shownNumbers("MEASURE", measured(2), measured(3)), "{CD_Ordinal|CD_Scale}");
  EXPECT_EQ(shownNumbers("MEASURE", measured(4), measured(5)), "{CD_Flag|CD_Typeless}");
  EXPECT_EQ(shownNumbers("MEASURE", measured(6), measured(-1)), "{CD_Unknown|CD_Unknown}");
}

TEST(PropertyDisplay, HasAKeyForEveryRole) {
  const auto playing = [](int value) {
    return [=](data::Variable& x) { x.role = static_cast<enumerations::Role>(value); };
  };
  EXPECT_EQ(shownNumbers("ROLE", playing(0), playing(1)), "{CD_InputRole|CD_TargetRole}");
  EXPECT_EQ(shownNumbers("ROLE", playing(2), playing(3)), "{CD_BothRoles|CD_NoneRole}");
  EXPECT_EQ(shownNumbers("ROLE", playing(4), playing(5)), "{CD_PartitionRole|CD_SplitRole}");
  EXPECT_EQ(shownNumbers("ROLE", playing(6), playing(7)), "{CD_FreqWeightRole|CD_RecordIDRole}");
  EXPECT_EQ(shownNumbers("ROLE", playing(8), playing(-1)), "{CD_Unknown|CD_Unknown}");
}

TEST(PropertyDisplay, ShowsThePrintWidthNotTheStorageWidth) {
  EXPECT_EQ(shown("WIDTH", dataset().text("t", 8, {"a"}, [](data::Variable& t) { t.format.width = 5; }),
                  dataset().text("t", 8, {"a"}, [](data::Variable& t) { t.format.width = 33; })),
            "{5|33}");
}

TEST(PropertyDisplay, ShowsLabelsAsTheyStand) {
  const auto labelled = [](const std::string& label) { return [=](data::Variable& x) { x.label = label; }; };
  EXPECT_EQ(shownNumbers("LABEL", labelled("CD_Left"), labelled("^1 (2)")), "{\"CD_Left\"|\"^1 (2)\"}");
}

}  // namespace workbench::tests::property_display_test
