// What is found of the keys of a dataset: which are repeated, which are missing, where they are out of order.
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstring>
#include <map>

#include "host/messages.h"
#include "tests/data/working/fakes.h"
#include "tests/data/working/sort_fixture.h"
#include "tests/data/working/spills.h"

namespace workbench::data {
namespace {

using testing::by;
using testing::casesOf;
using testing::data;
using testing::keptDataset;
using testing::keysOf;
using testing::MemoryFile;
using testing::MemoryLimitScope;
using testing::missing;
using testing::SpillFolder;

std::string textOf(const KeyValues& values) {
  std::string all;
  for (const auto& value : values) {
    const auto* number = std::get_if<double>(&value);
    all += (all.empty() ? "" : ",") + (number != nullptr ? fmt::format("{}", *number) : std::get<std::string>(value));
  }
  return all;
}

// "2 keys in 5 cases, 7 in rows 1 2; 3 missing from row 4", or "disorder 2>3".
std::string shown(const KeyFindings& found) {
  if (found.firstOutOfOrder) {
    return fmt::format("disorder {}>{}", found.firstOutOfOrder->first.number, found.firstOutOfOrder->second.number);
  }
  std::string all;
  if (found.repeated.keys != 0) {
    all += fmt::format("{} keys in {} cases, {} ({}) in rows {}", found.repeated.keys, found.repeated.cases,
                       textOf(found.repeated.lowest), found.repeated.casesOfLowest,
                       fmt::join(found.repeated.rowsOfLowest, " "));
  }
  if (found.missing != 0) all += fmt::format("; {} missing from row {}", found.missing, found.firstMissingRow);
  return all;
}

std::string foundIn(Dataset& dataset, const SortRequest& request) {
  const auto found = keysOf(dataset, request);
  return found ? shown(*found) : found.problem().text();
}

TEST(KeyCheck, FindsRepeatedAndMissingKeysOfADatasetInOrder) {
  Dataset dataset(std::make_shared<MemoryFile>(data().numeric("k", {missing, missing, 1, 2, 2, 3, 4, 4, 4})));
  EXPECT_EQ(foundIn(dataset, by({"k"})), "2 keys in 5 cases, 2 (2) in rows 4 5; 2 missing from row 1");
}

TEST(KeyCheck, FindsThemOverTheBoundariesOfBlocks) {
  auto file = std::make_shared<MemoryFile>(data().text("t", 10, {"", "a", "a ", "a  ", "b"}));
  file->casesPerBlock = 1;
  Dataset dataset(file);
  EXPECT_EQ(foundIn(dataset, by({"t"})), "1 keys in 3 cases, a (3) in rows 2 3 4; 1 missing from row 1");
}

TEST(KeyCheck, NamesAFewRowsOfTheLowestRepeatedKeyAndCountsAll) {
  Dataset dataset(std::make_shared<MemoryFile>(data().numeric("k", {1, 1, 1, 1, 1, 1, 1, 2, 2})));
  EXPECT_EQ(foundIn(dataset, by({"k"})), "2 keys in 9 cases, 1 (7) in rows 1 2 3 4 5");
}

TEST(KeyCheck, SeesWhereTheOrderBreaksAndNothingBehind) {
  Dataset dataset(std::make_shared<MemoryFile>(data().numeric("k", {1, 3, 2, 2})));
  EXPECT_EQ(foundIn(dataset, by({"k"})), "disorder 2>3");
}

TEST(KeyCheck, TakesTextsAsTheyAreCutAndBothZerosAsTwoKeys) {
  auto request = by({"t", "k"});
  Dataset dataset(
      std::make_shared<MemoryFile>(data().text("t", 4, {"abcd", "abce", "abcf"}).numeric("k", {-0.0, 0, 0})));
  EXPECT_EQ(foundIn(dataset, request), "");
  request.cutWidths = {3, 0};
  EXPECT_EQ(foundIn(dataset, request), "1 keys in 2 cases, abc,0 (2) in rows 2 3");
}

TEST(KeyCheck, CountsValuesThatAreDeclaredMissing) {
  const auto dataset = keptDataset(data().numeric("k", {1, 7, 9}).text("t", 3, {"a", "na", "z"}));
  dataset->dictionary().at(0).missing.code = 1;
  dataset->dictionary().at(0).missing.values[0].number = 9;
  dataset->dictionary().at(1).missing.code = 1;
  std::memcpy(dataset->dictionary().at(1).missing.values[0].text, "na      ", 8);
  EXPECT_EQ(foundIn(*dataset, by({"k"})), "; 1 missing from row 3");
  EXPECT_EQ(foundIn(*dataset, by({"k", "t"})), "; 2 missing from row 2");
}

TEST(KeyCheck, TakesACodeOfMissingValuesThatIsNoneForNoDeclaration) {
  const auto dataset = keptDataset(data().numeric("k", {1, 7, 9}).text("t", 3, {"a", "na", "z"}));
  for (const std::int32_t variable : {0, 1}) dataset->dictionary().at(variable).missing.code = 4;
  dataset->dictionary().at(0).missing.values[0].number = 9;
  std::memcpy(dataset->dictionary().at(1).missing.values[0].text, "na      ", 8);
  EXPECT_EQ(foundIn(*dataset, by({"k", "t"})), "");
}

TEST(KeyCheck, TellsAfterASortWhatItFoundInRowsAsTheyLayBefore) {
  auto file =
      std::make_shared<MemoryFile>(data().numeric("k", {5, 2, 9, missing, 9, 2}).numeric("n", {0, 1, 2, 3, 4, 5}));
  Dataset dataset(file);
  ASSERT_TRUE(sortCases(dataset, by({"k"})));
  EXPECT_EQ(foundIn(dataset, by({"k"})), "2 keys in 4 cases, 2 (2) in rows 2 6; 1 missing from row 4");
  EXPECT_TRUE(keysOf(dataset, by({"k"}))->wasSorted);
  EXPECT_EQ(foundIn(dataset, by({"n"})), "disorder 1>2") << "other keys are looked at for themselves";
}

TEST(KeyCheck, ReadsNothingOnceMore) {
  auto file = std::make_shared<MemoryFile>(data().numeric("k", {1, 1, 2}));
  Dataset dataset(file);
  ASSERT_TRUE(sortCases(dataset, by({"k"})));
  EXPECT_EQ(file->passes, 1);
  EXPECT_EQ(foundIn(dataset, by({"k"})), "1 keys in 2 cases, 1 (2) in rows 1 2");
  EXPECT_EQ(file->passes, 1);
  EXPECT_FALSE(keysOf(dataset, by({"k"}))->wasSorted);
}

TEST(KeyCheck, ReadsNothingWhereTheKeyIsKnownToIncreaseUnlessValuesAreDeclaredMissing) {
  auto file = std::make_shared<MemoryFile>(data().numeric("k", {1, 2, 9}));
  file->increasing = 0;
  Dataset dataset(file);
  EXPECT_EQ(foundIn(dataset, by({"k"})), "");
  EXPECT_EQ(file->passes, 0);
  dataset.dictionary().at(0).missing.code = 1;
  dataset.dictionary().at(0).missing.values[0].number = 9;
  EXPECT_EQ(foundIn(dataset, by({"k"})), "; 1 missing from row 3");
}

TEST(KeyCheck, OfTwoDatasetsFindsForEachWhatIsItsOwn) {
  const auto first = keptDataset(data().numeric("k", {1, 1, 2}));
  const auto second = keptDataset(data().numeric("k", {1, missing, 2}));
  const auto [findings, otherFindings] = checkBoth({*first, by({"k"})}, {*second, by({"k"})});
  EXPECT_EQ(shown(*findings), "1 keys in 2 cases, 1 (2) in rows 1 2");
  EXPECT_EQ(shown(*otherFindings), "disorder 1>2");
  const auto [failed, sound] = checkBoth({*first, by({"y"})}, {*second, by({"k"})});
  EXPECT_EQ(failed.problem().text(), "The dataset has no variable y.");
  EXPECT_EQ(shown(*sound), "disorder 1>2");
}

TEST(KeyCheck, RefusesAVariableThatIsNotThere) {
  const auto dataset = keptDataset(data().numeric("x", {1}));
  EXPECT_EQ(foundIn(*dataset, by({"y"})), "The dataset has no variable y.");
}

// However many cases there are, and whichever way they are sorted, the counts are those of a count by hand.
RC_GTEST_PROP(KeyCheck, CountsAsACountByHandDoes, ()) {
  const auto cases = *rc::gen::inRange<std::size_t>(0, 300);
  const auto numbers = *rc::gen::container<std::vector<double>>(
      cases, rc::gen::map(rc::gen::inRange(0, 40), [](int one) { return one == 0 ? missing : one; }));
  const auto texts = *rc::gen::container<std::vector<std::string>>(
      cases, rc::gen::element<std::string>("", "a", "b", "longer than 8"));
  std::map<std::pair<double, std::string>, std::int64_t> counted;
  std::int64_t missingCases = 0;
  for (std::size_t row = 0; row < cases; ++row) {
    const bool isMissing = numbers[row] == missing || texts[row].empty();
    if (isMissing) ++missingCases;
    if (!isMissing) ++counted[{numbers[row], texts[row]}];
  }
  std::int64_t keys = 0;
  std::int64_t casesOfThem = 0;
  for (const auto& [key, count] : counted) {
    if (count > 1) ++keys;
    if (count > 1) casesOfThem += count;
  }
  const auto request = by({"k", "t"}, *rc::gen::element(SortPolicy::always, SortPolicy::whenNeeded));
  Dataset dataset(std::make_shared<MemoryFile>(data().numeric("k", numbers).text("t", 13, texts)));
  const SpillFolder folder;
  const MemoryLimitScope limit(*rc::gen::element<std::size_t>(0, std::size_t{1} << 30));
  RC_ASSERT(static_cast<bool>(sortCases(dataset, request)));
  const auto found = keysOf(dataset, request);
  RC_ASSERT(found->repeated.keys == keys);
  RC_ASSERT(found->repeated.cases == casesOfThem);
  RC_ASSERT(found->missing == missingCases);
}

}  // namespace
}  // namespace workbench::data
