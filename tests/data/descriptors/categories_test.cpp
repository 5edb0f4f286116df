// Categories and constraints: what a field is restricted to, and the labels and the order that come with it.
#include <gtest/gtest.h>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::MeasurementLevel;

std::string shownCategories(const DescribedField& field) {
  if (!field.categories) return "none";
  return fmt::format("{}{}", fmt::join(field.categories->numbers, ","), fmt::join(field.categories->texts, ","));
}

TEST(Categories, AreValuesOrObjectsWithLabels) {
  const DescribedField plain = fieldWith(R"("type": "integer", "categories": [1, 3, 2])");
  EXPECT_EQ(shownCategories(plain), "1,3,2");
  EXPECT_EQ(shownLabels(plain.variable), "");
  const DescribedField labelled =
      fieldWith(R"("type": "integer", "categories": [{"value": 1, "label": "low"}, {"value": 3}])");
  EXPECT_EQ(shownCategories(labelled), "1,3");
  EXPECT_EQ(shownLabels(labelled.variable), "1=low");
  const DescribedField texts = fieldWith(R"("type": "string", "categories": ["b", "a "])");
  EXPECT_EQ(shownCategories(texts), "b,a") << "blanks at the end are no part of a text";
}

TEST(Categories, DecideTheLevel) {
  EXPECT_EQ(fieldWith(R"("type": "integer", "categories": [1])").variable.level, MeasurementLevel::nominal);
  EXPECT_EQ(fieldWith(R"("type": "integer", "categories": [1], "categoriesOrdered": false)").variable.level,
            MeasurementLevel::nominal);
  EXPECT_EQ(fieldWith(R"("type": "string", "categories": ["a"], "categoriesOrdered": true)").variable.level,
            MeasurementLevel::ordinal);
  EXPECT_EQ(fieldWith(R"("type": "integer", "categoriesOrdered": true)").variable.level, MeasurementLevel::scale)
      << "without categories there is nothing in an order";
  EXPECT_EQ(fieldWith(R"("type": "integer", "categories": [1], "categoriesOrdered": true,
                         "statistics:variable": {"level": "scale"})")
                .variable.level,
            MeasurementLevel::scale);
}

TEST(Categories, OfOtherTypesArePassedOverWithAWarning) {
  const DescribedTable table = tableWith(R"("type": "number", "categories": ["whatever", 1])");
  EXPECT_EQ(shownWarnings(table),
            "Field \"a\": \"categories\" are passed over, because a field of type \"number\" has none.");
  EXPECT_EQ(shownCategories(table.fields.at(0)), "none");
  EXPECT_EQ(table.fields.at(0).variable.level, MeasurementLevel::scale);
}

TEST(Categories, AreUniqueUnmixedAndOfTheFieldsType) {
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [])"),
            "/categories: \"categories\" lists no value. List all values that the field may hold, or leave it out.");
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [1, 2, 1.0])"),
            "/categories/2: The category 1 is listed twice. List it once.");
  EXPECT_EQ(
      problemWith(R"("type": "string", "categories": [{"value": "a", "label": "x"}, {"value": "b", "label": "x"}])"),
      "/categories/1: Two categories have the label \"x\". Give each a label of its own.");
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [1, {"value": 2}])"),
            "/categories/1: Values and objects stand in the same list of categories. Write all as values, or all as "
            "objects with \"value\" and \"label\".");
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": ["1"])"),
            "/categories/0: An entry of \"categories\" is a text, and has to be a number. Write a number without "
            "quotes.");
  EXPECT_EQ(
      problemWith(R"("type": "integer", "categories": [1.5])"),
      "/categories/0: An entry of \"categories\" is 1.5, and the field holds whole numbers. Write a whole number.");
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [9007199254740993])"),
            "/categories/0: An entry of \"categories\" is a number that no double holds as it is written. Write one of "
            "at most 15 digits, a whole one up to 2^53.");
}

