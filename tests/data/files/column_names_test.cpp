#include "workbench/data/files/column_names.h"

#include <gtest/gtest.h>

namespace workbench::data {
namespace {

using Names = std::vector<std::string>;

TEST(ColumnNames, AreTakenExactly) {
  const ColumnNames names = columnNames({"id", " Größe (cm) ", "a\nb"});
  EXPECT_EQ(names.names, (Names{"id", " Größe (cm) ", "a\nb"}));
  EXPECT_TRUE(names.warnings.empty());
}

TEST(ColumnNames, AreChangedWhereTheyRepeatInAnotherCase) {
  const ColumnNames names = columnNames({"Age", "age", "AGE"});
  EXPECT_EQ(names.names, (Names{"Age", "age_1", "AGE_2"}));
  EXPECT_EQ(names.warnings, (Names{"The name of column 2, \"age\", repeats; the column is called \"age_1\".",
                                   "The name of column 3, \"AGE\", repeats; the column is called \"AGE_2\"."}));
}

TEST(ColumnNames, AreMadeUpWhereThereIsNone) {
  const ColumnNames names = columnNames({"", "b", ""});
  EXPECT_EQ(names.names, (Names{"column1", "b", "column3"}));
  EXPECT_EQ(names.warnings, (Names{"Column 1 has no name; it is called \"column1\".",
                                   "Column 3 has no name; it is called \"column3\"."}));
}

TEST(ColumnNames, ThatAreMadeUpTakeNoneThatStandsInTheHeader) {
  EXPECT_EQ(columnNames({"a", "a", "A_1", "", "column4"}).names, (Names{"a", "a_2", "A_1", "column4_1", "column4"}));
}

}  // namespace
}  // namespace workbench::data
