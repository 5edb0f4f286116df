// Parquet files in object stores, as far as they can be looked at without one.
#include "workbench/data/columnar/parquet_object.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/data/columnar/stored_fixture.h"
#include "workbench/data/columnar/parquet_footer.h"

namespace workbench::data {
namespace {

TEST(ParquetObject, NeedsAnExtensionThatIsNeverInstalledUnasked) {
  const TestFolder folder;
  ::setenv("HOME", folder.path("").c_str(), 1);  // where extensions lie
  for (const std::string path :
       {"s3://study/visits.parquet", "https://localhost/visits.parquet", "https://localhost/v[1]?of=*.parquet"}) {
    const auto file = openDataFile(path, {});
    ASSERT_FALSE(file);
    EXPECT_EQ(file.problem().text(),
              path +
                  ": Objects in a store are read by DuckDB's extension httpfs, which cannot be loaded. Install the "
                  "extension with DuckDB's own program (INSTALL httpfs), or copy the file to this machine.");
  }
  EXPECT_EQ(folder.names(), std::vector<std::string>());
}

TEST(ParquetObject, IsOneWhateverSignsOfPatternsAStoreWouldTakeInItsName) {
  const std::pair<std::string, std::string> named[] = {{"s3://study/v*.parquet", "*"},
                                                       {"gs://study/v?.parquet", "?"},
                                                       {"gcs://study/[ab].parquet", "["},
                                                       {"r2://study/**/v?.parquet", "*"}};
  for (const auto& [path, sign] : named) {
    const auto file = openDataFile(path, {});
    ASSERT_FALSE(file);
    EXPECT_EQ(file.problem().text(),
              path + ": The name has \"" + sign +
                  "\" in it, and would stand for all objects whose names are like it. Name one object, or copy the "
                  "files into a folder on this machine.");
  }
}

std::string identityOf(const std::string& path) {
  const auto source = parquetByName(path);
  return source ? (*source)->identity() : source.problem().text();
}

TEST(ParquetObject, IsKnownToBeTheSameAsLongAsItsContentIs) {
  const TestFolder folder;
  const std::string query = "SELECT i AS id, 'k' || i AS k FROM range(5000) AS t(i)";
  const std::string path = parquetOf(folder, "a.parquet", query);
  const auto source = parquetByName(path);
  ASSERT_TRUE(source) << source.problem().text();
  const std::string before = (*source)->identity();
  folder.write("a.parquet", folder.read("a.parquet"));
  EXPECT_EQ((*source)->identity(), before);
  EXPECT_EQ(identityOf(path), before);
  for (const char* const other :
       {"SELECT i AS id, 'k' || i AS k FROM range(5001) AS t(i)",
        "SELECT i + 1 AS id, 'k' || i AS k FROM range(5000) AS t(i)",
        "SELECT i AS id, 'l' || i AS k FROM range(5000) AS t(i)",
        "SELECT i AS id, 'k' || i AS K FROM range(5000) AS t(i)",
        "SELECT i::INTEGER AS id, 'k' || i AS k FROM range(5000) AS t(i)", "SELECT 1 AS id WHERE false"}) {
    parquetOf(folder, "a.parquet", other);
    EXPECT_NE((*source)->identity(), before) << other;
  }
  parquetOf(folder, "a.parquet", query);
  EXPECT_EQ((*source)->identity(), before);
  std::filesystem::remove(path);
  EXPECT_NE((*source)->identity(), before);
}

TEST(ParquetObject, IsNoneOtherOfTheSameContent) {
  const TestFolder folder;
  EXPECT_NE(identityOf(parquetOf(folder, "a.parquet", "SELECT 1 AS x")),
            identityOf(parquetOf(folder, "b.parquet", "SELECT 1 AS x")));
}

TEST(ParquetObject, BringsItsDictionaryInItsFooter) {
  const TestFolder folder;
  runSql(fmt::format("COPY (SELECT 1 AS id) TO {} (FORMAT parquet, KV_METADATA {{{}: {}}})",
                     sqlText(folder.path("a.parquet")), sqlText(resourceKey),
                     sqlText(R"({"name": "a", "schema": {"fields": [{"name": "id", "title": "Number"}]}})")));
  const auto source = parquetByName(folder.path("a.parquet"));
  ASSERT_TRUE(source) << source.problem().text();
  const auto description = (*source)->description();
  ASSERT_TRUE(description) << description.problem().text();
  ASSERT_TRUE(*description);
  EXPECT_EQ((*description)->fields.front().variable.label, "Number");
}

TEST(ParquetObject, ThatIsNoParquetFileIsAProblemThatNamesIt) {
  const TestFolder folder;
  const std::string path = folder.write("a.parquet", "no such thing");
  EXPECT_TRUE(identityOf(path).starts_with(path + ": DuckDB reports: "));
}

}  // namespace
}  // namespace workbench::data
