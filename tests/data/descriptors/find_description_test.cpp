// Which descriptor describes a data file that is opened by itself.
#include "workbench/data/descriptors/find_description.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/data/descriptors/package_fixture.h"

namespace workbench::data {
namespace {

constexpr const char* schemaOfA = R"({"fields": [{"name": "a", "title": "by schema"}]})";
constexpr const char* packageOfPeople =
    R"({"resources": [{"name": "people", "path": "people.csv",
                       "schema": {"fields": [{"name": "a", "title": "by package"}]}}]})";

// The label of the first variable tells who described it.
std::string describedBy(const TestFolder& folder, const std::string& dataPath) {
  const Outcome<std::optional<DescribedTable>> table = descriptionBeside(dataPath);
  if (!table) return withoutFolder(table.problem().text(), folder);
  if (!*table) return "nothing";
  return (*table)->fields.empty() ? "no fields" : (*table)->fields.front().variable.label.value_or("");
}

TEST(DescriptionBeside, IsNothingWhereNoDescriptorIs) {
  const TestFolder folder;
  EXPECT_EQ(describedBy(folder, folder.write("people.csv", "a\n1\n")), "nothing");
}

TEST(DescriptionBeside, IsTheSchemaOfTheSameName) {
  const TestFolder folder;
  folder.write("people.schema.json", schemaOfA);
  for (const char* const name : {"people.csv", "people.csv.gz", "people.tsv", "people.csv.zst"}) {
    EXPECT_EQ(describedBy(folder, folder.write(name, "")), "by schema") << name;
  }
  EXPECT_EQ(describedBy(folder, folder.write("others.csv", "")), "nothing");
  EXPECT_EQ(describedBy(folder, folder.write("people", "")), "by schema") << "a name without an ending";
}

TEST(DescriptionBeside, IsTheResourceOfThePackageFirst) {
  const TestFolder folder;
  folder.write("people.schema.json", schemaOfA);
  folder.write("datapackage.json", packageOfPeople);
  EXPECT_EQ(describedBy(folder, folder.write("people.csv", "")), "by package");
  EXPECT_EQ(describedBy(folder, folder.write("people.tsv", "")), "by schema") << "another file";
  EXPECT_EQ(describedBy(folder, folder.path("./people.csv")), "by package");
}

TEST(DescriptionBeside, TellsTheFilesAsTheyWereNamed) {
  const TestFolder folder;
  folder.write("datapackage.json", packageOfPeople);
  const Outcome<std::optional<DescribedTable>> table = descriptionBeside(folder.write("people.csv", ""));
  ASSERT_TRUE(table && *table);
  EXPECT_EQ((*table)->dataPaths, std::vector<std::string>{folder.path("people.csv")});
  EXPECT_EQ((*table)->descriptorPath, folder.path("datapackage.json"));
}

TEST(DescriptionBeside, KnowsTheFileUnderAnotherName) {
  const TestFolder folder;
  folder.write("datapackage.json", packageOfPeople);
  folder.write("people.csv", "");
  std::filesystem::create_symlink("people.csv", folder.path("latest.csv"));
  EXPECT_EQ(describedBy(folder, folder.path("latest.csv")), "by package");
}

TEST(DescriptionBeside, IsNoResourceThatHasSeveralFiles) {
  const TestFolder folder;
  folder.write("datapackage.json", packageOf(R"({"name": "x", "path": ["people.csv", "b.csv"]},
                                                {"name": "far", "path": "https://example.org/people.csv"})"));
  EXPECT_EQ(describedBy(folder, folder.write("people.csv", "")), "nothing");
  folder.write("datapackage.json", packageOf(R"({"name": "x", "path": ["people.csv"]})"));
  EXPECT_EQ(describedBy(folder, folder.path("people.csv")), "no fields");
}

TEST(DescriptionBeside, IsAmbiguousWhenTwoResourcesAreTheFile) {
  const TestFolder folder;
  folder.write("datapackage.json",
               packageOf(R"({"name": "x", "path": "people.csv"}, {"name": "y", "path": "people.csv"})"));
  const std::string expected =
      "datapackage.json: The resources \"x\" and \"y\" both describe people.csv. Open one of "
      "them by its name.";
  EXPECT_EQ(describedBy(folder, folder.write("people.csv", "")), expected);
}

TEST(DescriptionBeside, IsAProblemWhenADescriptorIsBroken) {
  const TestFolder folder;
  folder.write("people.schema.json", schemaOfA);
  folder.write("people.csv", "");
  folder.write("datapackage.json", "{");
  EXPECT_EQ(describedBy(folder, folder.path("people.csv")),
            "datapackage.json, line 1, column 2: This is no valid JSON: unexpected end of input. Correct it there.");
  folder.write("datapackage.json", R"({"resources": []})");
  EXPECT_TRUE(beginsWith(describedBy(folder, folder.path("people.csv")), "datapackage.json, /resources"));
  std::filesystem::remove(folder.path("datapackage.json"));
  folder.write("people.schema.json", "[]");
  EXPECT_TRUE(beginsWith(describedBy(folder, folder.path("people.csv")), "people.schema.json"));
}

TEST(DescriptionBeside, IsAProblemWhenADescriptorCannotBeRead) {
  const TestFolder folder;
  folder.write("people.csv", "");
  const std::string remedy = " A descriptor has to be a JSON file that can be read.";
  std::filesystem::create_directory(folder.path("datapackage.json"));
  EXPECT_EQ(describedBy(folder, folder.path("people.csv")), "datapackage.json: This is a folder." + remedy);
  std::filesystem::remove(folder.path("datapackage.json"));
  std::filesystem::create_symlink("nowhere.json", folder.path("datapackage.json"));
  EXPECT_EQ(describedBy(folder, folder.path("people.csv")), "datapackage.json: There is no such file." + remedy);
  std::filesystem::remove(folder.path("datapackage.json"));
  if (::geteuid() == 0) GTEST_SKIP() << "everything may be read by this user";
  folder.write("datapackage.json", packageOfPeople);
  std::filesystem::permissions(folder.path("datapackage.json"), std::filesystem::perms::none);
  EXPECT_EQ(describedBy(folder, folder.path("people.csv")), "datapackage.json: The file may not be read." + remedy);
}

TEST(DescriptionBeside, LooksIntoTheFolderWhereTheProgramRuns) {
  const TestFolder folder;
  folder.write("datapackage.json", packageOfPeople);
  folder.write("people.csv", "");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path(""));
  EXPECT_EQ(describedBy(folder, "people.csv"), "by package");
  const Outcome<DescribedTable> named = describedResource("datapackage.json", "people");
  EXPECT_TRUE(named && named->dataPaths == std::vector<std::string>{"people.csv"});
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace workbench::data
