// Several Parquet files that are one table: those of a folder, and those that a data package lists.
#include <gtest/gtest.h>

#include "tests/data/columnar/stored_fixture.h"

namespace workbench::data {
namespace {

using Texts = std::vector<std::string>;

// A folder with these files in it, each what a query gives.
std::string folderOf(const TestFolder& folder, const Texts& queries) {
  std::filesystem::create_directories(folder.path("data"));
  char name = 'a';
  for (const std::string& query : queries) parquetOf(folder, fmt::format("data/{}.parquet", name++), query);
  return folder.path("data");
}

std::string packageOf(const TestFolder& folder, std::string_view resource) {
  folder.write("datapackage.json", fmt::format(R"({{"resources": [{{"name": "visits", {}}}]}})", resource));
  return folder.path("datapackage.json");
}

TEST(ParquetFolder, WithARealUnderAWholeNumberIsRefusedAndNotRounded) {
  const TestFolder folder;
  const std::string data = folderOf(folder, {"SELECT 1 AS id, 1 AS x", "SELECT 2 AS id, 1.5::DOUBLE AS x"});
  EXPECT_EQ(problemOf(folder, data),
            "data/b.parquet: Column \"x\" is stored as DOUBLE here, and as INTEGER in data/a.parquet. "
            "Let all files of a table store it as one type.");
}

TEST(ParquetFolder, WithOtherPartsInAStructureIsRefused) {
  const TestFolder folder;
  const std::string data = folderOf(folder, {"SELECT {'a': 1} AS x", "SELECT {'a': 1, 'b': 2} AS x"});
  EXPECT_TRUE(problemOf(folder, data).starts_with("data/b.parquet: Column \"x\" is stored as "));
}

TEST(ParquetFolder, HoldsWholeNumbersOfAnySizeInOneColumn) {
  const TestFolder folder;
  const std::string data = folderOf(
      folder, {"SELECT 1::TINYINT AS x", "SELECT 70000::INTEGER AS x", "SELECT 18446744073709551615::UBIGINT AS x"});
  EXPECT_EQ(shown(opened(data)), "'1' / '70000' / '18446744073709551615'");
}

TEST(ParquetFolder, HasTheColumnsOfAllItsFilesAndSaysWhereOneIsMissing) {
  const TestFolder folder;
  const std::string data = folderOf(
      folder, {"SELECT 1 AS id", "SELECT 2 AS id, 'b' AS late", "SELECT 3 AS id", "SELECT 'd' AS late, 4 AS id"});
  const SharedFile file = opened(data);
  EXPECT_EQ(shown(file), "1 '' / 2 'b' / 3 '' / 4 'd'");
  EXPECT_EQ(file->warnings(), Texts{"Column \"late\" is missing from 2 of 4 files, the first of them " +
                                    folder.path("data/a.parquet") + "; it has no values there."});
}

TEST(ParquetFolder, PairsColumnsByTheirNamesWhateverTheirOrder) {
  const TestFolder folder;
  const std::string data = folderOf(folder, {"SELECT 1 AS a, 2 AS b", "SELECT 4 AS b, 3 AS A"});
  const SharedFile file = opened(data);
  EXPECT_EQ(shown(file), "1 2 / 3 4");
  EXPECT_EQ(file->warnings(), Texts());
}

TEST(ParquetFolder, HasEachOfTheColumnsWhoseNamesDifferInCaseOnlyOnce) {
  const TestFolder folder;
  const std::string data = folderOf(folder, {"SELECT 1 AS VISIT, 'a' AS OTHER", "SELECT 2 AS VISIT, 'b' AS OTHER"});
  for (const char* const name : {"data/a.parquet", "data/b.parquet"}) renameColumn(folder, name, "OTHER", "visit");
  const SharedFile file = opened(data);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(types(file), "VISIT F1.0, visit_1 A1");
  EXPECT_EQ(shown(file), "1 'a' / 2 'b'");
  EXPECT_EQ(file->warnings(), Texts());
}

TEST(ParquetFolder, IsRefusedWhereNamesThatDifferInCaseOnlyDoNotTellWhichColumnsBelongTogether) {
  for (const char* const other :
       {"SELECT 3 AS visit, 4 AS late", "SELECT 3 AS visit, 4 AS VISIT_1", "SELECT 3 AS VISIT"}) {
    const TestFolder folder;
    const std::string data = folderOf(folder, {"SELECT 1 AS VISIT, 2 AS OTHER", other});
    renameColumn(folder, "data/a.parquet", "OTHER", "visit");
    EXPECT_EQ(problemOf(folder, data),
              "data/a.parquet: Column \"visit_1\" has no name of its own here (none, or that of another column but for "
              "upper and lower case), and the files do not all have the same columns in the same order, so that names "
              "do not tell which belong together. Give each column a name of its own.")
        << other;
  }
}

TEST(ParquetFolder, TakesLettersBeyondAsciiInAnotherCaseForOtherNames) {
  const TestFolder folder;
  const std::string data = folderOf(folder, {"SELECT 1 AS Ä, 2 AS ä", "SELECT 3 AS ä"});
  const SharedFile file = opened(data);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(shown(file), "1 2 / . 3");
  EXPECT_EQ(file->warnings(), (Texts{"The name of column 2, \"ä\", repeats; the column is called \"ä_1\".",
                                     "Column \"Ä\" is missing from 1 of 2 files, the first of them " +
                                         folder.path("data/b.parquet") + "; it has no values there."}));
}

TEST(ParquetList, OfAPackageIsOneTableInItsOrderWithThePackagesDictionary) {
  const TestFolder folder;
  folderOf(folder, {"SELECT 1 AS id, 5 AS x", "SELECT 2 AS id, 6 AS x"});
  const std::string package = packageOf(folder, R"("path": ["data/b.parquet", "data/a.parquet"], "schema": {"fields": [
                           {"name": "id", "type": "integer", "title": "Number"}, {"name": "x", "type": "number"}]})");
  const SharedFile file = opened(package + "#visits");
  EXPECT_EQ(shown(file), "2 6 / 1 5");
  EXPECT_EQ(file->dictionary().at(0).label, "Number");
  EXPECT_EQ(file->dictionaryFile(), package);
  EXPECT_EQ(shown(opened(package)), "2 6 / 1 5");
}

