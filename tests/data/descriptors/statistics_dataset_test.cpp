// What a descriptor says of the whole dataset.
#include <gtest/gtest.h>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

std::string schemaWithDataset(std::string_view parts) {
  return fmt::format(R"({{"fields": [{{"name": "id", "type": "integer"}}, {{"name": "Region", "type": "string"}},
                         {{"name": "w", "type": "number"}}], "statistics:dataset": {{{}}}}})",
                     parts);
}

std::string problem(std::string_view parts) {
  const std::string text = problemOf(schemaWithDataset(parts));
  const std::string prefix = "people.schema.json, /statistics:dataset";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

TEST(StatisticsDataset, SaysAttributesFilterWeightAndSplit) {
  const DescribedTable table = tableOf(
      schemaWithDataset(R"("attributes": {"Wave": ["2"]}, "filter": "id", "weight": "w", "split": ["Region", "id"])"));
  EXPECT_EQ(shownAttributes(table.attributes), "Wave=[2]");
  EXPECT_EQ(table.filter, "id");
  EXPECT_EQ(table.weight, "w");
  EXPECT_EQ(table.split, (std::vector<std::string>{"Region", "id"}));
}

TEST(StatisticsDataset, FindsFieldsWithoutRegardToCaseWhenNoneIsNamedJustSo) {
  EXPECT_EQ(tableOf(schemaWithDataset(R"("split": ["REGION"])")).split, (std::vector<std::string>{"Region"}));
}

TEST(StatisticsDataset, NamesFields) {
  EXPECT_EQ(problem(R"("filter": "idd")"),
            "/filter: \"filter\" is \"idd\", and no field has this name. Write the name of a field. Did you mean "
            "\"id\"?");
  EXPECT_EQ(problem(R"("weight": "Region")"),
            "/weight: \"weight\" is \"Region\", which is a string. Name a field that holds numbers.");
  EXPECT_TRUE(beginsWith(problem(R"("filter": "Region")"), "/filter:"));
  EXPECT_EQ(problem(R"("split": ["id", "ID"])"),
            "/split/1: An entry of \"split\" is \"id\", which stands there already. Name it once.");
  EXPECT_EQ(problem(R"("split": "id")"),
            "/split: \"split\" is a text, and has to be a list. Put it into brackets, even a single entry.");
}

TEST(StatisticsDataset, RefusesAPartThatItDoesNotKnow) {
  EXPECT_EQ(problem(R"("weights": "w")"),
            "/weights: \"weights\" is no part of \"statistics:dataset\". Its parts are \"attributes\", \"filter\", "
            "\"weight\" and \"split\". Did you mean \"weight\"?");
}

}  // namespace
}  // namespace workbench::data
