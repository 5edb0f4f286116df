// Parquet files, written and read.
#include <gtest/gtest.h>
#include <unistd.h>

#include "host/messages.h"
#include "tests/data/columnar/stored_fixture.h"
#include "tests/data/descriptors/kept_dictionary.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

TEST(Parquet, HoldsTheSameCasesAsTheTextFileItWasMadeFrom) {
  const TestFolder folder;
  const std::string csv = mixedTextFile(folder);
  copyCases(csv, folder.path("a.parquet"));
  EXPECT_EQ(types(opened(folder.path("a.parquet"))), types(opened(csv)));
  EXPECT_EQ(casesOf(*opened(folder.path("a.parquet"))), casesOf(*opened(csv)));
  copyCases(folder.path("a.parquet"), folder.path("b.csv"));
  EXPECT_EQ(casesOf(*opened(folder.path("b.csv"))), casesOf(*opened(csv)));
}

TEST(Parquet, HoldsTheDictionaryWithIt) { checkThatDictionariesAreKept("a.parquet", {"a.parquet"}); }

TEST(Parquet, OfAFolderIsOneTableWithItsPartitions) {
  const TestFolder folder;
  std::filesystem::create_directories(folder.path("sales/year=2025"));
  std::filesystem::create_directories(folder.path("sales/year=2026"));
  parquetOf(folder, "sales/year=2026/b.parquet", "SELECT 3 AS id");
  parquetOf(folder, "sales/year=2025/a.parquet", "SELECT * FROM (VALUES (1), (2)) AS t(id)");
  EXPECT_EQ(shown(opened(folder.path("sales"))), "1 2025 / 2 2025 / 3 2026");
}

TEST(Parquet, PartitionsAreWhatTheirNamesSayLikeCellsOfATextFile) {
  const TestFolder folder;
  for (const char* const zip : {"02134", "10001"}) {
    std::filesystem::create_directories(folder.path(fmt::format("places/zip={}", zip)));
    parquetOf(folder, fmt::format("places/zip={}/a.parquet", zip), "SELECT 1 AS id");
  }
  EXPECT_EQ(shown(opened(folder.path("places"))), "1 '02134' / 1 '10001'");
}

TEST(Parquet, SignsOfPatternsInNamesOfFilesStandForThemselves) {
  const TestFolder folder;
  std::filesystem::create_directories(folder.path("data"));
  std::filesystem::create_directories(folder.path("written"));
  parquetOf(folder, "written/a.parquet", "SELECT 1 AS id");
  std::filesystem::rename(folder.path("written/a.parquet"), folder.path("data/a[1]*?.parquet"));
  parquetOf(folder, "data/a1.parquet", "SELECT 2 AS id");
  EXPECT_EQ(shown(opened(folder.path("data"))), "2 / 1");
}

TEST(Parquet, AFolderThatCannotBeReadWhollyIsAProblem) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  const TestFolder folder;
  std::filesystem::create_directories(folder.path("data/closed"));
  parquetOf(folder, "data/a.parquet", "SELECT 1 AS id");
  std::filesystem::permissions(folder.path("data/closed"), std::filesystem::perms::none);
  EXPECT_EQ(
      problemOf(folder, folder.path("data")),
      "data: The folder cannot be read wholly (Permission denied). Ask the owner of its folders for the permission "
      "to read them.");
  std::filesystem::permissions(folder.path("data/closed"), std::filesystem::perms::owner_all);
}

TEST(Parquet, ThatChangedSinceItWasOpenedIsNotRead) {
  const TestFolder folder;
  const std::string path = parquetOf(folder, "a.parquet", "SELECT 1 AS x");
  const SharedFile file = opened(path);
  std::ofstream(path, std::ios::app) << "more";
  EXPECT_THROW(casesOf(*file), ErrorText);
}

TEST(Parquet, ThatIsNoneIsAProblemThatNamesIt) {
  const TestFolder folder;
  EXPECT_TRUE(problemOf(folder, folder.write("a.parquet", "no such thing")).starts_with("a.parquet: "));
  EXPECT_TRUE(problemOf(folder, folder.write("b.parquet", "")).starts_with("b.parquet: "));
  EXPECT_EQ(problemOf(folder, folder.path("c.parquet")),
            "c.parquet: There is no such file. Check the name and the folder.");
}

