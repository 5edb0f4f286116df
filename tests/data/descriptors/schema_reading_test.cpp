// Schemas: how fields match columns, and the form of keys.
#include <gtest/gtest.h>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

std::string schemaAnd(std::string_view properties) {
  return fmt::format(R"({{"fields": [{{"name": "id"}}, {{"name": "year"}}]{}{}}})", properties.empty() ? "" : ", ",
                     properties);
}

std::string problem(std::string_view properties) {
  const std::string text = problemOf(schemaAnd(properties));
  const std::string prefix = "people.schema.json, ";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

TEST(Schema, SaysHowFieldsMatchColumns) {
  EXPECT_EQ(tableOf(schemaAnd("")).fieldsMatch, FieldsMatch::exact);
  EXPECT_EQ(tableOf(schemaAnd(R"("fieldsMatch": "exact")")).fieldsMatch, FieldsMatch::exact);
  EXPECT_EQ(tableOf(schemaAnd(R"("fieldsMatch": "equal")")).fieldsMatch, FieldsMatch::equal);
  EXPECT_EQ(tableOf(schemaAnd(R"("fieldsMatch": "subset")")).fieldsMatch, FieldsMatch::subset);
  EXPECT_EQ(tableOf(schemaAnd(R"("fieldsMatch": "superset")")).fieldsMatch, FieldsMatch::superset);
  EXPECT_EQ(tableOf(schemaAnd(R"("fieldsMatch": ["partial"])")).fieldsMatch, FieldsMatch::partial);
  EXPECT_EQ(problem(R"("fieldsMatch": ["equal", "subset"])"),
            "/fieldsMatch: \"fieldsMatch\" is a list, and has to be one word. Write the word as a text.");
  EXPECT_TRUE(beginsWith(problem(R"("fieldsMatch": ["eqal"])"),
                         "/fieldsMatch/0: An entry of \"fieldsMatch\" is \"eqal\", and has to b"));
}

TEST(Schema, NeedsFields) {
  EXPECT_EQ(problemOf("{}"), "people.schema.json: The descriptor has no \"fields\". Add \"fields\".");
  EXPECT_EQ(problemOf(R"({"fields": []})"),
            "people.schema.json, /fields: \"fields\" lists no field. List one per column.");
  EXPECT_EQ(problemOf(R"({"fields": ["id"]})"),
            "people.schema.json, /fields/0: An entry of \"fields\" is a text, and has to be an object. Put its "
            "properties into braces.");
  EXPECT_EQ(problemOf("[]"),
            "people.schema.json: The descriptor is a list, and has to be an object. Put its properties into braces.");
}

TEST(Schema, MayHoldWhatOnlyOthersKnow) {
  EXPECT_EQ(problem(R"("$schema": 5, "title": 6, "name": 7, "own:thing": [8], "_private": null)"), "no problem");
}

TEST(Keys, NameFields) {
  EXPECT_EQ(problem(R"("primaryKey": ["id", "year"], "uniqueKeys": [["id"], ["year", "id"]])"), "no problem");
  EXPECT_EQ(problem(R"("primaryKey": "id")"), "no problem");
  EXPECT_EQ(problem(R"("primaryKey": ["idd"])"),
            "/primaryKey/0: An entry of \"primaryKey\" is \"idd\", and no field has this name. Write the name of a "
            "field. Did you mean \"id\"?");
  EXPECT_TRUE(beginsWith(problem(R"("primaryKey": "ID")"), "/primaryKey: \"primaryKey\" is \"ID"));
  EXPECT_EQ(problem(R"("primaryKey": [])"),
            "/primaryKey: \"primaryKey\" names no field. Name at least one, or leave it out.");
  EXPECT_EQ(problem(R"("primaryKey": ["id", "id"])"), "/primaryKey/1: The key names \"id\" twice. Name it once.");
  EXPECT_EQ(problem(R"("uniqueKeys": [])"),
            "/uniqueKeys: \"uniqueKeys\" lists no key. List at least one, or leave it out.");
  EXPECT_EQ(problem(R"("uniqueKeys": ["id"])"),
            "/uniqueKeys/0: An entry of \"uniqueKeys\" is a text, and has to be a list. Put it into brackets, even a "
            "single entry.");
  EXPECT_TRUE(beginsWith(problem(R"("uniqueKeys": [["id", 1]])"), "/uniqueKeys/0/1:"));
}

TEST(Keys, ReferToOtherTablesWithAsManyFields) {
  const auto foreign = [](std::string_view key) { return problem(fmt::format(R"("foreignKeys": [{}])", key)); };
  EXPECT_EQ(foreign(R"({"fields": ["id"], "reference": {"resource": "other", "fields": ["x"]}})"), "no problem");
  EXPECT_EQ(foreign(R"({"fields": "id", "reference": {"resource": "other", "fields": "x"}})"), "no problem");
  EXPECT_EQ(foreign(R"({"fields": ["id"], "reference": {"fields": ["year"]}})"), "no problem");
  EXPECT_EQ(foreign(R"({"fields": ["id"], "reference": {"resource": "", "fields": ["x"]}})"),
            "/foreignKeys/0/reference/fields/0: An entry of \"fields\" is \"x\", and no field has this name. Write the "
            "name of a field.");
  EXPECT_TRUE(beginsWith(foreign(R"({"fields": ["x"], "reference": {"resource": "other", "fields": ["x"]}})"),
                         "/foreignKeys/0/fields/0: "));
  EXPECT_EQ(foreign(R"({"fields": ["id"], "reference": {"resource": "other", "fields": ["x", "y"]}})"),
            "/foreignKeys/0: The foreign key has 1 fields and refers to 2. Name as many fields on both sides.");
  EXPECT_EQ(foreign(R"({"fields": ["id"]})"),
            "/foreignKeys/0: An entry of \"foreignKeys\" has no \"reference\". Add \"reference\".");
  EXPECT_TRUE(beginsWith(foreign(R"({"fields": ["id"], "reference": {"resource": 1, "fields": ["x"]}})"),
                         "/foreignKeys/0/reference/resource"));
}

}  // namespace
}  // namespace workbench::data
