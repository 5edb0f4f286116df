// Prepared pairs: which values of two cases count as equal when neighbouring ones are compared by their bytes.
#include "engine/prepared_pairs.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <numeric>

#include "engine/value_equality.h"
#include "engine/variable_matching.h"
#include "tests/engine/engine_run.h"
#include "tests/model/random_choice.h"

namespace workbench::tests {
namespace {

using compdatas::DatasetComparer;
using compdatas::PreparedPairs;
using compdatas::VariablePair;
using model::anyOf;
using model::oneIn;
using model::shuffled;
using model::upTo;

const double nearlyThird = 0.1 + 0.2;  // not the bits of 0.3

// What prepared pairs make of two datasets, by position. All variables are compared unless some are named.
class Comparison {
 public:
  Comparison(const DatasetBuilder& active, const DatasetBuilder& compared, const std::vector<std::string>& names = {})
      : run_(active, compared) {
    run_.compare(names.empty() ? namesIn(active) : names);
    compdatas::matchVariables(comparer());
    active_ = run_.activeSource().CreateCaseIterator(IteratorOptions::standard);
    compared_ = run_.compareSource().CreateCaseIterator(IteratorOptions::standard);
    pairs_.emplace(comparer());
  }

  DatasetComparer& comparer() { return run_.comparer(); }
  const VRIX_InputCaseIterator& active() const { return *active_; }
  const VRIX_InputCaseIterator& compared() const { return *compared_; }

  bool nextCases() {
    if (!active_->NextCase() || !compared_->NextCase()) return false;
    if (active_->GetCurrentPosition() == 0) pairs_->joinRuns(*active_, *compared_);
    return true;
  }
  bool compare() { return pairs_->compare(*active_, *compared_); }

  std::size_t runs() {
    nextCases();
    return pairs_->runs();
  }

  // The variables that differ, case by case: "x y|-|y".
  std::string differences() {
    std::string all;
    while (nextCases()) {
      const bool equal = compare();
      const std::string different = differingNow();
      EXPECT_EQ(equal, different == "-");
      all += (all.empty() ? "" : "|") + different;
    }
    return all;
  }

 private:
  static std::vector<std::string> namesIn(const DatasetBuilder& builder) {
    std::vector<std::string> names;
    for (const data::Variable& variable : builder.dictionary().variables()) names.push_back(variable.name);
    return names;
  }

  std::string differingNow() {
    std::string names;
    for (const VariablePair& pair : comparer().variablePairs) {
      if (!pair.compared || pair.equalNow) continue;
      EXPECT_EQ(pair.activeValue, active_->GetObsPointer(pair.activeIndex));
      EXPECT_EQ(pair.compareValue, compared_->GetObsPointer(pair.compareIndex));
      names += (names.empty() ? "" : " ") + run_.activeSource().GetVariable(pair.activeIndex).GetName();
    }
    return names.empty() ? "-" : names;
  }