TEST(Parquet, RefusesAValueThatItCannotHold) {
  const TestFolder folder;
  auto writer = createDataFile(folder.path("a.parquet"), oneDate(), "");
  ASSERT_TRUE(writer) << writer.problem().text();
  OBS half{};
  half.number = 0.5;
  EXPECT_THROW((*writer)->append(&half, 1, 1), ErrorText);
  writer->reset();
  EXPECT_EQ(folder.names(), std::vector<std::string>());
}

// What stands in a file whose dictionary says all that there is to know, so that nobody looks at its values before.
std::string problemOfDescribedValues(const std::string& query, const std::string& field) {
  const TestFolder folder;
  const std::string resource = fmt::format(R"({{"name": "a", "schema": {{"fields": [{}]}}}})", field);
  const std::string path = folder.path("a.parquet");
  runSql(fmt::format("COPY ({}) TO {} (FORMAT parquet, KV_METADATA {{'statistics:resource': {}}})", query,
                     sqlText(path), sqlText(resource)));
  const SharedFile file = opened(path);
  try {
    casesOf(*file);
  } catch (const ErrorText& error) {
    const std::string text = error.GetText();
    return text.substr(text.find("a.parquet"));
  }
  return "none";
}

TEST(Parquet, NamesTheFirstValueThatTheDictionaryDoesNotAllow) {
  const std::string number =
      R"({"name": "x", "type": "number", "statistics:variable": {"format": {"type": "F", "width": 8, "decimals": 2}}})";
  const std::string text = R"({"name": "x", "type": "string", "statistics:variable": {"storageWidth": 3}})";
  EXPECT_EQ(problemOfDescribedValues("SELECT i AS x FROM range(3000) AS t(i)", number), "none");
  EXPECT_EQ(problemOfDescribedValues(
                "SELECT CASE WHEN i IN (2700, 2800) THEN 9007199254740993 WHEN i % 7 <> 0 THEN i END AS x "
                "FROM range(3000) AS t(i)",
                number),
            "a.parquet, row 2701: In column \"x\" the value is none that its type has. Correct the value or the type.");
  EXPECT_EQ(problemOfDescribedValues(
                "SELECT CASE i WHEN 5 THEN 'infinity'::DOUBLE ELSE i END AS x FROM range(9) AS t(i)", number),
            "a.parquet, row 6: In column \"x\" the value is none that its type has. Correct the value or the type.");
  EXPECT_EQ(
      problemOfDescribedValues("SELECT CASE WHEN i >= 5 THEN 'long' ELSE 'abc' END AS x FROM range(9) AS t(i)", text),
      "a.parquet, row 6: In column \"x\" the value is longer than its column is wide. Correct the value or the "
      "type.");
}

TEST(Parquet, TellsWhetherItsColumnsRise) {
  const TestFolder folder;
  const SharedFile file = opened(parquetOf(
      folder, "a.parquet",
      "SELECT i AS id, 'k' || (1000 + i) AS k, i // 2 AS half, NULLIF(i, 5) AS gap FROM range(5000) AS t(i)"));
  EXPECT_TRUE(file->isKnownIncreasing(0));
  EXPECT_TRUE(file->isKnownIncreasing(1));
  EXPECT_FALSE(file->isKnownIncreasing(2));
  EXPECT_FALSE(file->isKnownIncreasing(3));
}

TEST(Parquet, ColumnsThatAreCalledOtherwiseThanInTheFileAreToldWithTheirNames) {
  const TestFolder folder;
  const std::string path = parquetOf(folder, "a.parquet", "SELECT 1 AS age, 2 AS old");
  renameColumn(folder, "a.parquet", "old", "Age");
  const SharedFile file = opened(path);
  EXPECT_EQ(file->dictionary().at(0).name, "age");
  EXPECT_EQ(file->dictionary().at(1).name, "Age_1");
  EXPECT_EQ(file->warnings(),
            std::vector<std::string>{R"(The name of column 2, "Age", repeats; the column is called "Age_1".)"});
  EXPECT_EQ(shown(file), "1 2");
}

TEST(Parquet, ReadsTheWantedVariablesOnly) {
  const TestFolder folder;
  const SharedFile file = opened(parquetOf(folder, "a.parquet", "SELECT 1 AS a, 'x' AS b, 3 AS c"));
  expectOnlyTheThirdOfThreeIsRead(file);
}

}  // namespace
}  // namespace workbench::data
