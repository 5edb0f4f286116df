// Parquet files as the program itself reads them, held against DuckDB.
#include <gtest/gtest.h>

#include <map>

#include "tests/data/parquet/parquet_builder.h"
#include "tests/data/parquet/parquet_fixture.h"

namespace workbench::data {
namespace {

// Columns of every type that is read here; some values are missing, some lie at the ends of their types.
constexpr std::string_view everyType =
    "SELECT i AS id, CASE WHEN i % 7 <> 0 THEN i % 2 = 0 END AS b, "
    "CASE WHEN i % 5 <> 0 THEN (i % 256 - 128)::TINYINT END AS i8, (i % 256)::UTINYINT AS u8, "
    "(i % 65536 - 32768)::SMALLINT AS i16, (i * 7 % 65536)::USMALLINT AS u16, "
    "CASE WHEN i % 3 <> 0 THEN (i * 1000003 % 4294967296 - 2147483648)::INTEGER END AS i32, "
    "(i * 1000003 % 4294967296)::UINTEGER AS u32, "
    "CASE WHEN i < 3 THEN 9223372036854775807 - i ELSE i * -922337203685477 END AS i64, "
    "CASE WHEN i % 11 <> 0 THEN (i / 3)::FLOAT END AS f, "
    "CASE i % 4 WHEN 0 THEN NULL WHEN 1 THEN 'nan'::DOUBLE WHEN 2 THEN '-inf'::DOUBLE ELSE i / 7 END AS d, "
    "CASE WHEN i % 6 <> 0 THEN repeat('x', (i % 40)::INTEGER) || i END AS s, 'köln ' || i % 10 AS few, "
    "CASE WHEN i % 10 = 0 THEN '' ELSE chr(8364) END AS sign, "
    "DATE '1970-01-01' + (i % 90000)::INTEGER AS da, TIME '00:00:00' + INTERVAL (i % 86400) SECONDS AS ti, "
    "TIMESTAMP '1960-01-01' + INTERVAL (i * 1000001) MICROSECONDS AS ts, "
    "TIMESTAMP_MS '2020-01-01' + INTERVAL (i) MILLISECONDS AS tms, "
    "(TIMESTAMP '2020-01-01' + INTERVAL (i) HOURS) AT TIME ZONE 'UTC' AS tz, "
    "(i % 1000 / 10)::DECIMAL(4,1) AS d4, (i % 100000 - 50000)::DECIMAL(9,3) AS d9, (-i)::DECIMAL(15,5) AS d15 ";

std::string everyTypeFile(const TestFolder& folder, std::int64_t rows, std::string_view options) {
  std::string path = folder.path("a.parquet");
  runSql(fmt::format("COPY ({} FROM range({}) AS t(i)) TO {} (FORMAT parquet{})", everyType, rows, sqlText(path),
                     options));
  return path;
}

class ParquetRowsOf : public testing::TestWithParam<const char*> {};

TEST_P(ParquetRowsOf, EveryTypeAreWhatDuckDbReads) {
  const TestFolder folder;
  for (const std::int64_t rows : {0, 1, 2047, 2049, 10'000}) {
    SCOPED_TRACE(rows);
    expectReadAsByDuckDb(everyTypeFile(folder, rows, GetParam()));
  }
}

INSTANTIATE_TEST_SUITE_P(Packed, ParquetRowsOf,
                         testing::Values("", ", CODEC 'uncompressed'", ", CODEC 'gzip'", ", CODEC 'zstd'",
                                         ", ROW_GROUP_SIZE 2048", ", ROW_GROUP_SIZE 3000, CODEC 'zstd'",
                                         ", DICTIONARY_SIZE_LIMIT 5", ", DICTIONARY_SIZE_LIMIT 100000"));

TEST(ParquetRows, AreReadFromPagesOfAllKindsOfWriters) {
  const TestFolder folder;
  const std::string someBits = repeatedRun(2, 1, 1) + packedRun({0, 1, 1, 0, 0, 0, 0, 0}, 1);
  const auto check = [&](const char* what, const BuiltColumn& column, const std::vector<BuiltPage>& pages,
                         std::int64_t rows) {
    SCOPED_TRACE(what);
    expectReadAsByDuckDb(folder.write("built.parquet", builtParquet(column, pages, rows)));
  };
  const std::string threeNumbers = plain<std::int32_t>({1, -2, 3});
  check("values that are never missing", {.physical = 1}, {{3, threeNumbers}}, 3);
  check("several pages", {.physical = 1}, {{3, threeNumbers}, {1, plain<std::int32_t>({4})}, {0, ""}}, 4);
  check("version 2", {.physical = 1}, {{.values = 3, .content = threeNumbers, .type = 3}}, 3);
  check("version 2 with levels", {.physical = 1, .repetition = 1},
        {{.values = 6,
          .content = someBits + plain<std::int32_t>({1, 2, 3, 4}),
          .type = 3,
          .levelBytes = static_cast<std::int64_t>(someBits.size())}},
        6);
  check("version 2 that is not packed where others are", {.physical = 1, .codec = 6},
        {{.values = 3, .content = threeNumbers, .type = 3, .saysThatItIsPacked = false}}, 3);
  check("decimals in as many bytes as they need", {.physical = 7, .length = 3, .converted = 5, .scale = 2, .digits = 6},
        {{3, std::string("\x00\x01\x02\xFF\xFF\xFE\x0F\x42\x3F", 9)}}, 3);
  check("truths in runs", {.physical = 0}, {{.values = 6, .content = withLength(someBits), .encoding = 3, .type = 3}},
        6);
  check("a dictionary and a page that does without it", {.physical = 6, .converted = 0},
        {{.values = 2, .content = plainTexts({"yes", "no answer at all"}), .type = 2},
         {8, '\x01' + packedRun({1, 0, 0, 1, 1, 1, 0, 0}, 1), 8},
         {1, plainTexts({"plain"})}},
        9);
  check("all missing", {.physical = 6, .repetition = 1, .converted = 0}, {{4, withLength(repeatedRun(4, 0, 1))}}, 4);
  check("moments that say so in the newer way only",
        {.physical = 2,
         .logical = ThriftWriter()
                        .fields(8, ThriftWriter()
                                       .truth(1, true)
                                       .fields(2, ThriftWriter().fields(2, ThriftWriter().ended()).ended())
                                       .ended())
                        .ended()},
        {{2, plain<std::int64_t>({0, -1})}}, 2);
}

TEST(ParquetRows, AreLeftToDuckDbWhereTheyAreOutOfTheCommon) {
  const TestFolder folder;
  const std::map<std::string, std::string> queries{
      {"a list", "SELECT [1, 2] AS x"},
      {"parts", "SELECT {'a': 1} AS x"},
      {"bytes", "SELECT 'a'::BLOB AS x"},
      {"64 bits without a sign", "SELECT 1::UBIGINT AS x"},
      {"long decimals", "SELECT 1.5::DECIMAL(30,1) AS x"},
      {"nanoseconds", "SELECT TIMESTAMP_NS '2020-01-01' AS x"},
      {"identifiers", "SELECT gen_random_uuid() AS x"},
      {"an interval", "SELECT INTERVAL 1 DAY AS x"},
  };
  for (const auto& [what, query] : queries) {
    const ParquetFiles files = openedParquet({parquetOf(folder, "a.parquet", query)});
    const std::vector<StoredColumn> columns = columnsOf(duckDbOutline(folder.path("a.parquet")));
    EXPECT_FALSE(decodedValues(files, allOf(columns))) << what;
  }
  const std::string one = plain<std::int32_t>({1});
  for (const BuiltColumn& column :
       {BuiltColumn{.physical = 1, .codec = 4}, BuiltColumn{.physical = 1, .encodings = {5}},
        BuiltColumn{.physical = 1, .repetition = 2}}) {
    const ParquetFiles files = openedParquet({folder.write("b.parquet", builtParquet(column, {{1, one}}, 1))});
    const std::vector<StoredColumn> columns{storedColumn("x", "INTEGER")};
    EXPECT_FALSE(decodedValues(files, allOf(columns)));
  }
}

TEST(ParquetRows, OfColumnsThatAreNotUnderstoodStandBesideThoseThatAre) {
  const TestFolder folder;
  const std::string path =
      parquetOf(folder, "a.parquet",
                "SELECT [i, 2] AS list, {'a': i, 'b': {'c': 'x'}} AS parts, i * 2 AS x FROM range(3) AS t(i)");
  const ParquetFiles files = openedParquet({path});
  EXPECT_FALSE(files.front()->outline());
  const std::vector<StoredColumn> columns = columnsOf(duckDbOutline(path));
  const WantedRows third{3, {{2, &columns[2]}}};
  EXPECT_EQ(decodedValues(files, third), duckDbValues(path, third));
  EXPECT_TRUE(decodedValues(files, third));
}

TEST(ParquetRows, AreCountedWhereNoColumnIsWanted) {
  const TestFolder folder;
  const ParquetFiles files = openedParquet({parquetOf(folder, "a.parquet", "SELECT i FROM range(5000) AS t(i)")});
  EXPECT_EQ(decodedValues(files, {1, {}}), (ReadValues{{"2048", "2048", "904"}}));
}

TEST(ParquetRows, OfSeveralFilesStandOneBelowTheOther) {
  const TestFolder folder;
  const ParquetFiles files = openedParquet({parquetOf(folder, "a.parquet", "SELECT 1::BIGINT AS x"),
                                            parquetOf(folder, "b.parquet", "SELECT 2::BIGINT AS x WHERE false"),
                                            parquetOf(folder, "c.parquet", "SELECT 3::BIGINT AS x")});
  const std::vector<StoredColumn> columns{storedColumn("x", "BIGINT")};
  EXPECT_EQ(decodedValues(files, allOf(columns)), (ReadValues{{"1", "3"}, {}}));
}

// The pages of the first look are there for the next one, and for one only.
TEST(ParquetRows, AreTheSameHoweverOftenAndInWhateverOrderTheyAreRead) {
  const TestFolder folder;
  const std::string path = everyTypeFile(folder, 5000, ", ROW_GROUP_SIZE 2048");
  const ParquetFiles files = openedParquet({path});
  const std::vector<StoredColumn> columns = columnsOf(duckDbOutline(path));
  const ReadValues expected = duckDbValues(path, allOf(columns));
  const WantedRows second{columns.size(), {{1, &columns[1]}, {11, &columns[11]}}};
  for (const bool isFirstLook : {true, false, false, true, true}) {
    EXPECT_EQ(decodedValues(files, allOf(columns, isFirstLook)), expected);
    EXPECT_EQ(decodedValues(files, second)->front(), expected[1]);
  }
  // Two at once, of which one has begun when the other does.
  EXPECT_EQ(decodedValues(files, allOf(columns, true)), expected);
  const std::unique_ptr<StoredRows> one = ParquetFile::rows(files, allOf(columns));
  const std::unique_ptr<StoredRows> other = ParquetFile::rows(files, allOf(columns));
  ASSERT_TRUE(one->next());
  EXPECT_EQ(valuesOf(*other, allOf(columns)), expected);
  std::size_t rows = one->rows();
  while (*one->next()) rows += one->rows();
  EXPECT_EQ(rows, 5000U);
}

TEST(ParquetFile, KnowsWhatItBearsBesideItsRows) {
  const TestFolder folder;
  const std::string path = folder.path("a.parquet");
  runSql(
      fmt::format("COPY (SELECT 1 AS x) TO {} (FORMAT parquet, KV_METADATA {{answer: 'forty-two'}})", sqlText(path)));
  const ParquetFiles files = openedParquet({path});
  ASSERT_TRUE(files.front()->hasLayout());
  EXPECT_EQ(files.front()->metadata("answer"), "forty-two");
  EXPECT_EQ(files.front()->metadata("question"), std::nullopt);
}

}  // namespace
}  // namespace workbench::data