  EngineRun run_;
  std::unique_ptr<VRIX_InputCaseIterator> active_;
  std::unique_ptr<VRIX_InputCaseIterator> compared_;
  std::optional<PreparedPairs> pairs_;
};

void isDate(data::Variable& variable) { variable.format.type = FormatType::date; }

// --- Runs
// -------------------------------------------------------------------------------------------------------------

DatasetBuilder threeNumbers() { return dataset().numeric("x", {1}).numeric("y", {2}).numeric("z", {3}); }

TEST(Runs, HoldAllNeighboursOfBothDatasets) {
  EXPECT_EQ(Comparison(threeNumbers(), threeNumbers()).runs(), 1U);
  const DatasetBuilder mixed =
      dataset().numeric("x", {1}).text("t", 5, {"a"}).text("u", 20, {"b"}).numeric("y", {2}).numeric("d", {3}, isDate);
  EXPECT_EQ(Comparison(mixed, mixed).runs(), 1U);
}

TEST(Runs, AreBrokenByAVariableThatIsNotCompared) {
  const DatasetBuilder all = threeNumbers();
  const DatasetBuilder withoutY = dataset().numeric("x", {1}).numeric("z", {3});
  EXPECT_EQ(Comparison(all, all, {"x", "z"}).runs(), 2U) << "in both datasets";
  EXPECT_EQ(Comparison(all, withoutY).runs(), 2U) << "in the active dataset";
  EXPECT_EQ(Comparison(withoutY, all).runs(), 2U) << "in the comparison dataset";
}

TEST(Runs, AreBrokenByAnotherOrderInTheComparisonDataset) {
  const DatasetBuilder rotated = dataset().numeric("z", {3}).numeric("x", {1}).numeric("y", {2});
  EXPECT_EQ(Comparison(threeNumbers(), rotated).runs(), 2U);
  const DatasetBuilder reversed = dataset().numeric("z", {3}).numeric("y", {2}).numeric("x", {1});
  EXPECT_EQ(Comparison(threeNumbers(), reversed).runs(), 3U);
}

TEST(Runs, AreBrokenByATextOfAnotherWidthWhichStandsAlone) {
  const auto numbersAround = [](std::int32_t first, std::int32_t second) {
    return dataset().numeric("x", {1}).text("t", first, {"a"}).text("u", second, {"b"}).numeric("y", {2});
  };
  EXPECT_EQ(Comparison(numbersAround(5, 5), numbersAround(5, 5)).runs(), 1U);
  EXPECT_EQ(Comparison(numbersAround(5, 5), numbersAround(8, 5)).runs(), 3U) << "also within the same slots";
  EXPECT_EQ(Comparison(numbersAround(5, 5), numbersAround(5, 20)).runs(), 3U);
  EXPECT_EQ(Comparison(numbersAround(5, 5), numbersAround(8, 8)).runs(), 4U) << "each one alone";
}

// One case whose variables lie where the test wants them.
class OneCase final : public VRIX_InputCaseIterator {
 public:
  OneCase(std::vector<std::uint32_t> slotOfVariable, std::vector<double> slots) : places_(std::move(slotOfVariable)) {
    for (const double number : slots) slots_.push_back({number});
    slotOfVariable_ = places_.data();
    NextCase();
  }

 protected:
  bool NextBlock() override {
    case_ = slots_.data();
    return true;
  }

