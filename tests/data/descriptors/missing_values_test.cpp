// Missing values: which entries stay in the data, which stand for no value, and what cannot be kept.
#include <gtest/gtest.h>

#include <map>

#include "tests/data/descriptors/descriptor_fixture.h"
#include "workbench/data/descriptors/missing_codes.h"

namespace workbench::data {
namespace {

struct Missing {
  std::string kept;
  std::string none;
  std::string labels;
  std::string warnings;
};

Missing missingOf(std::string_view properties) {
  const DescribedTable table = tableWith(properties);
  if (table.fields.empty()) return {"none read", "", "", ""};
  const DescribedField& field = table.fields.front();
  return {shownMissing(field.variable), shownNoValue(field), shownLabels(field.variable), shownWarnings(table)};
}

TEST(DiscreteMissingValues, AreNoneOfARangeOrOfACodeThatStandsForNothing) {
  for (const auto& [code, count] : std::map<std::int32_t, std::size_t>{
           {0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 0}, {100, 0}, {-1, 0}, {-2, 0}, {-3, 0}, {-4, 0}}) {
    const MissingValues missing{code, {}};
    EXPECT_EQ(discreteValues(missing).size(), count) << code;
    EXPECT_EQ(discreteValues(missing).data(), missing.values.data()) << code;
  }
}

TEST(MissingEntries, AreTheEmptyTextWhereNoneAreListed) {
  const DescribedField field = fieldWith(R"("type": "number")");
  EXPECT_EQ(field.reading.noValueTexts, (std::vector<std::string>{""}));
  EXPECT_EQ(field.variable.missing.code, 0);
}

TEST(MissingEntries, MayBeNone) {
  EXPECT_TRUE(fieldWith(R"("type": "number", "missingValues": [])").reading.noValueTexts.empty());
}

TEST(MissingEntries, StayInTheDataWhenTheyReadAsValues) {
  const Missing missing = missingOf(R"("type": "number", "missingValues": ["", "-9", "NA", "-8.50"])");
  EXPECT_EQ(missing.kept, "-9 -8.5");
  EXPECT_EQ(missing.none, "|NA");
  EXPECT_EQ(missing.warnings, "");
}

TEST(MissingEntries, AreReadAsCellsOfTheFieldAre) {
  EXPECT_EQ(missingOf(R"("type": "integer", "missingValues": ["-9", "-9.0"])").kept, "-9");
  EXPECT_EQ(missingOf(R"("type": "integer", "missingValues": ["-9", "-9.0"])").none, "-9.0");
  EXPECT_EQ(missingOf(R"("type": "number", "decimalChar": ",", "missingValues": ["0,5", "0.5"])").kept, "0.5");
  EXPECT_EQ(missingOf(R"("type": "date", "format": "%d.%m.%Y", "missingValues": ["02.01.1970"])").kept, "1");
  EXPECT_EQ(missingOf(R"("type": "boolean", "missingValues": ["true", "x"])").kept, "1");
  EXPECT_EQ(missingOf(R"("type": "year", "missingValues": ["9999", "-9"])").kept, "9999");
  EXPECT_EQ(missingOf(R"("type": "year", "missingValues": ["9999", "-9"])").none, "-9");
  EXPECT_EQ(missingOf(R"("type": "datetime", "missingValues": ["1970-01-01T00:00:01", "1970-01-01T00:00:02Z"])").kept,
            "1 2");
}

TEST(MissingEntries, ThatReadAsTheSystemMissingValueStandForNone) {
  const Missing missing = missingOf(R"("type": "number", "missingValues": ["-1.7976931348623157e308", "-9"])");
  EXPECT_EQ(missing.kept, "-9");
  EXPECT_EQ(missing.none, "-1.7976931348623157e308");
}

TEST(MissingEntries, ThatAreTheSameValueAreOne) {
  EXPECT_EQ(missingOf(R"("type": "number", "missingValues": ["-9", "-9.0", "-9e0", "-1"])").kept, "-9 -1");
  EXPECT_EQ(missingOf(R"("type": "string", "missingValues": ["NA", "NA "])").kept, "'NA      '");
}

TEST(MissingEntries, OfAStringAreBlanksWhenTheyAreBlank) {
  const Missing missing = missingOf(R"("type": "string", "missingValues": ["", "  ", "NA", "refused"])");
  EXPECT_EQ(missing.kept, "'NA      ' 'refused '");
  EXPECT_EQ(missing.none, "|  ");
}

TEST(MissingEntries, OfAStringStayOrdinaryTextBeyondEightBytes) {
  const Missing missing = missingOf(R"("type": "string", "missingValues": ["not asked", "8 bytes!", "größen!!"])");
  EXPECT_EQ(missing.kept, "'8 bytes!'");
  EXPECT_EQ(missing.warnings,
            "Field \"a\": no missing value of a string may be longer than 8 bytes, so \"not asked\" and \"größen!!\" "
            "stay in the data as ordinary text.");
}

TEST(MissingEntries, BeyondThreeStayOrdinaryValues) {
  const Missing missing = missingOf(R"("type": "integer", "missingValues": ["", "-1", "-2", "-3", "-4", "-5"])");
  EXPECT_EQ(missing.kept, "-1 -2 -3");
  EXPECT_EQ(missing.warnings,
            "Field \"a\": a variable has at most 3 missing values, so -4 and -5 stay in the data as ordinary values.");
}

TEST(MissingEntries, GiveTheirLabelsToTheValues) {
  const Missing missing = missingOf(R"("type": "integer", "missingValues": [
      {"value": "-8", "label": "don't know"}, {"value": "-9", "label": "refused"}, {"value": ""}])");
  EXPECT_EQ(missing.kept, "-8 -9");
  EXPECT_EQ(missing.labels, "-9=refused, -8=don't know");
  EXPECT_EQ(missing.none, "");
  EXPECT_EQ(missing.warnings, "");
}

TEST(MissingEntries, LoseTheLabelsOfTextsThatAreNoValues) {
  const std::string list = R"([{"value": "", "label": "empty"}, {"value": "NA", "label": "n/a"}])";
  const DescribedTable table = tableOf(fmt::format(
      R"({{"missingValues": {}, "fields": [{{"name": "a", "type": "number"}}, {{"name": "b", "type": "string"}},
          {{"name": "c", "type": "number"}}, {{"name": "d", "type": "date"}}, {{"name": "e", "type": "date"}}]}})",
      list));
  EXPECT_EQ(shownWarnings(table),
            "Fields \"a\", \"b\", \"c\" and 2 more: the label of the missing value \"\" is left out, because this text "
            "stands for no value.\n"
            "Fields \"a\", \"c\", \"d\" and 1 more: the label of the missing value \"NA\" is left out, because this "
            "text stands for no value.");
  ASSERT_EQ(table.fields.size(), 5U);
  EXPECT_EQ(shownLabels(table.fields[1].variable), "'NA'=n/a");
}

