// Fields: types, formats, the characters of numbers, the texts of truth values, names and labels.
#include <gtest/gtest.h>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

using VRIX_Variable_Enumerations::MeasurementLevel;

TEST(DescribedField, IsTextWithoutAType) {
  const DescribedField field = fieldWith("");
  EXPECT_EQ(field.variable.name, "a");
  EXPECT_EQ(field.reading.type, CellType::text);
  EXPECT_FALSE(field.variable.isNumeric());
  EXPECT_EQ(field.variable.level, MeasurementLevel::nominal);
  EXPECT_EQ(field.variable.label, std::nullopt);
  EXPECT_EQ(field.width, std::nullopt);
  EXPECT_EQ(field.format, std::nullopt);
  EXPECT_EQ(shownNoValue(field), "");
  EXPECT_EQ(field.reading.noValueTexts.size(), 1U);
}

TEST(DescribedField, ReadsItsCellsByItsType) {
  const std::vector<std::pair<const char*, CellType>> types = {
      {"string", CellType::text},       {"number", CellType::number}, {"integer", CellType::integer},
      {"boolean", CellType::boolean},   {"date", CellType::date},     {"time", CellType::time},
      {"datetime", CellType::dateTime}, {"year", CellType::year},     {"yearmonth", CellType::text},
      {"duration", CellType::duration}, {"list", CellType::text},     {"object", CellType::text},
      {"array", CellType::text},        {"geopoint", CellType::text}, {"geojson", CellType::text},
      {"any", CellType::text}};
  for (const auto& [name, type] : types) {
    const DescribedField field = fieldWith(fmt::format(R"("type": "{}")", name));
    EXPECT_EQ(field.reading.type, type) << name;
    EXPECT_EQ(field.variable.isNumeric(), type != CellType::text) << name;
    EXPECT_EQ(field.variable.level, type == CellType::text ? MeasurementLevel::nominal : MeasurementLevel::scale);
  }
}

TEST(DescribedField, NamesTheTypesWhenItsOwnIsNone) {
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "interger")"),
                         "/type: \"type\" is \"interger\", and has to be one of \"any\", \"stri"));
  EXPECT_TRUE(problemWith(R"("type": "interger")").ends_with("Did you mean \"integer\"?"));
}

TEST(DescribedField, TakesItsLabelFromTheTitle) {
  EXPECT_EQ(fieldWith(R"("title": "Größe in cm")").variable.label, "Größe in cm");
  EXPECT_EQ(fieldWith(R"("title": "")").variable.label, "");
}

TEST(DescribedField, KnowsTheFormatsOfItsType) {
  for (const char* const format : {"default", "email", "uri", "binary", "uuid"}) {
    EXPECT_EQ(problemWith(fmt::format(R"("type": "string", "format": "{}")", format)), "no problem");
    EXPECT_EQ(problemWith(fmt::format(R"("format": "{}")", format)), "no problem");
  }
  EXPECT_EQ(problemWith(R"("type": "geopoint", "format": "array")"), "no problem");
  EXPECT_EQ(problemWith(R"("type": "geojson", "format": "topojson")"), "no problem");
  EXPECT_EQ(problemWith(R"("type": "number", "format": "F8.2")"),
            "/format: \"format\" is \"F8.2\", and a field of type \"number\" knows only \"default\". It says how cells "
            "are read; how values are shown stands in \"statistics:variable\".");
  EXPECT_TRUE(
      beginsWith(problemWith(R"("type": "string", "format": "emial")"), "/format: \"format\" is \"emial\", and a f"));
}

TEST(DescribedField, TakesPatternsOfDatesAndTimes) {
  EXPECT_EQ(fieldWith(R"("type": "date", "format": "%d.%m.%Y")").reading.pattern, "%d.%m.%Y");
  EXPECT_EQ(fieldWith(R"("type": "date", "format": "fmt:%d.%m.%Y")").reading.pattern, "%d.%m.%Y");
  EXPECT_EQ(fieldWith(R"("type": "datetime", "format": "default")").reading.pattern, "");
  EXPECT_EQ(fieldWith(R"("type": "time", "format": "%H:%M")").reading.pattern, "%H:%M");
}

