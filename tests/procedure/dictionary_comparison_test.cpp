// The dictionary comparison: when the properties of two paired variables count as equal.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/procedure/procedure_run.h"
#include "tests/procedure/table_keys.h"

namespace workbench::tests::dictionary_comparison_test {

namespace enumerations = VRIX_Variable_Enumerations;
using Change = DatasetBuilder::Change;

bool differs(const DatasetBuilder& active, const DatasetBuilder& compared, const std::string& properties) {
  ProcedureRun run(active, compared);
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=" + properties);
  const bool hasTable = run.table(keys::dictionary) != nullptr;
  // Either the table or the message that there is nothing to show.
  EXPECT_EQ(run.messages().find("All attribute values in the da...") == std::string::npos, hasTable);
  return hasTable;
}

// Of two numbers that are changed like this.
bool numbersDiffer(const std::string& properties, const Change& active, const Change& compared) {
  return differs(dataset().numeric("x", {1}, active), dataset().numeric("x", {1}, compared), properties);
}
bool textsDiffer(const std::string& properties, const Change& active, const Change& compared) {
  return differs(dataset().text("x", 8, {"a"}, active), dataset().text("x", 8, {"a"}, compared), properties);
}

Change missingValues(std::int32_t code, const std::vector<double>& values) {
  return [=](data::Variable& variable) {
    variable.missing.code = code;
    for (std::size_t place = 0; place < values.size(); ++place) variable.missing.values[place].number = values[place];
  };
}

Change missingTexts(std::int32_t code, const std::vector<std::string>& values) {
  return [=](data::Variable& variable) {
    variable.missing.code = code;
    for (std::size_t place = 0; place < values.size(); ++place) {
      std::memcpy(variable.missing.values[place].text, values[place].data(), 8);
    }
  };
}

// Every property by its keyword, with a change that touches it alone.
struct PropertyCase {
  const char* keyword;
  Change change;
};
const std::vector<PropertyCase> properties = {
    {"MEASURE", [](data::Variable& x) { x.level = enumerations::MeasurementLevel::ordinal; }},
    {"WIDTH", [](data::Variable& x) { x.format.width = 11; }},
    {"LABEL", [](data::Variable& x) { x.label = "X"; }},
    {"VALUELABELS", [](data::Variable& x) { x.numberLabels = {{1, "one"}}; }},
    {"MISSING", missingValues(1, {9})},
    {"COLUMNS", [](data::Variable& x) { x.displayWidth = 12; }},
    {"ALIGN", [](data::Variable& x) { x.alignment = enumerations::Alignment::center; }},
    {"ROLE", [](data::Variable& x) { x.role = enumerations::Role::target; }},
    {"ATTRIBUTES", [](data::Variable& x) { x.attributes.Add("Unit", {"EUR"}); }},
};

TEST(DictionaryComparison, FindsEveryPropertyUnderItsKeywordAndUnderAllAndUnderNoOther) {
  for (const PropertyCase& changed : properties) {
    for (const PropertyCase& selected : properties) {
      EXPECT_EQ(numbersDiffer(selected.keyword, {}, changed.change), &changed == &selected)
          << changed.keyword << " under " << selected.keyword;
    }
    EXPECT_TRUE(numbersDiffer("ALL", changed.change, {})) << changed.keyword;
  }
}

TEST(DictionaryComparison, FindsEveryPropertyAmongAllOthers) {
  for (const PropertyCase& left : properties) {
    std::string others;
    for (const PropertyCase& other : properties) {
      if (&other != &left) others += std::string(other.keyword) + ' ';
    }
    EXPECT_FALSE(numbersDiffer(others, left.change, {})) << left.keyword;
    EXPECT_TRUE(numbersDiffer(others + left.keyword, left.change, {})) << left.keyword;
  }
}

TEST(DictionaryComparison, LooksOnlyAtTheWidthOfAPrintFormat) {
  const Change otherType = [](data::Variable& x) { x.format = {FormatType::dollar, 8, 2}; };
  EXPECT_FALSE(numbersDiffer("WIDTH", {}, otherType));
  EXPECT_FALSE(differs(dataset().text("t", 8, {"a"}),
                       dataset().text("t", 20, {"a"}, [](data::Variable& t) { t.format.width = 8; }), "WIDTH"));
  EXPECT_TRUE(differs(dataset().text("t", 8, {"a"}),
                      dataset().text("t", 8, {"a"}, [](data::Variable& t) { t.format.width = 20; }), "WIDTH"));
}

TEST(DictionaryComparison, ComparesLabelsWithRegardToCaseAndBlanks) {
  const auto labelled = [](const std::string& label) { return [=](data::Variable& x) { x.label = label; }; };
  EXPECT_FALSE(numbersDiffer("LABEL", labelled("Age"), labelled("Age")));
  EXPECT_TRUE(numbersDiffer("LABEL", labelled("Age"), labelled("age")));
  EXPECT_TRUE(numbersDiffer("LABEL", labelled("Age"), labelled("Age ")));
  EXPECT_FALSE(numbersDiffer("LABEL", labelled(""), {}));
  EXPECT_FALSE(numbersDiffer("LABEL", {}, labelled("")));
  EXPECT_TRUE(numbersDiffer("LABEL", {}, labelled("Age")));
}

TEST(DictionaryComparison, ComparesValueLabelsByValueAndText) {
  const auto labelled = [](const std::vector<std::pair<double, std::string>>& labels) {
    return [=](data::Variable& x) { x.numberLabels = labels; };
  };
  EXPECT_FALSE(numbersDiffer("VALUELABELS", labelled({{1, "a"}, {2, "b"}}), labelled({{1, "a"}, {2, "b"}})));
  EXPECT_TRUE(numbersDiffer("VALUELABELS", labelled({{1, "a"}}), labelled({{1, "A"}})));
  EXPECT_TRUE(numbersDiffer("VALUELABELS", labelled({{1, "a"}}), labelled({{2, "a"}})));
  EXPECT_TRUE(numbersDiffer("VALUELABELS", labelled({{1, "a"}}), labelled({{1, "a"}, {2, "b"}})));
  EXPECT_TRUE(numbersDiffer("VALUELABELS", {}, labelled({{1, "a"}})));
  EXPECT_TRUE(textsDiffer("VALUELABELS", {}, [](data::Variable& x) { x.textLabels = {{"a", "A"}}; }));
}

TEST(DictionaryComparison, ComparesMissingValuesByCodeAndThenByAsManyValuesAsItHas) {
  EXPECT_FALSE(numbersDiffer("MISSING", missingValues(1, {9}), missingValues(1, {9})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(1, {9}), missingValues(1, {8})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(1, {9}), missingValues(2, {9, 9})));
  EXPECT_FALSE(numbersDiffer("MISSING", missingValues(2, {8, 9}), missingValues(2, {8, 9})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(2, {8, 9}), missingValues(2, {9, 8})));
  EXPECT_FALSE(numbersDiffer("MISSING", missingValues(3, {7, 8, 9}), missingValues(3, {7, 8, 9})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(3, {7, 8, 9}), missingValues(3, {7, 8, 10})));
  EXPECT_FALSE(numbersDiffer("MISSING", missingValues(-2, {1, 9}), missingValues(-2, {1, 9})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(-2, {1, 9}), missingValues(-2, {1, 8})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(-2, {1, 9}), missingValues(2, {1, 9})));
  EXPECT_FALSE(numbersDiffer("MISSING", missingValues(-3, {1, 9, 0}), missingValues(-3, {1, 9, 0})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(-3, {1, 9, 0}), missingValues(-3, {1, 9, 5})));
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(0, {}), missingValues(1, {9})));
}

