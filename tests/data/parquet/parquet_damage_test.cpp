// Parquet files that are damaged: nothing that is in them is taken for a value, and nothing is read beyond them.
#include <gtest/gtest.h>

#include <cstdint>

#include "tests/data/parquet/parquet_builder.h"
#include "tests/data/parquet/parquet_fixture.h"

namespace workbench::data {
namespace {

// What reading a file of one column of that type comes to: its problem, or "none".
std::string problemWith(const BuiltColumn& column, const std::vector<BuiltPage>& pages, std::int64_t rows,
                        const std::string& type) {
  const TestFolder folder;
  const ParquetFiles files = openedParquet({folder.write("a.parquet", builtParquet(column, pages, rows))});
  const std::vector<StoredColumn> columns{storedColumn("x", type)};
  const std::optional<ReadValues> values = decodedValues(files, allOf(columns));
  if (!values) return "left to DuckDB";
  if (values->back().empty()) return "none";
  std::string problem = values->back().front();
  const std::string path = folder.path("a.parquet");
  return problem.starts_with(path) ? problem.substr(path.size() - 9) : problem;
}

constexpr const char* damaged =
    "a.parquet: The file is damaged: what is stored of column \"x\" in group of rows 1 makes no sense. Write the file "
    "once more, or take it from where it came from.";

const BuiltColumn wholeNumbers{.physical = 1};
const BuiltColumn textColumn{.physical = 6, .converted = 0};
const BuiltColumn optionalNumbers{.physical = 1, .repetition = 1};

TEST(DamagedParquet, WithFewerValuesThanRowsIsAProblem) {
  EXPECT_EQ(problemWith(wholeNumbers, {{3, plain<std::int32_t>({1, 2, 3})}}, 3, "INTEGER"), "none");
  EXPECT_EQ(problemWith(wholeNumbers, {{3, plain<std::int32_t>({1, 2, 3})}}, 4, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(wholeNumbers, {{3, plain<std::int32_t>({1, 2})}}, 3, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(wholeNumbers, {{0, ""}}, 1, "INTEGER"), damaged);
}

TEST(DamagedParquet, WithLevelsThatEndOrAreBeyondThePageIsAProblem) {
  const std::string one = plain<std::int32_t>({1});
  EXPECT_EQ(problemWith(optionalNumbers, {{1, withLength(repeatedRun(1, 1, 1)) + one}}, 1, "INTEGER"), "none");
  EXPECT_EQ(problemWith(optionalNumbers, {{2, withLength(repeatedRun(1, 1, 1)) + one}}, 2, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(optionalNumbers, {{1, withLength("") + one}}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(optionalNumbers, {{.values = 1, .content = one, .type = 3}}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(optionalNumbers, {{1, "\xFF\xFF\xFF\x7F" + one}}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(optionalNumbers, {{1, "\x01"}}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(optionalNumbers, {{.values = 1, .content = one, .type = 3, .levelBytes = 5}}, 1, "INTEGER"),
            damaged);
  EXPECT_EQ(problemWith(optionalNumbers, {{.values = 1, .content = one, .type = 3, .levelBytes = -1}}, 1, "INTEGER"),
            damaged);
  EXPECT_EQ(problemWith(wholeNumbers, {{.values = 1, .content = one, .type = 3, .levelBytes = 2}}, 1, "INTEGER"),
            damaged);
}

TEST(DamagedParquet, WithTextsThatAreNoneIsAProblem) {
  EXPECT_EQ(problemWith(textColumn, {{2, plainTexts({"a", "b"})}}, 2, "VARCHAR"), "none");
  EXPECT_EQ(problemWith(textColumn, {{1, "\x02\0\0\0a"}}, 1, "VARCHAR"), damaged);
  EXPECT_EQ(problemWith(textColumn, {{1, std::string("\x02\0\0\0a", 5)}}, 1, "VARCHAR"), damaged);
  EXPECT_EQ(problemWith(textColumn,
                        {{1, std::string("\xFF\xFF\xFF\xFF"
                                         "a",
                                         5)}},
                        1, "VARCHAR"),
            damaged);
  EXPECT_EQ(problemWith(textColumn, {{1, std::string("\x01\0\0", 3)}}, 1, "VARCHAR"), damaged);
  EXPECT_EQ(problemWith(textColumn, {{1, plainTexts({"\xE4"})}}, 1, "VARCHAR"), damaged);
  EXPECT_EQ(problemWith(textColumn, {{2, plainTexts({"\xC3", "\xA4"})}}, 2, "VARCHAR"), damaged);
}

TEST(DamagedParquet, WithPlacesBeyondTheDictionaryIsAProblem) {
  const BuiltPage dictionary{.values = 2, .content = plain<std::int32_t>({7, 8}), .type = 2};
  const auto pageOf = [](std::uint32_t place) { return BuiltPage{1, '\x08' + repeatedRun(1, place, 8), 8}; };
  EXPECT_EQ(problemWith(wholeNumbers, {dictionary, pageOf(1)}, 1, "INTEGER"), "none");
  EXPECT_EQ(problemWith(wholeNumbers, {dictionary, pageOf(2)}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(wholeNumbers, {pageOf(0)}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(wholeNumbers, {dictionary, {1, "\x21\x02\x01\x01\x01\x01\x01", 8}}, 1, "INTEGER"), damaged);
  EXPECT_EQ(problemWith(wholeNumbers, {dictionary, {1, "", 8}}, 1, "INTEGER"), damaged);
  BuiltPage tooLong = dictionary;
  tooLong.values = 3;
  EXPECT_EQ(problemWith(wholeNumbers, {tooLong, pageOf(1)}, 1, "INTEGER"), damaged);
  tooLong.values = std::int64_t{1} << 40;
  EXPECT_EQ(problemWith(wholeNumbers, {tooLong, pageOf(1)}, 1, "INTEGER"), damaged);
}

TEST(DamagedParquet, WithNumbersThatTheirTypeDoesNotHaveIsAProblem) {
  const auto int32 = [](std::int64_t converted, std::int32_t number, const char* type) {
    return problemWith({.physical = 1, .converted = converted}, {{1, plain<std::int32_t>({number})}}, 1, type);
  };
  EXPECT_EQ(int32(15, 127, "TINYINT"), "none");
  EXPECT_EQ(int32(15, 128, "TINYINT"), damaged);
  EXPECT_EQ(int32(11, -1, "UTINYINT"), damaged);
  EXPECT_EQ(int32(16, -32769, "SMALLINT"), damaged);
  EXPECT_EQ(int32(12, 65536, "USMALLINT"), damaged);
  const BuiltColumn decimal{.physical = 2, .converted = 5, .scale = 1, .digits = 3};
  EXPECT_EQ(problemWith(decimal, {{1, plain<std::int64_t>({-999})}}, 1, "DECIMAL(3,1)"), "none");
  EXPECT_EQ(problemWith(decimal, {{1, plain<std::int64_t>({1000})}}, 1, "DECIMAL(3,1)"), damaged);
}

TEST(DamagedParquet, WithPagesThatDoNotUnpackToWhatTheySayIsAProblem) {
  for (const std::int64_t codec : {1, 2, 6}) {
    EXPECT_EQ(problemWith({.physical = 1, .codec = codec}, {{1, "no such thing"}}, 1, "INTEGER"), damaged) << codec;
    EXPECT_EQ(problemWith({.physical = 1, .codec = codec}, {{1, ""}}, 1, "INTEGER"), damaged) << codec;
  }
  const BuiltPage largerThanSaid{.values = 1, .content = plain<std::int32_t>({1}), .bytes = 3};
  EXPECT_EQ(problemWith(wholeNumbers, {largerThanSaid}, 1, "INTEGER"), damaged);
  const BuiltPage hugeOne{.values = 1, .content = plain<std::int32_t>({1}), .bytes = std::int64_t{1} << 40};
  EXPECT_EQ(problemWith(wholeNumbers, {hugeOne}, 1, "INTEGER"), damaged);
}

// Damage of a whole file, byte by byte: whatever it does to it, reading comes to an end.
TEST(DamagedParquet, ByOneByteIsReadToItsEndOrIsAProblem) {
  const TestFolder folder;
  for (const char* const options : {"", ", CODEC 'uncompressed'"}) {
    const std::string path = folder.path("a.parquet");
    runSql(
        fmt::format("COPY (SELECT i AS id, 'text ' || i % 3 AS s, CASE WHEN i % 3 <> 0 THEN i / 2 END AS d "
                    "FROM range(40) AS t(i)) TO {} (FORMAT parquet{})",
                    sqlText(path), options));
    const std::string whole = folder.read("a.parquet");
    const std::vector<StoredColumn> columns = columnsOf(duckDbOutline(path));
    std::size_t decoded = 0;
    for (std::size_t place = 0; place < whole.size(); ++place) {
      std::string bytes = whole;
      bytes[place] = static_cast<char>(bytes[place] ^ (1 << (place % 8)));
      const ParquetFiles files = openedParquet({folder.write("b.parquet", bytes)});
      const std::optional<ReadValues> values = decodedValues(files, allOf(columns));
      decoded += values ? 1 : 0;
      if (values && values->back().empty()) {
        EXPECT_EQ(values->front().size(), 40U) << place;
      }
    }
    EXPECT_GT(decoded, whole.size() / 4);
    for (std::size_t end = 0; end < whole.size(); end += 7)
      EXPECT_FALSE(decodedValues(openedParquet({folder.write("b.parquet", whole.substr(0, end))}), allOf(columns)));
  }
}

}  // namespace
}  // namespace workbench::data
