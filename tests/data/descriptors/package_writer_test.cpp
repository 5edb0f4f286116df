// A dictionary written into a package that is there: what changes, and what stays as it was.
#include "workbench/data/descriptors/package_writer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/data/descriptors/dictionary_builder.h"
#include "tests/data/descriptors/package_fixture.h"

namespace workbench::data {
namespace {

Dictionary idAndTown() {
  Dictionary dictionary;
  dictionary.add(numeric("id"));
  dictionary.add(textual("town", 12));
  return dictionary;
}

std::string written(const PackageFolder& package, const Dictionary& dictionary, char delimiter = ',') {
  const Outcome<std::string> text =
      packageTextWith(package.path("datapackage.json"), "people.csv", dictionary, delimiter);
  return text ? *text : withoutFolder(text.problem().text(), package.folder());
}

Json resourceWritten(std::string_view properties, const Dictionary& dictionary = idAndTown(), char delimiter = ',') {
  const PackageFolder package(packageWith(properties));
  return Json::parse(written(package, dictionary, delimiter))["resources"][0];
}

std::vector<std::string> keysOf(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

TEST(WrittenPackage, KeepsEverythingElseInItsOrder) {
  const PackageFolder package(R"({"zebra": [1.5, {"b": null, "a": "ß"}], "resources": [
      {"name": "other", "path": "other.csv", "schema": {"fields": [{"name": "x", "type": "year"}]}, "bytes": 5},
      {"title": "People", "path": "people.csv", "name": "people", "own:thing": {"k": 1}, "type": "table"}],
      "$schema": "https://datapackage.org/profiles/2.0/datapackage.json", "alpha": 12345678901234567890})");
  const Json after = Json::parse(written(package, idAndTown()));
  const Json before = Json::parse(package.folder().read("datapackage.json"));
  EXPECT_EQ(keysOf(after), keysOf(before));
  EXPECT_EQ(after["zebra"], before["zebra"]);
  EXPECT_EQ(after["alpha"], before["alpha"]);
  EXPECT_EQ(after["resources"][0], before["resources"][0]);
  EXPECT_EQ(keysOf(after["resources"][1]),
            (std::vector<std::string>{"title", "path", "name", "own:thing", "type", "dialect", "schema"}));
}

TEST(WrittenPackage, IsReadBackAsTheDictionary) {
  Dictionary dictionary = idAndTown();
  dictionary.weight = 0;
  dictionary.at(0) = withMissing(numeric("id"), {-9});
  const PackageFolder package(packageWith(R"("path": "people.csv", "schema": {"fields": [{"name": "q"}]})"));
  package.folder().write("datapackage.json", written(package, dictionary, ';'));
  const DescribedTable table = package.table("people");
  ASSERT_EQ(table.fields.size(), 2U);
  EXPECT_EQ(shownMissing(table.fields[0].variable), "-9");
  EXPECT_EQ(table.fields[1].width, 12);
  EXPECT_EQ(table.dialect.delimiter, ";");
  EXPECT_EQ(table.weight, "id");
}

TEST(WrittenPackage, DescribesTheFileThatIsWritten) {
  const Json resource = resourceWritten(R"("path": "people.csv", "encoding": "latin1", "bytes": 7, "hash": "",
      "compression": "gz", "dialect": {"delimiter": "|", "commentRows": [1], "own:thing": 1, "quoteChar": ""},
      "statistics:dataset": {"weight": "old"}, "schema": "people.schema.json")",
                                        idAndTown(), '\t');
  EXPECT_EQ(resource["encoding"], "utf-8");
  EXPECT_EQ(resource["dialect"].dump(), R"({"own:thing":1,"delimiter":"\t"})");
  EXPECT_FALSE(resource.contains("bytes") || resource.contains("hash") || resource.contains("compression"));
  EXPECT_FALSE(resource.contains("statistics:dataset"));
  EXPECT_EQ(resource["schema"]["fields"].size(), 2U) << "what was told in another file is told here";
}