TEST(MissingEntries, OfAFieldReplaceThoseOfTheSchemaAsAWhole) {
  const DescribedTable table = tableOf(R"({"missingValues": ["", "-1"], "fields": [
      {"name": "a", "type": "number"}, {"name": "b", "type": "number", "missingValues": ["-2"]}]})");
  ASSERT_EQ(table.fields.size(), 2U);
  EXPECT_EQ(shownMissing(table.fields[0].variable), "-1");
  EXPECT_EQ(table.fields[0].reading.noValueTexts.size(), 1U);
  EXPECT_EQ(shownMissing(table.fields[1].variable), "-2");
  EXPECT_TRUE(table.fields[1].reading.noValueTexts.empty());
}

TEST(MissingEntries, AreAllTextsOrAllObjectsAndEachOnce) {
  EXPECT_EQ(problemWith(R"("missingValues": ["", {"value": "x"}])"),
            "/missingValues/1: Texts and objects stand in the same list of missing values. Write all as texts, or all "
            "as objects with \"value\" and \"label\".");
  EXPECT_EQ(problemWith(R"("missingValues": ["x", "", "x"])"),
            "/missingValues/2: The missing value \"x\" is listed twice. List it once.");
  EXPECT_EQ(problemWith(R"("missingValues": [{"value": "x", "label": "l"}, {"value": "y", "label": "l"}])"),
            "/missingValues/1: Two missing values have the label \"l\". Give each a label of its own.");
  EXPECT_EQ(
      problemWith(R"("missingValues": [-9])"),
      "/missingValues/0: An entry of \"missingValues\" is a number, and has to be a text. Write a text in quotes.");
  EXPECT_EQ(problemWith(R"("missingValues": [{"label": "x"}])"),
            "/missingValues/0: An entry of \"missingValues\" has no \"value\". Add \"value\".");
}

TEST(MissingEntries, ThatAreTheSameValueCannotHaveTwoLabels) {
  EXPECT_EQ(problemWith(R"("type": "number",
                           "missingValues": [{"value": "-9", "label": "x"}, {"value": "-9.0", "label": "y"}])"),
            ": The value -9 has the labels \"x\" and \"y\". Give it one.");
}

}  // namespace
}  // namespace workbench::data