TEST(ParquetList, MayBeOneFile) {
  const TestFolder folder;
  parquetOf(folder, "a.parquet", "SELECT 1 AS id");
  EXPECT_EQ(shown(opened(packageOf(folder, R"("path": "a.parquet", "format": "parquet")"))), "1");
}

TEST(ParquetList, IsHeldToOneKindOfFileAndToItsFolder) {
  const TestFolder folder;
  parquetOf(folder, "a.parquet", "SELECT 1 AS id");
  folder.write("b.csv", "id\n1\n");
  EXPECT_EQ(problemOf(folder, packageOf(folder, R"("path": ["a.parquet", "b.csv"])")),
            "b.csv: The file is of another kind than a.parquet, "
            "and both are said to hold one table. Let all files of a table be of one kind.");
  EXPECT_NE(problemOf(folder, packageOf(folder, R"("path": ["a.parquet", "../b.parquet"])")).find("../b.parquet"),
            std::string::npos);
  EXPECT_EQ(problemOf(folder, packageOf(folder, R"("path": ["a.parquet", "c.parquet"])")),
            "c.parquet: There is no such file. Check the name and the folder.");
}

TEST(ParquetList, IsCheckedForColumnsOfDifferentTypesLikeAFolder) {
  const TestFolder folder;
  folderOf(folder, {"SELECT 1 AS x", "SELECT 'a' AS x"});
  EXPECT_TRUE(problemOf(folder, packageOf(folder, R"("path": ["data/a.parquet", "data/b.parquet"])"))
                  .starts_with("data/b.parquet: Column \"x\" is stored as VARCHAR here, and as INTEGER in "));
}

}  // namespace
}  // namespace workbench::data
