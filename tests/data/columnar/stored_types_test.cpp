// What becomes of the types that Parquet files and databases have.
#include <gtest/gtest.h>

#include "tests/data/columnar/stored_fixture.h"

namespace workbench::data {
namespace {

// Type, print format and value of one column with one value.
std::string read(const std::string& expression) {
  const TestFolder folder;
  const SharedFile file = opened(parquetOf(folder, "a.parquet", "SELECT " + expression + " AS x"));
  return types(file) + ": " + shown(file);
}

TEST(StoredTypes, WholeNumbersAreNumbersOfTheirDigits) {
  EXPECT_EQ(read("7::TINYINT"), "x F1.0: 7");
  EXPECT_EQ(read("(-32768)::SMALLINT"), "x F6.0: -32768");
  EXPECT_EQ(read("4294967295::UINTEGER"), "x F10.0: 4294967295");
  EXPECT_EQ(read("9007199254740992::BIGINT"), "x F16.0: 9007199254740992");
  EXPECT_EQ(read("true"), "x F1.0: 1");
}

TEST(StoredTypes, WholeNumbersThatADoubleDoesNotHoldMakeTheColumnText) {
  EXPECT_EQ(read("9007199254740993::BIGINT"), "x A16: '9007199254740993'");
  EXPECT_EQ(read("(-9007199254740993)::BIGINT"), "x A17: '-9007199254740993'");
  EXPECT_EQ(read("18446744073709551615::UBIGINT"), "x A20: '18446744073709551615'");
}

TEST(StoredTypes, DecimalsKeepTheirPlacesAndAreTextWhereTheyHaveMoreDigitsThanAreHeld) {
  EXPECT_EQ(read("1.50::DECIMAL(4,2)"), "x F4.2: 1.5");
  EXPECT_EQ(read("123456789.123456::DECIMAL(15,6)"), "x F16.6: 123456789.123456");
  EXPECT_EQ(read("0.1::DECIMAL(38,1)"), "x F3.1: 0.1");
  EXPECT_EQ(read("12345678901234567.89::DECIMAL(38,2)"), "x A20: '12345678901234567.89'");
}

TEST(StoredTypes, RealNumbersHaveTheDigitsOfTheirShortestForm) {
  EXPECT_EQ(read("1.25::DOUBLE"), "x F4.2: 1.25");
  EXPECT_EQ(read("0.1::FLOAT"), "x E24.16: 0.10000000149011612") << "the value that is stored, not the one meant";
  EXPECT_EQ(read("1e300::DOUBLE"), "x E8.0: 1e+300");
  EXPECT_EQ(read("-0.5::DOUBLE"), "x F4.1: -0.5");
}

TEST(StoredTypes, NotANumberAndInfinityMakeTheColumnText) {
  EXPECT_EQ(read("'nan'::DOUBLE"), "x A3: 'nan'");
  EXPECT_EQ(read("'-inf'::DOUBLE"), "x A4: '-inf'");
}

TEST(StoredTypes, DatesAndTimesAreWhatTheyAre) {
  EXPECT_EQ(read("DATE '1970-01-02'"), "x DATE10.0: 1");
  EXPECT_EQ(read("TIME '00:00:01.5'"), "x TIME10.1: 1.5");
  EXPECT_EQ(read("TIMESTAMP '1970-01-01 00:01:00'"), "x DATETIME19.0: 60");
  EXPECT_EQ(read("TIMESTAMP '1969-12-31 23:59:59.25'"), "x DATETIME22.2: -0.75");
  EXPECT_EQ(read("TIMESTAMP '9999-12-31 23:59:59.5'"), "x DATETIME21.1: 253402300799.5");
  EXPECT_EQ(read("TIMESTAMP_NS '1970-01-01 00:00:00.123456789'"), "x DATETIME29.9: 0.123456789");
}

TEST(StoredTypes, DatesAndTimesThatCasesDoNotHoldMakeTheColumnText) {
  EXPECT_EQ(read("DATE 'infinity'"), "x A8: 'infinity'");
  EXPECT_EQ(read("DATE '12000-01-01'"), "x A11: '12000-01-01'");
  EXPECT_EQ(read("TIMESTAMP '9999-12-31 23:59:59.123456'"), "x A26: '9999-12-31 23:59:59.123456'");
  EXPECT_EQ(read("TIMESTAMP_NS '2026-11-21 10:00:00.123456789'"), "x A29: '2026-11-21 10:00:00.123456789'");
}

TEST(StoredTypes, TimesWithAZoneAreReadInUtcAndSoItIsSaid) {
  const TestFolder folder;
  const SharedFile file = opened(parquetOf(folder, "a.parquet", "SELECT TIMESTAMPTZ '1970-01-01 02:00:00+01' AS x"));
  EXPECT_EQ(types(file) + ": " + shown(file), "x DATETIME19.0: 3600");
  EXPECT_EQ(warningsOf(file), "Column \"x\": its times bear a zone; they are read as times in UTC.");
}

TEST(StoredTypes, TextsStayTextsWhateverTheyLookLike) {
  EXPECT_EQ(read("'12'"), "x A2: '12'");
  EXPECT_EQ(read("'2026-11-21'"), "x A10: '2026-11-21'");
  EXPECT_EQ(read("NULL::VARCHAR"), "x A1: ''");
  EXPECT_EQ(read("'é日'"), "x A5: 'é日'");
}

TEST(StoredTypes, OtherTypesAreReadAsTextsAndSoItIsSaid) {
  const TestFolder folder;
  const SharedFile file =
      opened(parquetOf(folder, "a.parquet", "SELECT [1, 2] AS x, {'a': 1} AS y, '\\xAA'::BLOB AS z"));
  EXPECT_EQ(shown(file), "'[1, 2]' '{'a': 1}' '\\xAA'");
  EXPECT_NE(warningsOf(file).find("Column \"x\" is of the type INTEGER[]; its values are read as texts."),
            std::string::npos)
      << warningsOf(file);
}

TEST(StoredTypes, ValuesThatAreNotThereAreMissing) {
  const TestFolder folder;
  const SharedFile file = opened(parquetOf(
      folder, "a.parquet", "SELECT * FROM (VALUES (1, NULL, DATE '2020-01-01'), (NULL, 'a', NULL)) AS t(n, s, d)"));
  EXPECT_EQ(shown(file), "1 '' 18262 / . 'a' .");
}

TEST(StoredTypes, TheyAreInferredTogetherWithTheOtherTable) {
  const TestFolder folder;
  const std::string numbers = parquetOf(folder, "n.parquet", "SELECT 1.5 AS x, 'ab' AS s, 7 AS c");
  const std::string text = folder.write("t.csv", "x,s,c\n12.25,abcd,n/a\n");
  EXPECT_EQ(types(opened(numbers, text)), "x F5.2, s A4, c A3");
  EXPECT_EQ(types(opened(text, numbers)), "x F5.2, s A4, c A3");
  EXPECT_EQ(shown(opened(numbers, text)), "1.5 'ab' '7'");
}

TEST(StoredTypes, AStoredTextMakesTheOtherTablesNumbersTextsWithAReason) {
  const TestFolder folder;
  const std::string stored = parquetOf(folder, "a.parquet", "SELECT '12' AS x");
  const SharedFile file = opened(folder.write("b.csv", "x\n12\n"), stored);
  EXPECT_EQ(types(file), "x A2");
  EXPECT_NE(warningsOf(file).find("row 1, \"12\" is stored as something else"), std::string::npos) << warningsOf(file);
}

}  // namespace
}  // namespace workbench::data