TEST(WrittenPackage, KeepsOfASchemaWhatStillHolds) {
  const Json schema = resourceWritten(R"("path": "people.csv", "schema": {"own:thing": 1, "missingValues": ["NA"],
      "fieldsMatch": "subset", "primaryKey": "id", "uniqueKeys": [["gone"]],
      "foreignKeys": [{"fields": ["id"], "reference": {"resource": "other", "fields": ["x"]}}],
      "statistics:dataset": {}, "fields": [{"name": "gone"}, {"name": "id"}]})")["schema"];
  EXPECT_EQ(keysOf(schema), (std::vector<std::string>{"own:thing", "primaryKey", "foreignKeys", "fields"}));
  EXPECT_EQ(schema["fields"].size(), 2U);
}

TEST(WrittenPackage, KeepsOfAFieldWhatSaysNothingOfItsCells) {
  const Json fields = resourceWritten(R"("path": "people.csv", "schema": {"fields": [
      {"description": "d", "title": "old", "name": "id", "type": "integer", "groupChar": ".", "own:thing": 1,
       "categories": [1], "categoriesOrdered": true, "missingValues": [], "constraints": {"required": true}},
      {"name": "town", "type": "number", "decimalChar": ",", "constraints": {"minimum": "0,5"}, "rdfType": "x"}]})")
      ["schema"]["fields"];
  EXPECT_EQ(keysOf(fields[0]), (std::vector<std::string>{"description", "name", "type", "own:thing", "constraints",
                                                         "statistics:variable"}));
  EXPECT_EQ(fields[0]["type"], "number");
  EXPECT_EQ(keysOf(fields[1]), (std::vector<std::string>{"name", "type", "rdfType", "statistics:variable"}));
}

TEST(WrittenPackage, ReplacesASchemaThatWasNotSound) {
  const Json resource =
      resourceWritten(R"("path": "people.csv", "schema": {"fields": [1, {"name": 2}, {"type": 3}]}, "dialect": [])");
  EXPECT_EQ(resource["schema"]["fields"].size(), 2U);
  EXPECT_EQ(resource["dialect"].dump(), R"({"delimiter":","})");
}

TEST(WrittenPackage, NeedsAResourceOfTheFile) {
  EXPECT_EQ(written(PackageFolder(packageOf(R"({"name": "a", "path": "other.csv"})")), idAndTown()),
            "datapackage.json: No resource of the package is people.csv. Add one with its name and path.");
  EXPECT_EQ(written(PackageFolder(packageOf(R"({"name": "a", "path": ["people.csv", "other.csv"]})")), idAndTown()),
            "datapackage.json: No resource of the package is people.csv. Add one with its name and path.");
  EXPECT_TRUE(beginsWith(written(PackageFolder("[]"), idAndTown()), "datapackage.json"));
}

TEST(WrittenPackage, MayDescribeAFileThatIsYetToBeWritten) {
  const PackageFolder package(packageOf(R"({"name": "a", "path": "new/later.csv"})"));
  EXPECT_TRUE(packageTextWith(package.path("datapackage.json"), "new/later.csv", idAndTown(), ','));
}

TEST(WrittenPackage, RefusesWhatWouldNotStayAsItIs) {
  EXPECT_EQ(
      written(PackageFolder(packageWith(R"("path": "people.csv", "own": [123456789012345678901])")), idAndTown()),
      "datapackage.json, /resources/0/own/0: The number would not stay what it is when the file is written again. "
      "Put it into quotes.");
  Dictionary dictionary;
  dictionary.add(numeric("\xFF"));
  EXPECT_TRUE(beginsWith(written(PackageFolder(packageWith(R"("path": "people.csv")")), dictionary),
                         "The dictionary cannot be written: "));
}

}  // namespace
}  // namespace workbench::data