 private:
  std::vector<std::uint32_t> places_;
  std::vector<OBS> slots_;
};

TEST(Runs, AreBrokenWhereTheFlagVariableLies) {
  Comparison comparison(threeNumbers(), threeNumbers());
  PreparedPairs pairs(comparison.comparer());
  const double flag = -1;
  const OneCase active({0, 1, 3}, {1, 2, flag, 3});
  const OneCase compared({0, 1, 2}, {1, 2, 3});
  pairs.joinRuns(active, compared);
  EXPECT_EQ(pairs.runs(), 2U);
  EXPECT_TRUE(pairs.compare(active, compared));
  const OneCase flagged({0, 1, 3}, {1, 2, 3, 4});
  EXPECT_FALSE(pairs.compare(flagged, compared));
  EXPECT_FALSE(comparison.comparer().variablePairs[2].equalNow);
}

TEST(Runs, AreNotJoinedAcrossSlotsThatOnlyOneDatasetHas) {
  Comparison comparison(threeNumbers(), threeNumbers());
  const OneCase together({0, 1, 2}, {1, 2, 3});
  const OneCase apart({0, 2, 4}, {1, 9, 2, 9, 3});
  PreparedPairs pairs(comparison.comparer());
  pairs.joinRuns(together, apart);
  EXPECT_EQ(pairs.runs(), 3U);
  EXPECT_TRUE(pairs.compare(together, apart));
}

// --- Values in runs
// ---------------------------------------------------------------------------------------------------

TEST(ValuesInRuns, DifferAtTheFirstAndAtTheLastVariableAndBetweenThem) {
  const DatasetBuilder active =
      dataset().numeric("x", {1, 1, 1, 1, 1}).numeric("y", {2, 2, 2, 2, 2}).numeric("z", {3, 3, 3, 3, 3});
  const DatasetBuilder compared =
      dataset().numeric("x", {1, 9, 1, 1, 9}).numeric("y", {2, 2, 9, 2, 9}).numeric("z", {3, 3, 3, 9, 9});
  EXPECT_EQ(Comparison(active, compared).differences(), "-|x|y|z|x y z");
}

TEST(ValuesInRuns, AreCountedVariableByVariable) {
  const DatasetBuilder active = dataset().numeric("x", {1, 1, 1}).numeric("y", {2, 2, 2});
  const DatasetBuilder compared = dataset().numeric("x", {9, 1, 9}).numeric("y", {2, 9, 9});
  Comparison comparison(active, compared);
  EXPECT_EQ(comparison.differences(), "x|y|x y");
  EXPECT_EQ(comparison.comparer().variablePairs[0].mismatchCount, 2U);
  EXPECT_EQ(comparison.comparer().variablePairs[1].mismatchCount, 2U);
}

TEST(ValuesInRuns, AreEqualWhenTheyAreNearAlthoughTheirBytesDiffer) {
  const DatasetBuilder active = dataset().numeric("x", {1, 1}).numeric("y", {0.3, 0.3}).numeric("z", {3, 3});
  const DatasetBuilder compared =
      dataset().numeric("x", {1, 1}).numeric("y", {nearlyThird, nearlyThird}).numeric("z", {3, 4});
  EXPECT_EQ(Comparison(active, compared).differences(), "-|z");
}

TEST(ValuesInRuns, AreZeroUnderEitherSignWhereNearNumbersAreEqualOnly) {
  const DatasetBuilder active = dataset().numeric("x", {0.0}).numeric("d", {0.0}, isDate).numeric("z", {-0.0});
  const DatasetBuilder compared = dataset().numeric("x", {-0.0}).numeric("d", {-0.0}, isDate).numeric("z", {0.0});
  EXPECT_EQ(Comparison(active, compared).differences(), "d");
}

TEST(ValuesInRuns, AreTheirOwnInEveryCase) {
  const DatasetBuilder active =
      dataset().numeric("x", {1, 1, 1}).text("t", 20, {"a", "a", "a"}).numeric("y", {2, 2, 2});
  const DatasetBuilder compared =
      dataset().numeric("x", {9, 1, 1}).text("t", 20, {"a", "b", "a"}).numeric("y", {2, 2, 2});
  EXPECT_EQ(Comparison(active, compared).differences(), "x|t|-") << "a difference ends with its case";
}

TEST(ValuesInRuns, AreTextsOfSeveralSlotsBetweenNumbers) {
  const auto row = [](double x, const std::string& text, double y) {
    return dataset().numeric("x", {x}).text("t", 20, {text}).numeric("y", {y});
  };
  const DatasetBuilder active = row(1, "twenty bytes in all.", 2);
  EXPECT_EQ(Comparison(active, active).differences(), "-");
  EXPECT_EQ(Comparison(active, row(1, "twenty bytes in all!", 2)).differences(), "t");
  EXPECT_EQ(Comparison(active, row(1, "Twenty bytes in all.", 3)).differences(), "t y");
  EXPECT_EQ(Comparison(active, row(0, "twenty bytes in all.", 3)).differences(), "x y");
}

TEST(ValuesInRuns, EndWithTheirWidthWhateverLiesBehindThemInTheLastSlot) {
  const DatasetBuilder active =
      dataset().numeric("x", {1, 1}).text("t", 5, {"abcdeXYZ", "abcdeXYZ"}).numeric("y", {2, 2});
  const DatasetBuilder compared = dataset().numeric("x", {1, 1}).text("t", 5, {"abcde", "abcdf"}).numeric("y", {2, 3});
  EXPECT_EQ(Comparison(active, compared).differences(), "-|t y");
}

TEST(ValuesInRuns, AreLookedAtByThemselvesWhenTheirWidthsDiffer) {
  // The bytes of both slots are the same; of the active one only five belong to the value.
  const DatasetBuilder active = dataset().numeric("x", {1, 1}).text("t", 5, {"abcdefgh", "abcde"}).numeric("y", {2, 2});
  const DatasetBuilder compared =
      dataset().numeric("x", {1, 1}).text("t", 8, {"abcdefgh", "abcde"}).numeric("y", {2, 2});
  EXPECT_EQ(Comparison(active, compared).differences(), "t|-");
  EXPECT_EQ(Comparison(compared, active).differences(), "t|-");
}

TEST(ValuesInRuns, AreComparedAcrossBlocksOfDifferentSizes) {
  // The active dataset's cases are copied with room for the flag variable, so its blocks hold fewer of them.
  const std::size_t cases = 200000;
  std::vector<double> ids(cases);
  std::iota(ids.begin(), ids.end(), 0.0);
  std::vector<double> changed = ids;
  for (std::size_t index = 0; index < cases; index += 1000) changed[index] += 0.5;
  EngineRun run(dataset().numeric("id", ids).numeric("x", ids), dataset().numeric("id", ids).numeric("x", changed));
  run.compare({"id", "x"}).pairBy({"id"}).options.setTableLimit(1);
  run.activeSource().SetMaxObsAdded(1);
  run.activeSource().MakeVariable(0, nullptr).SetName("flag");
  run.flagName = "flag";
  ASSERT_TRUE(run.walk());
  EXPECT_EQ(run.comparer().casesCompared, cases);
  EXPECT_EQ(run.comparer().variablePairs[0].mismatchCount, 0U);
  EXPECT_EQ(run.comparer().variablePairs[1].mismatchCount, cases / 1000);
}

// --- Against the rules for single values
// ------------------------------------------------------------------------------

// Two datasets whose variables, widths, orders and values mostly agree.
struct Sample {
  DatasetBuilder active;
  DatasetBuilder compared;
  std::vector<std::string> names;  // those to compare
};

template <class Value>
void fill(const std::vector<Value>& pool, std::vector<Value>& active, std::vector<Value>& compared) {
  for (std::size_t index = 0; index < active.size(); ++index) {
    active[index] = anyOf(pool);
    compared[index] = oneIn(4) ? anyOf(pool) : active[index];
  }
}

struct Column {
  struct Side {
    std::int32_t width;
    std::vector<double> numbers;
    std::vector<std::string> texts;
  };