TEST(DescribedField, RefusesPatternsThatDetermineNothing) {
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "date", "format": "any")"),
                         "/format: \"format\" is \"any\"; this pattern leaves open how the"));
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "date", "format": "%d.%m.")"),
                         "/format: \"format\" is \"%d.%m.\"; this pattern does not determin"));
  EXPECT_EQ(problemWith(R"("type": "date", "format": "fmt:")"),
            "/format: \"format\" is empty. Write the pattern of the cells, or leave it out for ISO 8601.");
}

TEST(DescribedField, TakesTheCharactersOfNumbers) {
  const DescribedField field =
      fieldWith(R"("type": "number", "decimalChar": ",", "groupChar": "\u202f", "bareNumber": false)");
  EXPECT_EQ(field.reading.decimalChar, ",");
  EXPECT_EQ(field.reading.groupChar, "\u202f");
  EXPECT_FALSE(field.reading.bareNumber);
}

TEST(DescribedField, LetsIntegersBeGroupedByPoints) {
  EXPECT_EQ(fieldWith(R"("type": "integer", "groupChar": ".")").reading.groupChar, ".");
}

TEST(DescribedField, RefusesTheSameCharacterForGroupsAndDecimals) {
  EXPECT_EQ(problemWith(R"("type": "number", "groupChar": ".")"),
            ": \"groupChar\" and \"decimalChar\" are both \".\". Give both where numbers have a decimal comma: "
            "\"decimalChar\": \",\" and \"groupChar\": \".\".");
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "number", "decimalChar": "")"),
                         "/decimalChar: \"decimalChar\" has to be one character or more,"));
  EXPECT_TRUE(beginsWith(problemWith(R"("type": "integer", "groupChar": "0")"),
                         "/groupChar: \"groupChar\" has to be one character or more, non"));
}

TEST(DescribedField, TakesTheTextsOfTruthValues) {
  const DescribedField field = fieldWith(R"("type": "boolean", "trueValues": ["ja", "j"], "falseValues": ["nein"])");
  EXPECT_EQ(field.reading.trueTexts, (std::vector<std::string>{"ja", "j"}));
  EXPECT_EQ(field.reading.falseTexts, (std::vector<std::string>{"nein"}));
  EXPECT_EQ(fieldWith(R"("type": "boolean")").reading.trueTexts, CellReading().trueTexts);
  EXPECT_EQ(problemWith(R"("type": "boolean", "trueValues": [])"),
            "/trueValues: \"trueValues\" names no text. Name at least one, or leave it out.");
  EXPECT_EQ(problemWith(R"("type": "boolean", "trueValues": ["0"])"),
            ": \"0\" stands among the texts for true and among those for false. Give both \"trueValues\" and "
            "\"falseValues\", each text in one of them.");
}

TEST(DescribedField, PassesOverWhatDoesNotApplyToItsType) {
  EXPECT_EQ(problemWith(R"("type": "string", "decimalChar": 1, "groupChar": 2, "bareNumber": 3, "trueValues": 4,
                           "falseValues": 5, "example": 6, "description": 7, "rdfType": 8, "own:thing": 9)"),
            "no problem");
}

TEST(DescribedField, NeedsAName) {
  EXPECT_EQ(problemOf(schemaOfField("{}")),
            "people.schema.json, /fields/0: An entry of \"fields\" has no \"name\". Add \"name\".");
  EXPECT_EQ(problemOf(schemaOfField(R"({"name": "a\u0000b"})")),
            "people.schema.json, /fields/0/name: \"name\" holds a NUL character. Remove it.");
}

TEST(DescribedField, MayHaveTheNameOfAnother) {
  EXPECT_EQ(tableOf(R"({"fields": [{"name": "a"}, {"name": "a"}, {"name": "A"}]})").fields.size(), 3U);
}

}  // namespace
}  // namespace workbench::data
