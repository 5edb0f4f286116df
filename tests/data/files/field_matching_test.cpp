#include "workbench/data/files/field_matching.h"

#include <gtest/gtest.h>

namespace workbench::data {
namespace {

DescribedTable fields(const std::vector<std::string>& names, FieldsMatch match) {
  DescribedTable table;
  table.descriptorPath = "datapackage.json";
  table.fieldsMatch = match;
  for (const std::string& name : names) {
    table.fields.emplace_back();
    table.fields.back().variable.name = name;
  }
  return table;
}

// "0 - 1": the field of every column; or what is wrong.
std::string matched(const DescribedTable& table, const std::vector<std::string>& header) {
  const auto outcome = matchFields(table, header, "data.csv");
  if (!outcome) return outcome.problem().what;
  std::string text;
  for (const auto& field : outcome->fieldOfColumn) {
    if (!text.empty()) text += ' ';
    text += field ? std::to_string(*field) : "-";
  }
  for (const std::string& warning : outcome->warnings) text += "; " + warning;
  return text;
}

TEST(FieldMatching, TakesTheSameFieldsInTheSameOrder) {
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::exact), {"a", "b"}), "0 1");
  EXPECT_EQ(matched(fields({"a", "a"}, FieldsMatch::exact), {"a", "a"}), "0 1");
}

TEST(FieldMatching, NamesTheFirstColumnThatIsCalledOtherwiseThanItsField) {
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::exact), {"a", "B"}),
            "Column 2 is called \"B\", and the field there \"b\".");
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::exact), {"b", "a"}),
            "Column 1 is called \"b\", and the field there \"a\".");
}

TEST(FieldMatching, CountsColumnsAndFieldsThatAreNotAsMany) {
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::exact), {"a"}),
            "The file has 1 column, and 2 fields are declared for it.");
  EXPECT_EQ(matched(fields({"a"}, FieldsMatch::exact), {"a", "b"}),
            "The file has 2 columns, and 1 field is declared for it.");
}

TEST(FieldMatching, TakesEqualFieldsInAnyOrder) {
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::equal), {"b", "a"}), "1 0");
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::equal), {"b"}), "No column holds the declared \"a\".");
  EXPECT_EQ(matched(fields({"a"}, FieldsMatch::equal), {"b", "a", "c"}), "No field is declared for \"b\", \"c\".");
}

TEST(FieldMatching, LetsTheFileHaveMoreColumnsThanASubsetOfFields) {
  EXPECT_EQ(matched(fields({"b"}, FieldsMatch::subset), {"a", "b"}), "- 0");
  EXPECT_EQ(matched(fields({"b", "c"}, FieldsMatch::subset), {"a", "b"}), "No column holds the declared \"c\".");
}

TEST(FieldMatching, LetsTheFileLackColumnsOfASupersetOfFields) {
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::superset), {"b"}),
            "1; No column holds \"a\", which datapackage.json declares.");
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::superset), {"b", "c"}), "No field is declared for \"c\".");
}

TEST(FieldMatching, AsksForOneCommonFieldOfAPartialMatch) {
  EXPECT_EQ(matched(fields({"a", "b"}, FieldsMatch::partial), {"c", "b"}),
            "- 1; No column holds \"a\", which datapackage.json declares.");
  EXPECT_EQ(matched(fields({"a"}, FieldsMatch::partial), {"c"}), "No column has the name of a declared field.");
}

TEST(FieldMatching, GivesAFieldToOneColumnOnly) {
  EXPECT_EQ(matched(fields({"a"}, FieldsMatch::subset), {"a", "a"}), "0 -");
}

TEST(FieldMatching, GoesByOrderWhereTheFileHasNoHeader) {
  DescribedTable table = fields({"a", "b"}, FieldsMatch::exact);
  table.dialect.headerRows.clear();
  EXPECT_EQ(matched(table, {"field1", "field2"}), "0 1");
  EXPECT_EQ(matched(table, {"field1"}), "The file has 1 column, and 2 fields are declared for it.");
  table.fieldsMatch = FieldsMatch::subset;
  EXPECT_EQ(matched(table, {"field1", "field2", "field3"}), "0 1 -");
}

TEST(FieldMatching, LeavesEveryColumnToInferenceWhereNothingIsDeclared) {
  EXPECT_EQ(matched(DescribedTable(), {"a", "b"}), "- -");
}

TEST(FieldMatching, SaysWhereToPutItRight) {
  const auto outcome = matchFields(fields({"a"}, FieldsMatch::exact), {"b"}, "data.csv");
  ASSERT_FALSE(outcome);
  EXPECT_EQ(outcome.problem().where, "data.csv");
  EXPECT_EQ(outcome.problem().remedy,
            "Correct the fields in datapackage.json, or say there with \"fieldsMatch\" how they match.");
}

}  // namespace
}  // namespace workbench::data