TEST(Categories, CannotBeMissingAtOnce) {
  const std::string remedy =
      " Take it out of \"categories\" or of the \"missingValues\" in force, which are [\"\"] where none are listed.";
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [1, -9], "missingValues": ["-9"])"),
            "/categories/1: -9 is a category and a missing value at once." + remedy);
  EXPECT_EQ(problemWith(R"("type": "string", "categories": ["NA"], "missingValues": ["NA"])"),
            "/categories/0: \"NA\" is a category and a missing value at once." + remedy);
  EXPECT_EQ(problemWith(R"("type": "string", "categories": [""])"),
            "/categories/0: \"\" is a category and a missing value at once." + remedy);
  EXPECT_EQ(problemWith(R"("type": "string", "categories": [""], "missingValues": [])"), "no problem");
}

TEST(Categories, LetMissingValuesThatStayInTheDataPass) {
  EXPECT_EQ(shownCategories(fieldWith(R"("type": "integer", "categories": [1, 2],
                                         "missingValues": ["", "-1", "-2", "-3", "-4"])")),
            "1,2,-1,-2,-3,-4");
  EXPECT_EQ(shownCategories(fieldWith(R"("type": "integer", "categories": [1], "statistics:variable": {
                                         "missing": {"low": 90, "high": 98, "value": 99}})")),
            "1,99");
  EXPECT_EQ(shownCategories(fieldWith(R"("type": "string", "categories": ["a"], "missingValues": ["not asked"])")),
            "a,not asked");
}

TEST(OldLabels, AreReadAsLabelsAndRestrictNothing) {
  const DescribedField field = fieldWith(
      R"("type": "integer", "enumLabels": {"2": "high", "1": "low"}, "enumOrdered": true, "constraints": {"enum": [1, 2]})");
  EXPECT_EQ(shownLabels(field.variable), "1=low, 2=high");
  EXPECT_EQ(field.variable.level, MeasurementLevel::ordinal);
  EXPECT_EQ(shownCategories(field), "none");
  EXPECT_EQ(fieldWith(R"("type": "number", "enumLabels": {"1.5": "x"})").variable.level, MeasurementLevel::nominal);
}

TEST(OldLabels, OfTextsThatAreNoValuesAreLeftOut) {
  const DescribedTable table = tableWith(R"("type": "integer", "enumLabels": {"1": "one", "NA": "none"})");
  EXPECT_EQ(shownWarnings(table), "Field \"a\": the label of \"NA\" is left out, because it stands for no value.");
  EXPECT_EQ(shownLabels(table.fields.at(0).variable), "1=one");
}

TEST(Constraints, MayRestrictCategoriesFurther) {
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [1, 2], "constraints": {"enum": [1, "02"]})"),
            "no problem");
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [1, 2], "constraints": {"enum": [1, 3]})"),
            "/constraints/enum/1: An entry of \"enum\" is none of the field's categories. Take it out of \"enum\", or "
            "add it to \"categories\".");
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "string", "categories": ["a"], "constraints": {"enum": ["b"]})"),
                         "/constraints/enum/0:"));
}

TEST(Constraints, AreCheckedForTheirForm) {
  EXPECT_EQ(problemWith(R"("type": "number", "constraints": {"required": true, "unique": false, "minimum": 1,
                           "maximum": "2", "exclusiveMinimum": 0.5, "exclusiveMaximum": "3", "enum": ["1", 2],
                           "minLength": 0, "maxLength": 4, "pattern": "^a.*$", "jsonSchema": {}, "own": 1})"),
            "no problem");
  EXPECT_EQ(problemWith(R"("constraints": {"minimum": 1})"), "no problem");
  EXPECT_EQ(problemWith(R"("type": "boolean", "constraints": {"unique": true})"), "no problem");
  EXPECT_EQ(problemWith(R"("constraints": {"enum": []})"),
            "/constraints/enum: \"enum\" lists no value. List at least one, or leave it out.");
  EXPECT_EQ(problemWith(R"("constraints": {"enum": ["a", "a"]})"),
            "/constraints/enum/1: An entry of \"enum\" is listed twice. List it once.");
}

}  // namespace
}  // namespace workbench::data