TEST(DictionaryComparison, ComparesMissingValuesByTheirBits) {
  EXPECT_TRUE(numbersDiffer("MISSING", missingValues(1, {0.0}), missingValues(1, {-0.0})));
  EXPECT_FALSE(textsDiffer("MISSING", missingTexts(1, {"NA      "}), missingTexts(1, {"NA      "})));
  EXPECT_TRUE(textsDiffer("MISSING", missingTexts(1, {"NA      "}), missingTexts(1, {"na      "})));
}

TEST(DictionaryComparison, FindsUnknownMissingValuesAlwaysDifferent) {
  for (const std::int32_t code : {-1, 4, -4}) {
    EXPECT_TRUE(numbersDiffer("MISSING", missingValues(code, {}), missingValues(code, {}))) << code;
    EXPECT_TRUE(numbersDiffer("ALL", missingValues(code, {}), missingValues(code, {}))) << code;
    EXPECT_FALSE(numbersDiffer("LABEL", missingValues(code, {}), missingValues(code, {}))) << code;
  }
}

TEST(DictionaryComparison, ComparesAttributesWithoutOrderOfNamesButWithOrderOfValues) {
  const auto with = [](const std::vector<std::pair<std::string, std::vector<std::string>>>& attributes) {
    return [=](data::Variable& x) {
      for (const auto& [name, values] : attributes) x.attributes.Add(name, values);
    };
  };
  EXPECT_FALSE(numbersDiffer("ATTRIBUTES", with({{"A", {"1"}}, {"B", {"2"}}}), with({{"B", {"2"}}, {"A", {"1"}}})));
  EXPECT_TRUE(numbersDiffer("ATTRIBUTES", with({{"A", {"1", "2"}}}), with({{"A", {"2", "1"}}})));
  EXPECT_TRUE(numbersDiffer("ATTRIBUTES", with({{"$Note", {"1"}}}), with({{"$Note", {"2"}}})));
}

TEST(DictionaryComparison, ShowsRowsWithoutCellsWhenOnlyTheHostsOwnAttributesDiffer) {
  const Change hosts = [](data::Variable& x) { x.attributes.Add("$Note", {"1"}); };
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}, hosts));
  run.run("/COMPDATASET=b /VARIABLES=ALL /OUTPUT VARPROPERTIES=ATTRIBUTES");
  ASSERT_NE(run.table(keys::dictionary), nullptr);
  EXPECT_EQ(run.categories(keys::dictionary, 0), "x");
  EXPECT_EQ(run.categories(keys::dictionary, 1), "");
}

TEST(DictionaryComparison, AsksForAttributesAlsoWhenTheyWereNotSelected) {
  ProcedureRun run(dataset().numeric("x", {1}), dataset().numeric("x", {1}));
  run.run("/COMPDATASET=b /VARIABLES=ALL");
  EXPECT_EQ(run.journalLines({"VRIX_Variable(x).GetAttributes()"}).size(), 2U);
  EXPECT_EQ(run.journalLine("VRIX_Variable(x).GetRole()"), -1);
}

}  // namespace workbench::tests::dictionary_comparison_test
