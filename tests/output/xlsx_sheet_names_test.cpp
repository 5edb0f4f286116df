#include "workbench/output/xlsx_sheet_names.h"

#include <gtest/gtest.h>

namespace workbench::output {
namespace {

TEST(XlsxSheetNames, AreTheHeadingsWhereTheseAreAllowed) {
  XlsxSheetNames names("Table");
  EXPECT_EQ(names.nameFor("Matched Summary"), "Matched Summary");
  EXPECT_EQ(names.nameFor("日本の町"), "日本の町");
}

TEST(XlsxSheetNames, HaveNoneOfTheCharactersThatSpreadsheetsForbid) {
  XlsxSheetNames names("Table");
  EXPECT_EQ(names.nameFor("[a]:b*c?d/e\\f"), "(a)-b-c-d-e-f");
  EXPECT_EQ(names.nameFor("'quoted'"), "\u2019quoted\u2019");
  EXPECT_EQ(names.nameFor("two\nlines\x1b"), "two lines\u241B");
}

TEST(XlsxSheetNames, AreAtMost31UnitsLong) {
  XlsxSheetNames names("Table");
  EXPECT_EQ(names.nameFor("1234567890123456789012345678901"), "1234567890123456789012345678901");
  EXPECT_EQ(names.nameFor("123456789012345678901234567890-2"), "123456789012345678901234567890-");
  // Two units each, so that 15 of them fit.
  std::string faces;
  for (int face = 0; face < 20; ++face) faces += "\U0001F600";
  EXPECT_EQ(names.nameFor(faces).size(), 15U * 4);
}

TEST(XlsxSheetNames, AreNumberedWhereTheyWouldBeTheSameInAnotherCase) {
  XlsxSheetNames names("Table");
  EXPECT_EQ(names.nameFor("Ämter"), "Ämter");
  EXPECT_EQ(names.nameFor("ÄMTER"), "ÄMTER (2)");
  EXPECT_EQ(names.nameFor("ämter"), "ämter (3)");
  EXPECT_EQ(names.nameFor("12345678901234567890123456789012"), "1234567890123456789012345678901");
  EXPECT_EQ(names.nameFor("12345678901234567890123456789012"), "123456789012345678901234567 (2)");
}

TEST(XlsxSheetNames, AreNeverEmptyAndNeverOneThatIsTaken) {
  XlsxSheetNames names("Table");
  EXPECT_EQ(names.nameFor(""), "Table");
  EXPECT_EQ(names.nameFor("   "), "Table (2)");
  EXPECT_EQ(names.nameFor("History"), "History (2)");
}

}  // namespace
}  // namespace workbench::output
