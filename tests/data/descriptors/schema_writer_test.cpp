// Dictionaries as table schemas: which words they are written with, and what cannot be written.
#include "workbench/data/descriptors/schema_writer.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "tests/data/descriptors/dictionary_builder.h"
#include "workbench/data/cells/system_missing.h"

namespace workbench::data {
namespace {

Json fieldOf(const Variable& variable) { return fieldJson(variable); }
std::string missingOf(const Variable& variable) {
  const Json field = fieldOf(variable);
  const Json& statistics = field["statistics:variable"];
  return field.value("missingValues", Json()).dump() + " " + statistics.value("missing", Json()).dump();
}

TEST(SchemaText, IsASchemaForAFileOfItsOwn) {
  Dictionary dictionary;
  Variable id = numeric("id");
  id.label = "Case number";
  dictionary.add(id);
  dictionary.add(textual("town", 12));
  dictionary.weight = 0;
  dictionary.split = {1};
  const Outcome<std::string> text = schemaText(dictionary);
  ASSERT_TRUE(static_cast<bool>(text));
  EXPECT_EQ(*text, R"({
  "$schema": "https://datapackage.org/profiles/2.0/tableschema.json",
  "fields": [
    {
      "name": "id",
      "type": "number",
      "title": "Case number",
      "statistics:variable": {
        "format": {
          "type": "F",
          "width": 8,
          "decimals": 0
        },
        "columns": 8,
        "align": "right"
      }
    },
    {
      "name": "town",
      "type": "string",
      "statistics:variable": {
        "storageWidth": 12,
        "format": {
          "type": "A",
          "width": 12
        },
        "columns": 8,
        "align": "left"
      }
    }
  ],
  "statistics:dataset": {
    "weight": "id",
    "split": [
      "town"
    ]
  }
}
)");
}

TEST(SchemaText, WritesOnlyWhatIsNotUsual) {
  EXPECT_EQ(fieldOf(numeric("a"))["statistics:variable"].dump(),
            R"({"format":{"type":"F","width":8,"decimals":0},"columns":8,"align":"right"})");
  Variable variable = numeric("a");
  variable.level = VRIX_Variable_Enumerations::MeasurementLevel::nominal;
  variable.role = VRIX_Variable_Enumerations::Role::recordID;
  const Json statistics = fieldOf(variable)["statistics:variable"];
  EXPECT_EQ(statistics["level"], "nominal");
  EXPECT_EQ(statistics["role"], "recordID");
}

TEST(SchemaText, GivesTheTypeWhoseCellsAreWritten) {
  for (const auto& [format, type] :
       std::vector<std::pair<FormatType, std::string>>{{FormatType::number, "number"},
                                                       {FormatType::percent, "number"},
                                                       {FormatType::scientific, "number"},
                                                       {FormatType::date, "date"},
                                                       {FormatType::time, "time"},
                                                       {FormatType::dateTime, "datetime"}}) {
    Variable variable = numeric("a");
    variable.format.type = format;
    EXPECT_EQ(fieldOf(variable)["type"], type);
  }
}

TEST(WrittenMissingValues, AreTextsAsTheyStandInTheFile) {
  EXPECT_EQ(missingOf(withMissing(numeric("a"), {-9, 0.5, 1e300})), R"(["","-9","0.5","1e+300"] null)");
  EXPECT_EQ(missingOf(withMissing(dated("a"), {0, 20'000})), R"(["","1970-01-01","2024-10-04"] null)");
  EXPECT_EQ(missingOf(withMissingTexts(textual("a", 8), {"NA", "refused "})), R"(["","NA","refused"] null)");
  EXPECT_EQ(missingOf(numeric("a")), "null null");
}

TEST(WrittenMissingValues, AreDeclaredWhereNoTextSaysThem) {
  EXPECT_EQ(missingOf(withMissing(dated("a"), {0.5, 1})), R"(null {"values":[0.5,1]})") << "no calendar has half a day";
  EXPECT_EQ(missingOf(withMissing(numeric("a"), {0, -0.0})), R"(null {"values":[0,-0.0]})") << "as texts they are one";
  EXPECT_EQ(missingOf(withMissingTexts(textual("a", 8), {"", "x"})), R"(null {"values":["","x"]})")
      << "an empty cell stands for no value";
}

TEST(WrittenMissingValues, MayBeRanges) {
  EXPECT_EQ(missingOf(withRange(numeric("a"), -2, {1, 2.5, 0})), R"(null {"low":1,"high":2.5})");
  EXPECT_EQ(missingOf(withRange(numeric("a"), -3, {std::nextafter(-DBL_MAX, 0.0), DBL_MAX, 9})),
            R"(null {"low":"LO","high":"HI","value":9})");
  EXPECT_EQ(missingOf(withRange(numeric("a"), -2, {DBL_MAX, DBL_MAX, 0})),
            R"(null {"low":1.7976931348623157e+308,"high":"HI"})");
}

TEST(WrittenLabels, StandWithTheMissingValuesThatTheyBelongTo) {
  Variable variable = withMissing(numeric("a"), {-9, -8});
  variable.numberLabels = {{-9, "refused"}, {1, "yes"}};
  const Json field = fieldOf(variable);
  EXPECT_EQ(field["missingValues"].dump(), R"([{"value":""},{"value":"-9","label":"refused"},{"value":"-8"}])");
  EXPECT_EQ(field["statistics:variable"]["valueLabels"].dump(), R"([{"value":1,"label":"yes"}])");
}

TEST(WrittenLabels, StandApartWhereTwoMissingValuesHaveTheSame) {
  Variable variable = withMissingTexts(textual("a", 8), {"x", "y"});
  variable.textLabels = {{"x", "none"}, {"y", "none"}};
  const Json field = fieldOf(variable);
  EXPECT_EQ(field["missingValues"].dump(), R"(["","x","y"])");
  EXPECT_EQ(field["statistics:variable"]["valueLabels"].dump(),
            R"([{"value":"x","label":"none"},{"value":"y","label":"none"}])");
}

TEST(WrittenNumbers, ReadBackAsTheSameDouble) {
  EXPECT_EQ(schemaNumber(9), "9");
  EXPECT_EQ(schemaNumber(-0.0), "-0.0");
  EXPECT_EQ(schemaNumber(9007199254740992), "9007199254740992");
  EXPECT_EQ(schemaNumber(9007199254740994), "9.007199254740994e+15");
  EXPECT_EQ(schemaNumber(0.1), "0.1");
  EXPECT_EQ(schemaNumber(5e-324), "5e-324");
}

struct Unwritable {
  const char* name;
  void (*change)(Variable& variable);
  const char* problem;
};
class UnwritableVariable : public testing::TestWithParam<Unwritable> {};

TEST_P(UnwritableVariable, IsNamedWithTheReason) {
  Dictionary dictionary;
  Variable variable = numeric("a");
  GetParam().change(variable);
  dictionary.add(variable);
  const Outcome<std::string> text = schemaText(dictionary);
  ASSERT_FALSE(static_cast<bool>(text));
  EXPECT_EQ(text.problem().text(),
            fmt::format("The dictionary cannot be written: of variable {}. Change it first.", GetParam().problem));
}

constexpr double infinity = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    SchemaText, UnwritableVariable,
    testing::Values(
        Unwritable{"Name", [](Variable& v) { v.name = "\xFF"; }, "1 the name is no UTF-8"},
        Unwritable{"NulInName", [](Variable& v) { v.name = std::string("a\0", 2); },
                   "1 the name holds a NUL character"},
        Unwritable{"Label", [](Variable& v) { v.label = "\xC3"; }, "\"a\" the label is no UTF-8"},
        Unwritable{"ValueLabel", [](Variable& v) { v.numberLabels = {{1.5, "\xED\xA0\x80"}}; },
                   "\"a\" the label of the value 1.5 is no UTF-8"},
        Unwritable{"LabelledInfinity", [](Variable& v) { v.numberLabels = {{infinity, "x"}}; },
                   "\"a\" the value label \"x\" belongs to no value"},
        Unwritable{"LabelledSystemMissing", [](Variable& v) { v.numberLabels = {{systemMissing, "x"}}; },
                   "\"a\" the value label \"x\" belongs to no value"},
        Unwritable{"TwoLabels", [](Variable& v) { v.numberLabels = {{1, "x"}, {1, "y"}}; },
                   "\"a\" the value 1 has two labels"},
        Unwritable{"LabelledText",
                   [](Variable& v) {
                     v = textual("a", 3);
                     v.textLabels = {{"\x80", "x"}};
                   },
                   "\"a\" the value labels hold one that is no UTF-8"},
        Unwritable{"TwoLabelsOfText",
                   [](Variable& v) {
                     v = textual("a", 3);
                     v.textLabels = {{"x", "1"}, {"x ", "2"}};
                   },
                   "\"a\" the value \"x \" has two labels"},
        Unwritable{"Attribute", [](Variable& v) { v.attributes.Add("a", {"x", "\xFE"}); },
                   "\"a\" the attribute 1 is no UTF-8"},
        Unwritable{"FormatType", [](Variable& v) { v.format.type = static_cast<FormatType>(2); },
                   "\"a\" the print format has the type 2, which has no name"},
        Unwritable{"FormatOfText", [](Variable& v) { v.format = {FormatType::text, 8, 0}; },
                   "\"a\" the print format is one of strings"},
        Unwritable{"FormatOfNumber", [](Variable& v) { v.width = 8; }, "\"a\" the print format is one of numbers"},
        Unwritable{"FormatWidth", [](Variable& v) { v.format.width = 41; },
                   "\"a\" the print format has the width 41; it has to be 1 to 40"},
        Unwritable{"FormatDecimals", [](Variable& v) { v.format.decimals = 8; },
                   "\"a\" the print format has 8 decimals; they have to be 0 to 7"},
        Unwritable{"DisplayWidth", [](Variable& v) { v.displayWidth = 0; },
                   "\"a\" the display width is 0; it has to be 1 to 255"},
        Unwritable{"Alignment",
                   [](Variable& v) { v.alignment = static_cast<VRIX_Variable_Enumerations::Alignment>(3); },
                   "\"a\" the alignment has no name"},
        Unwritable{"Level",
                   [](Variable& v) { v.level = static_cast<VRIX_Variable_Enumerations::MeasurementLevel>(-1); },
                   "\"a\" the measurement level has no name"},
        Unwritable{"Role", [](Variable& v) { v.role = static_cast<VRIX_Variable_Enumerations::Role>(8); },
                   "\"a\" the role has no name"},
        Unwritable{"MissingCode", [](Variable& v) { v.missing.code = -1; },
                   "\"a\" the missing values have the code -1, which stands for nothing"},
        Unwritable{"MissingInfinity", [](Variable& v) { v = withMissing(numeric("a"), {1, infinity}); },
                   "\"a\" the missing value 2 is no value"},
        Unwritable{"ReversedRange", [](Variable& v) { v = withRange(numeric("a"), -2, {2, 1, 0}); },
                   "\"a\" the range of missing values has its lower end above the upper one"},
        Unwritable{"RangeOfString",
                   [](Variable& v) {
                     v = textual("a", 3);
                     v.missing.code = -2;
                   },
                   "\"a\" the missing values are a range, and it is a string"},
        Unwritable{"CutMissingText", [](Variable& v) { v = withMissingTexts(textual("a", 9), {"größe\xC3"}); },
                   "\"a\" the missing value 1 is no UTF-8"}),
    [](const auto& tested) { return tested.param.name; });

TEST(SchemaText, NeedsAVariable) {
  const Outcome<std::string> text = schemaText(Dictionary());
  ASSERT_FALSE(static_cast<bool>(text));
  EXPECT_EQ(text.problem().what, "A dictionary without variables cannot be written.");
}

TEST(SchemaText, NamesAttributesOfTheDatasetThatAreNoText) {
  Dictionary dictionary;
  dictionary.add(numeric("a"));
  dictionary.attributes.Add("\xFF", {});
  const Outcome<std::string> text = schemaText(dictionary);
  ASSERT_FALSE(static_cast<bool>(text));
  EXPECT_EQ(text.problem().text(),
            "The dictionary cannot be written: of the dataset the attribute 1 is no UTF-8. Change it first.");
}

}  // namespace
}  // namespace workbench::data
