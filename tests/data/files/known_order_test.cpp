// Which variables a file is known to be in order by, as the scan over it has seen.
#include <gtest/gtest.h>

#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

// Whether the only column of a file with these cells is known to increase.
bool isKnown(const std::vector<std::string>& cells, const std::vector<std::string>& partner = {}) {
  const TestFolder folder;
  const auto written = [&](const std::string& name, const std::vector<std::string>& lines) {
    return folder.write(name, fmt::format("a\n{}\n", fmt::join(lines, "\n")));
  };
  std::optional<std::string> typesWith;
  if (!partner.empty()) typesWith = written("b.csv", partner);
  const SharedFile file = opened(written("a.csv", cells), typesWith);
  return file != nullptr && file->isKnownIncreasing(0);
}

TEST(KnownOrder, IsThatOfNumbersByValue) {
  EXPECT_TRUE(isKnown({"1", "2", "10"}));
  EXPECT_TRUE(isKnown({"-2", "-1.5", "0", ".25", "1e2", "1234567890123456e10"}));
  EXPECT_FALSE(isKnown({"1", "10", "2"}));
  EXPECT_FALSE(isKnown({"2", "1"}));
}

TEST(KnownOrder, IsThatOfTextsByTheirBytes) {
  EXPECT_TRUE(isKnown({"a", "ab", "b", "é"}));
  EXPECT_TRUE(isKnown({"Z", "a"}));
  EXPECT_FALSE(isKnown({"a", "Z"}));
  EXPECT_TRUE(isKnown({"01", "02", "10"}));
}

TEST(KnownOrder, IsThatOfIsoDates) {
  EXPECT_TRUE(isKnown({"2023-12-31", "2024-01-01"}));
  EXPECT_FALSE(isKnown({"2024-01-01", "2023-12-31"}));
}

TEST(KnownOrder, DoesNotAllowTheSameValueTwice) {
  EXPECT_FALSE(isKnown({"1", "1"}));
  EXPECT_FALSE(isKnown({"1", "1.0"}));
  EXPECT_FALSE(isKnown({"-0", "0"}));
  EXPECT_FALSE(isKnown({"a", "a"}));
  EXPECT_FALSE(isKnown({"\"a\"", "\"a  \""}));
}

TEST(KnownOrder, DoesNotAllowMissingValues) {
  EXPECT_FALSE(isKnown({"1", "\"\"", "2"}));
  EXPECT_FALSE(isKnown({"\"\"", "1"}));
  EXPECT_FALSE(isKnown({"\"  \"", "a"}));
  EXPECT_FALSE(isKnown({"a", "\"\""}));
}

TEST(KnownOrder, IsThatOfTheTypeThatBothFilesGiveTheColumn) {
  EXPECT_TRUE(isKnown({"9", "10"}, {"11"}));
  EXPECT_FALSE(isKnown({"9", "10"}, {"x"}));
  EXPECT_TRUE(isKnown({"10", "9"}, {"x"}));
}

TEST(KnownOrder, IsFollowedToTheEndOfALongFile) {
  std::vector<std::string> cells(200'000);
  for (std::size_t index = 0; index < cells.size(); ++index) cells[index] = std::to_string(index);
  EXPECT_TRUE(isKnown(cells));
  cells.back() = "199998";
  EXPECT_FALSE(isKnown(cells));
}

}  // namespace
}  // namespace workbench::data
