// What is said of columns that are text because of a few cells, or of the other file.

#include <gtest/gtest.h>

#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

using Warnings = std::vector<std::string>;

Warnings warningsOf(const TestFolder& folder, const std::string& own, const std::string& other = "") {
  const std::string path = folder.write("own.csv", own);
  std::optional<std::string> typesWith;
  if (!other.empty()) typesWith = folder.write("other.csv", other);
  Warnings warnings = opened(path, typesWith)->warnings();
  const std::string prefix = folder.path("");
  for (std::string& warning : warnings) {
    if (const std::size_t at = warning.find(prefix); at != std::string::npos) warning.erase(at, prefix.size());
  }
  return warnings;
}

TEST(InferenceWarning, NamesTheCellThatMadeAColumnText) {
  const TestFolder folder;
  EXPECT_EQ(warningsOf(folder, "id,age\n1,34\n2,35\n3,n/a\n4,36\n"),
            (Warnings{"Column \"age\" is read as text: in own.csv, line 4, \"n/a\" is no number."}));
}

TEST(InferenceWarning, CountsTheLinesOfTheFile) {
  const TestFolder folder;
  EXPECT_EQ(warningsOf(folder, "t,age\n\"x\ny\",34\n\nz,35\n\"p\",36\nq,?\n"),
            (Warnings{"1 blank line stands between others, the first in line 4; it was skipped.",
                      "Column \"age\" is read as text: in own.csv, line 7, \"?\" is no number."}));
}

TEST(InferenceWarning, SaysWhyANumberIsNone) {
  const TestFolder folder;
  EXPECT_EQ(
      warningsOf(folder, "a,b,c,d\n1,1,1,1\n2,2,2,2\n3,3,3,3\n007,9007199254740993,1e400,0x1F\n"),
      (Warnings{"Column \"a\" is read as text: in own.csv, line 5, \"007\" has a leading zero.",
                "Column \"b\" is read as text: in own.csv, line 5, \"9007199254740993\" is a whole number beyond "
                "2^53, which is not held exactly.",
                "Column \"c\" is read as text: in own.csv, line 5, \"1e400\" is a number that is not held exactly.",
                "Column \"d\" is read as text: in own.csv, line 5, \"0x1F\" is no number."}));
}

TEST(InferenceWarning, ComesFromTheOtherFileToo) {
  const TestFolder folder;
  const std::string slashes = "date\n2012/01/01\n2012/01/02\n";
  const std::string dashes = "date\n2012-01-01\n2012-01-02\n";
  EXPECT_EQ(
      warningsOf(folder, slashes, dashes),
      (Warnings{"Column \"date\" is read as text: in own.csv, line 2, \"2012/01/01\" is no ISO date; the other file "
                "would have been read as a date."}));
  EXPECT_EQ(
      warningsOf(folder, dashes, slashes),
      (Warnings{"Column \"date\" is read as text: in other.csv, line 2, \"2012/01/01\" is no ISO date; this file alone "
                "would have been read as a date."}));
}

TEST(InferenceWarning, DoesNotComeForOrdinaryTexts) {
  const TestFolder folder;
  EXPECT_EQ(warningsOf(folder, "a,b\nx,1\ny,z\n5,w\n"), Warnings{});
  EXPECT_EQ(warningsOf(folder, "a\nx\n", "a\ny\n"), Warnings{});
  EXPECT_EQ(warningsOf(folder, "zip\n01234\n56789\n01235\n"), Warnings{});
}

TEST(InferenceWarning, ShowsTheBeginningOfALongText) {
  const TestFolder folder;
  EXPECT_EQ(warningsOf(folder, "a\n1\n2\n" + std::string(39, 'x') + "äöü\n"),
            (Warnings{"Column \"a\" is read as text: in own.csv, line 4, \"" + std::string(39, 'x') +
                      "...\" is no number."}));
}

TEST(InferenceWarning, IsGivenForTwentyColumnsAtMost) {
  const TestFolder folder;
  std::string names, ones, wrong;
  for (int column = 0; column < 25; ++column) {
    const char* comma = column == 0 ? "" : ",";
    names += fmt::format("{}v{}", comma, column);
    ones += fmt::format("{}1", comma);
    wrong += fmt::format("{}x", comma);
  }
  const Warnings warnings = warningsOf(folder, names + "\n" + ones + "\n" + ones + "\n" + ones + "\n" + wrong + "\n");
  ASSERT_EQ(warnings.size(), 21U);
  EXPECT_EQ(warnings.back(), "5 more columns are read as text because of single cells.");
}

}  // namespace
}  // namespace workbench::data