  std::string name;
  bool isText;
  bool isDated;
  Side active;
  Side compared;
};

Column randomColumn(std::size_t number, std::size_t cases) {
  const std::vector<double> numbers = {0.0, -0.0, 0.3, nearlyThird, 1, 2, missing};
  const std::vector<std::string> texts = {"", "a", "abcde", "abcdeXYZ", "abcdefgh", "abcdefghi", "abcdefgh        i"};
  const std::vector<std::int32_t> widths = {1, 5, 8, 9, 16, 20};
  const Column::Side side{anyOf(widths), std::vector<double>(cases), std::vector<std::string>(cases)};
  Column column{"v" + std::to_string(number), oneIn(3), oneIn(3), side, side};
  if (oneIn(4)) column.compared.width = anyOf(widths);
  fill(numbers, column.active.numbers, column.compared.numbers);
  fill(texts, column.active.texts, column.compared.texts);
  return column;
}

void add(DatasetBuilder& dataset, const Column& column, const Column::Side& side) {
  if (column.isText) {
    dataset.text(column.name, side.width, side.texts);
  } else {
    dataset.numeric(column.name, side.numbers, column.isDated ? isDate : DatasetBuilder::Change());
  }
}

Sample randomSample() {
  const std::size_t cases = 1 + upTo(5);
  std::vector<Column> columns(1 + upTo(9));
  for (std::size_t number = 0; number < columns.size(); ++number) columns[number] = randomColumn(number, cases);

  Sample sample;
  for (const Column& column : columns) {
    add(sample.active, column, column.active);
    if (!oneIn(5)) sample.names.push_back(column.name);
  }
  if (oneIn(3)) columns = shuffled(columns);
  sample.compared.numeric("w", std::vector<double>(cases));  // so that it has cases, whatever is left out
  for (const Column& column : columns) {
    if (!oneIn(6)) add(sample.compared, column, column.compared);
  }
  return sample;
}

bool valuesEqual(const VariablePair& pair, std::int32_t compareWidth, const OBS* active, const OBS* compared) {
  if (pair.width == 0) return compdatas::numbersEqual(active->number, compared->number, pair.fuzzyNumeric);
  return compdatas::textsEqual(active->text, static_cast<std::size_t>(pair.width), compared->text,
                               static_cast<std::size_t>(compareWidth));
}

RC_GTEST_PROP(PreparedPairs, AgreeWithComparingVariableByVariable, ()) {
  const Sample sample = randomSample();
  RC_PRE(!sample.names.empty());
  Comparison comparison(sample.active, sample.compared, sample.names);
  std::vector<VariablePair>& pairs = comparison.comparer().variablePairs;
  std::vector<std::uint64_t> differences(pairs.size());
  while (comparison.nextCases()) {
    const bool equal = comparison.compare();
    bool allEqual = true;
    for (std::size_t index = 0; index < pairs.size(); ++index) {
      const VariablePair& pair = pairs[index];
      if (!pair.compared) continue;
      const OBS* active = comparison.active().GetObsPointer(pair.activeIndex);
      const OBS* compared = comparison.compared().GetObsPointer(pair.compareIndex);
      const std::int32_t width = comparison.comparer().compareSource->GetVariable(pair.compareIndex).GetType();
      const bool expected = valuesEqual(pair, width, active, compared);
      RC_ASSERT(pair.equalNow == expected);
      if (!expected) RC_ASSERT(pair.activeValue == active && pair.compareValue == compared);
      differences[index] += expected ? 0 : 1;
      RC_ASSERT(pair.mismatchCount == differences[index]);
      allEqual = allEqual && expected;
    }
    RC_ASSERT(equal == allEqual);
  }
}

}  // namespace
}  // namespace workbench::tests
