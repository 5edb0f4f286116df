// What can be written in several ways means the same in each.
#include <gtest/gtest.h>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

struct Pair {
  const char* name;
  const char* left;
  const char* right;
};

class SameField : public testing::TestWithParam<Pair> {};

TEST_P(SameField, IsReadFromBothWritings) {
  EXPECT_EQ(shown(fieldWith(GetParam().left)), shown(fieldWith(GetParam().right)));
}

INSTANTIATE_TEST_SUITE_P(
    DescribedField, SameField,
    testing::Values(Pair{"NoType", "", R"("type": "any")"},
                    Pair{"NoFormat", R"("type": "date")", R"("type": "date", "format": "default")"},
                    Pair{"OldPatternPrefix", R"("type": "date", "format": "fmt:%d.%m.%Y")",
                         R"("type": "date", "format": "%d.%m.%Y")"},
                    Pair{"NoMissingValues", R"("type": "number")", R"("type": "number", "missingValues": [""])"},
                    Pair{"MissingValuesAsObjects", R"("type": "number", "missingValues": ["", "NA"])",
                         R"("type": "number", "missingValues": [{"value": ""}, {"value": "NA"}])"},
                    Pair{"CategoriesAsObjects", R"("type": "string", "categories": ["a", "b"])",
                         R"("type": "string", "categories": [{"value": "a"}, {"value": "b"}])"},
                    Pair{"NoDecimalChar", R"("type": "number")", R"("type": "number", "decimalChar": ".")"},
                    Pair{"NoBareNumber", R"("type": "integer")", R"("type": "integer", "bareNumber": true)"},
                    Pair{"NoTruthTexts", R"("type": "boolean")",
                         R"("type": "boolean", "trueValues": ["true", "True", "TRUE", "1"],
                "falseValues": ["false", "False", "FALSE", "0"])"},
                    Pair{"NoConstraints", R"("type": "number")", R"("type": "number", "constraints": {})"},
                    Pair{"NotRequired", R"("type": "number")",
                         R"("type": "number", "constraints": {"required": false})"},
                    Pair{"EnumAsTexts", R"("type": "number", "constraints": {"enum": ["1"]})",
                         R"("type": "number", "constraints": {"enum": [1]})"}),
    [](const auto& tested) { return tested.param.name; });

std::string tableText(std::string_view properties) {
  return shown(tableOf(fmt::format(R"({{"fields": [{{"name": "a"}}, {{"name": "b"}}]{}}})", properties)));
}

TEST(SameSchema, IsReadFromBothWritings) {
  EXPECT_EQ(tableText(R"(, "fieldsMatch": "exact")"), tableText(""));
  EXPECT_EQ(tableText(R"(, "fieldsMatch": ["equal"])"), tableText(R"(, "fieldsMatch": "equal")"));
  EXPECT_EQ(tableText(R"(, "missingValues": [""])"), tableText(""));
  EXPECT_EQ(tableText(R"(, "primaryKey": "a")"), tableText(R"(, "primaryKey": ["a"])"));
  EXPECT_EQ(tableText(R"(, "foreignKeys": [{"fields": ["a"], "reference": {"resource": "", "fields": ["b"]}}])"),
            tableText(R"(, "foreignKeys": [{"fields": ["a"], "reference": {"fields": ["b"]}}])"));
  EXPECT_EQ(tableText(R"(, "$schema": "whatever")"), tableText(""));
}

TEST(SameSchema, TellsAnEmptyTitleFromNone) { EXPECT_NE(shown(fieldWith(R"("title": "")")), shown(fieldWith(""))); }

}  // namespace
}  // namespace workbench::data
