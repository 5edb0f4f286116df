// What a field says of its variable beyond the standard's words.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/data/descriptors/descriptor_fixture.h"
#include "workbench/data/descriptors/statistics_words.h"

namespace workbench::data {
namespace {

std::string with(std::string_view type, std::string_view parts) {
  return fmt::format(R"("type": "{}", "statistics:variable": {{{}}})", type, parts);
}
DescribedField field(std::string_view type, std::string_view parts) { return fieldWith(with(type, parts)); }
// Without the place's beginning.
std::string problem(std::string_view type, std::string_view parts) {
  const std::string text = problemWith(with(type, parts));
  const std::string prefix = "/statistics:variable";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

TEST(StatisticsVariable, SaysAllOfAVariable) {
  const DescribedField read = field("number", R"("format": {"type": "COMMA", "width": 12, "decimals": 2}, "columns": 10,
      "align": "center", "level": "ordinal", "role": "target",
      "valueLabels": [{"value": 0, "label": "none"}, {"value": 99999.5, "label": "cut off"}],
      "missing": {"low": "LO", "high": -1, "value": 99},
      "attributes": {"Unit": ["EUR"], "$Source": ["Q12", "Q13"], "Empty": []})");
  const Variable& variable = read.variable;
  EXPECT_EQ(shownFormat(*read.format), "COMMA12.2");
  EXPECT_EQ(shownFormat(variable.format), "COMMA12.2");
  EXPECT_EQ(read.displayWidth, 10);
  EXPECT_EQ(variable.displayWidth, 10);
  EXPECT_EQ(variable.alignment, VRIX_Variable_Enumerations::Alignment::center);
  EXPECT_EQ(variable.level, VRIX_Variable_Enumerations::MeasurementLevel::ordinal);
  EXPECT_EQ(variable.role, VRIX_Variable_Enumerations::Role::target);
  EXPECT_EQ(shownLabels(variable), "0=none, 99999.5=cut off");
  EXPECT_EQ(shownAttributes(variable.attributes), "Unit=[EUR] $Source=[Q12,Q13] Empty=[]");
  EXPECT_EQ(variable.missing.code, -3);
  EXPECT_EQ(variable.missing.values[0].number, std::nextafter(-DBL_MAX, 0.0));
  EXPECT_EQ(variable.missing.values[1].number, -1);
  EXPECT_EQ(variable.missing.values[2].number, 99);
}

TEST(StatisticsVariable, LeavesOpenWhatItDoesNotSay) {
  const DescribedField read = field("string", "");
  EXPECT_EQ(read.width, std::nullopt);
  EXPECT_EQ(read.format, std::nullopt);
  EXPECT_EQ(read.displayWidth, std::nullopt);
  EXPECT_EQ(read.alignment, std::nullopt);
  EXPECT_EQ(read.variable.role, VRIX_Variable_Enumerations::Role::input);
}

TEST(StorageWidth, IsForStringsOnly) {
  EXPECT_EQ(field("string", R"("storageWidth": 32767)").variable.width, 32767);
  EXPECT_EQ(field("string", R"("storageWidth": 1)").width, 1);
  EXPECT_EQ(problem("string", R"("storageWidth": 32768)"),
            "/storageWidth: \"storageWidth\" is not a whole number of 1 to 32767. Write such a number without quotes.");
  EXPECT_EQ(problem("integer", R"("storageWidth": 8)"),
            "/storageWidth: \"storageWidth\" is for strings only, and this field is a number. Leave it out.");
}

TEST(PrintFormat, FitsItsVariable) {
  for (const FormatTypeRow& row : formatTypeRows) {
    const bool isText = row.type == FormatType::text;
    const DescribedField read =
        field(isText ? "string" : "number", fmt::format(R"("format": {{"type": "{}", "width": 8}})", row.name));
    EXPECT_EQ(read.variable.format.type, row.type);
    EXPECT_EQ(read.variable.format.decimals, 0);
  }
  EXPECT_EQ(problem("string", R"("format": {"type": "F", "width": 8})"),
            "/format/type: \"type\" is a format of numbers, and this field is a string. Write \"A\".");
  EXPECT_EQ(problem("date", R"("format": {"type": "A", "width": 8})"),
            "/format/type: \"type\" is for strings, and this field is a number. Write a format of numbers, such as "
            "\"F\".");
  EXPECT_TRUE(problem("date", R"("format": {"type": "DATTE", "width": 8})").ends_with("Did you mean \"DATE\"?"));
}

TEST(PrintFormat, IsBounded) {
  const auto numeric = [](std::string_view type, int width, int decimals) {
    return problem("number",
                   fmt::format(R"("format": {{"type": "{}", "width": {}, "decimals": {}}})", type, width, decimals));
  };
  EXPECT_EQ(numeric("F", 40, 16), "no problem");
  EXPECT_EQ(numeric("F", 1, 0), "no problem");
  EXPECT_EQ(numeric("TIME", 40, 31), "no problem");
  EXPECT_EQ(numeric("F", 41, 0),
            "/format/width: \"width\" is not a whole number of 1 to 40. Write such a number without quotes.");
  EXPECT_TRUE(beginsWith(numeric("F", 0, 0), "/format/width:"));
  EXPECT_TRUE(beginsWith(numeric("F", 40, 17), "/format/decimals:"));
  EXPECT_EQ(numeric("F", 8, 8),
            "/format/decimals: \"decimals\" is not a whole number of 0 to 7. Write such a number without quotes.");
  EXPECT_EQ(problem("string", R"("format": {"type": "A", "width": 32767})"), "no problem");
  EXPECT_TRUE(
      beginsWith(problem("string", R"("format": {"type": "A", "width": 8, "decimals": 1})"), "/format/decimals:"));
  EXPECT_EQ(problem("number", R"("format": {"type": "F"})"), "/format: \"format\" has no \"width\". Add \"width\".");
}

TEST(DisplayWidth, IsOneTo255) {
  EXPECT_EQ(problem("number", R"("columns": 255)"), "no problem");
  EXPECT_TRUE(beginsWith(problem("number", R"("columns": 0)"), "/columns:"));
  EXPECT_TRUE(beginsWith(problem("number", R"("columns": 256)"), "/columns:"));
  EXPECT_TRUE(beginsWith(problem("number", R"("columns": 8.5)"), "/columns:"));
  EXPECT_EQ(problem("number", R"("columns": 8.0)"), "no problem");
}

TEST(StatisticsVariable, KnowsItsWords) {
  for (const auto& row : alignmentWords) {
    EXPECT_EQ(field("number", fmt::format(R"("align": "{}")", row.word)).alignment, row.meaning);
  }
  for (const auto& row : levelWords) {
    EXPECT_EQ(field("number", fmt::format(R"("level": "{}")", row.word)).variable.level, row.meaning);
  }
  for (const auto& row : roleWords) {
    EXPECT_EQ(field("number", fmt::format(R"("role": "{}")", row.word)).variable.role, row.meaning);
  }
  EXPECT_EQ(problem("number", R"("align": "centre")"),
            "/align: \"align\" is \"centre\", and has to be one of \"left\", \"right\" or \"center\". Write one of "
            "these words. Did you mean \"center\"?");
}

TEST(StatisticsVariable, RefusesAPartThatItDoesNotKnow) {
  EXPECT_TRUE(beginsWith(problem("number", R"("lable": "x")"),
                         "/lable: \"lable\" is no part of \"statistics:variable\". Its pa"));
  EXPECT_TRUE(problem("number", R"("colums": 8)").ends_with("Did you mean \"columns\"?"));
  EXPECT_EQ(
      problem("number", R"("format": {"type": "F", "width": 8, "decimal": 2})"),
      "/format/decimal: \"decimal\" is no part of \"format\". Its parts are \"type\", \"width\" and \"decimals\". "
      "Did you mean \"decimals\"?");
  EXPECT_TRUE(beginsWith(problem("number", R"("missing": {"value": 1, "hi": 2})"), "/missing/hi:"));
  EXPECT_TRUE(beginsWith(problem("number", R"("valueLabels": [{"value": 1, "label": "x", "color": "red"}])"),
                         "/valueLabels/0/color:"));
}

TEST(ValueLabelsOfAField, AreOfItsType) {
  EXPECT_EQ(
      shownLabels(
          field("string", R"("valueLabels": [{"value": "b ", "label": "x"}, {"value": "a", "label": ""}])").variable),
      "'a'=, 'b'=x");
  EXPECT_EQ(
      shownLabels(field("boolean", R"("valueLabels": [{"value": true, "label": "yes"}, {"value": 0, "label": "no"}])")
                      .variable),
      "0=no, 1=yes");
  EXPECT_EQ(
      shownLabels(field("date", R"("valueLabels": [{"value": "1970-01-02", "label": "x"}, {"value": 5, "label": "y"}])")
                      .variable),
      "1=x, 5=y");
  EXPECT_EQ(problem("integer", R"("valueLabels": [{"value": 1.5, "label": "x"}])"),
            "/valueLabels/0/value: \"value\" is 1.5, and the field holds whole numbers. Write a whole number.");
  EXPECT_EQ(problem("number", R"("valueLabels": [{"value": "1", "label": "x"}])"),
            "/valueLabels/0/value: \"value\" is a text, and has to be a number. Write a number without quotes.");
  EXPECT_TRUE(
      beginsWith(problem("boolean", R"("valueLabels": [{"value": 2, "label": "x"}])"), "/valueLabels/0/value: "));
  EXPECT_EQ(problem("date", R"("valueLabels": [{"value": "1970", "label": "x"}])"),
            "/valueLabels/0/value: \"value\" is \"1970\", which is no date like 2026-11-21. Write it as in a cell.");
  EXPECT_EQ(problem("number", R"("valueLabels": [{"value": -1.7976931348623157e308, "label": "x"}])"),
            "/valueLabels/0/value: \"value\" is the number that stands for no value at all. Write another number.");
}

TEST(ValueLabelsOfAField, StandOnceEach) {
  EXPECT_EQ(problem("number", R"("valueLabels": [{"value": 1, "label": "x"}, {"value": 1.0, "label": "x"}])"),
            "/valueLabels: The value 1 is labelled twice. List it once.");
}

TEST(ValueLabelsOfAField, AreJoinedWithThoseOfCategoriesAndMissingValues) {
  const std::string properties = R"("type": "integer", "categories": [{"value": 1, "label": "one"}],
      "missingValues": [{"value": "-9", "label": "refused"}],
      "statistics:variable": {"valueLabels": [{"value": 5, "label": "five"}, {"value": 1, "label": "one"}]})";
  EXPECT_EQ(shownLabels(fieldWith(properties).variable), "-9=refused, 1=one, 5=five");
  EXPECT_EQ(problemWith(R"("type": "integer", "categories": [{"value": 1, "label": "one"}],
      "statistics:variable": {"valueLabels": [{"value": 1, "label": "uno"}]})"),
            "/statistics:variable/valueLabels/0: The value 1 has the labels \"one\" and \"uno\". Give it one.");
}

TEST(DeclaredMissing, TakesThePlaceOfUserMissingEntries) {
  const DescribedTable table = tableWith(R"("type": "number", "missingValues": ["", "-1", "-2", "-3", "-4", "NA"],
      "statistics:variable": {"missing": {"values": [7, 8]}})");
  EXPECT_EQ(shownMissing(table.fields.at(0).variable), "7 8");
  EXPECT_EQ(shownNoValue(table.fields.at(0)), "|NA");
  EXPECT_EQ(shownWarnings(table), "") << "the entries are not what is kept, so none of them is one too many";
}

TEST(DeclaredMissing, IsARangeOrOneToThreeValues) {
  const auto missing = [](std::string_view type, std::string_view parts) {
    return shownMissing(field(type, fmt::format(R"("missing": {{{}}})", parts)).variable);
  };
  EXPECT_EQ(missing("number", R"("low": 1, "high": 2.5)"), "range 1 2.5");
  EXPECT_EQ(missing("number", R"("low": 1, "high": 1, "value": -0.5)"), "range 1 1 -0.5");
  EXPECT_EQ(missing("date", R"("low": "LO", "high": "HI")"), "range -1.7976931348623155e+308 1.7976931348623157e+308");
  EXPECT_EQ(missing("number", R"("values": [3, 1, 2])"), "3 1 2");
  EXPECT_EQ(missing("string", R"("values": ["NA  ", ""])"), "'NA      ' '        '");
}

TEST(DeclaredMissing, RefusesWhatNoVariableKeeps) {
  const auto refused = [](std::string_view type, std::string_view parts) {
    return problem(type, fmt::format(R"("missing": {{{}}})", parts));
  };
  EXPECT_EQ(refused("number", R"("low": 2, "high": 1)"),
            "/missing: The lower end of the range lies above the upper one. Exchange \"low\" and \"high\".");
  EXPECT_EQ(refused("number", R"("low": 2)"), "/missing: \"missing\" has no \"high\". Add \"high\".");
  EXPECT_EQ(refused("number", ""), "/missing: \"missing\" has no \"low\". Add \"low\".");
  EXPECT_EQ(refused("number", R"("low": "HI", "high": "HI")"),
            "/missing/low: \"low\" has to be a number or \"LO\". Write one of them.");
  EXPECT_EQ(refused("number", R"("low": "LO", "high": "hi")"),
            "/missing/high: \"high\" has to be a number or \"HI\". Write one of them.");
  EXPECT_EQ(refused("string", R"("low": "LO", "high": "HI")"),
            "/missing: \"missing\" is a range, and a string has no range of missing values. Write \"values\" with one "
            "to three texts.");
  EXPECT_EQ(
      refused("number", R"("values": [])"),
      "/missing/values: \"values\" has 0 entries, and a variable has one to three missing values. Use a range for "
      "more, or leave \"missing\" out where there is none.");
  EXPECT_TRUE(
      beginsWith(refused("number", R"("values": [1, 2, 3, 4])"), "/missing/values: \"values\" has 4 entries, "));
  EXPECT_EQ(refused("number", R"("values": [1], "low": 2)"),
            "/missing: \"missing\" gives \"values\" beside a range. Write either \"values\", or \"low\" and \"high\".");
  EXPECT_EQ(refused("number", R"("values": ["1"])"),
            "/missing/values/0: An entry of \"values\" is a text, and has to be a number. Write a number without "
            "quotes.");
  EXPECT_TRUE(beginsWith(refused("date", R"("values": ["2026-11-21"])"), "/missing/values/0:"));
  EXPECT_TRUE(beginsWith(refused("string", R"("values": [1])"), "/missing/values/0:"));
  EXPECT_EQ(
      refused("string", R"("values": ["not asked"])"),
      "/missing/values/0: An entry of \"values\" is \"not asked\", and no missing value of a string may be longer "
      "than 8 bytes. Take it out; its label, if it has one, may stay.");
  EXPECT_EQ(refused("number", R"("values": [-1.7976931348623157e308])"),
            "/missing/values/0: An entry of \"values\" is the number that stands for no value at all. Write another "
            "number.");
}

TEST(AttributesOfAField, AreNamedListsOfTexts) {
  EXPECT_EQ(problem("number", R"("attributes": {"Unit": "EUR"})"),
            "/attributes/Unit: \"Unit\" is a text, and has to be a list. Put it into brackets, even a single entry.");
  EXPECT_EQ(problem("number", R"("attributes": {"Unit": ["EUR", 1]})"),
            "/attributes/Unit/1: An entry of \"Unit\" is a number, and has to be a text. Write a text in quotes.");
}

}  // namespace
}  // namespace workbench::data
