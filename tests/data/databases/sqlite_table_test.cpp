// Tables of SQLite databases, read.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

TEST(SqliteTables, AreReadByTheirNames) {
  const TestFolder folder;
  const std::string path =
      sqliteOf(folder, "study.sqlite",
               {"CREATE TABLE people (id INTEGER, name TEXT)", "INSERT INTO people VALUES (1, 'Ann')",
                "CREATE TABLE visits (id INTEGER)", "INSERT INTO visits VALUES (7)", "CREATE VIEW v AS SELECT 5 AS x"});
  EXPECT_EQ(shown(opened(path + "#people")), "1 'Ann'");
  EXPECT_EQ(shown(opened(path + "#visits")), "7");
  EXPECT_EQ(shown(opened(path + "#v")), "5");
  EXPECT_EQ(problemOf(folder, path + "#w"),
            "study.sqlite: The database holds no table \"w\". It has: people, v, visits.");
  EXPECT_EQ(problemOf(folder, path),
            "study.sqlite: The database holds 3 tables. Name one behind \"#\": people, v, visits.");
}

TEST(SqliteTables, NeedNoNameWhereThereIsOneAndBearAnyOfTheEndings) {
  const TestFolder folder;
  for (const char* const name : {"a.db", "a.sqlite", "a.SQLITE3"}) {
    const std::string path = sqliteOf(folder, name, {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
    EXPECT_EQ(shown(opened(path)), "1") << name;
  }
  EXPECT_EQ(problemOf(folder, sqliteOf(folder, "e.db", {"PRAGMA user_version = 1"})),
            "e.db: The database holds no table. Name another file.");
}

TEST(SqliteTables, HoldValuesOfTheTypeThatEachIsStoredAs) {
  const TestFolder folder;
  const std::string path =
      sqliteOf(folder, "a.db",
               {"CREATE TABLE t (n, text_in_one, bytes, big INTEGER, r REAL)",
                "INSERT INTO t VALUES (1, 1, x'00FF', 1, 0.1), (2.5, '2', NULL, 9007199254740993, 1e300)"});
  EXPECT_EQ(types(opened(path)), "n F3.1, text_in_one A1, bytes A4, big A16, r E8.0");
  EXPECT_EQ(shown(opened(path)), "1 '1' '00FF' '1' 0.1 / 2.5 '2' '' '9007199254740993' 1e+300");
  EXPECT_NE(warningsOf(opened(path))
                .find("Column \"bytes\" holds bytes; they are read as the texts of their hexadecimal digits."),
            std::string::npos);
}

TEST(SqliteTables, HoldRealNumbersOfAnySizeAsNumbers) {
  const TestFolder folder;
  const std::string path = sqliteOf(folder, "a.db",
                                    {"CREATE TABLE t (r REAL)",
                                     "INSERT INTO t VALUES (9007199254740994.0), (1e17), "
                                     "(-1.7976931348623155e308), (5e-324), (-0.0), (3)"});
  EXPECT_EQ(shown(opened(path)), "9007199254740994 / 1e+17 / -1.7976931348623155e+308 / 5e-324 / 0 / 3");
}

TEST(SqliteTables, HoldAnInfiniteNumberAsText) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(sqliteOf(folder, "a.db", {"CREATE TABLE t (r REAL)", "INSERT INTO t VALUES (9e999), (1)"}))),
            "'inf' / '1'");
}

TEST(SqliteTables, HaveDatesWhereTheyAreDeclaredAndWritten) {
  const TestFolder folder;
  const std::string path = sqliteOf(
      folder, "a.db",
      {"CREATE TABLE t (d DATE, t TIME, m DATETIME, s TIMESTAMP, mixed DATE, plain TEXT)",
       "INSERT INTO t VALUES ('2026-01-02', '10:00:00.5', '2026-01-02 10:00:00', '2026-01-02T10:00:00.25', 20260102, "
       "'2026-01-02')"});
  EXPECT_EQ(types(opened(path)), "d DATE10.0, t TIME10.1, m DATETIME19.0, s DATETIME22.2, mixed F8.0, plain A10");
}

TEST(SqliteTables, SayWhatColumnsWithoutValuesAre) {
  const TestFolder folder;
  const std::string path = sqliteOf(
      folder, "a.db", {"CREATE TABLE t (i BIGINT, v VARCHAR(20), d DATE, b BOOLEAN, n DOUBLE PRECISION, x BLOB)"});
  EXPECT_EQ(types(opened(path)), "i F1.0, v A1, d DATE10.0, b F1.0, n F1.0, x F8.0");
  EXPECT_EQ(shown(opened(path)), "");
}

TEST(SqliteTables, GiveTheirRowsInTheOrderOfTheirNumbersOrOfTheirKey) {
  const TestFolder folder;
  const std::string path = sqliteOf(
      folder, "a.db",
      {"CREATE TABLE numbered (x TEXT)", "INSERT INTO numbered (rowid, x) VALUES (3, 'c'), (1, 'a'), (2, 'b')",
       "CREATE INDEX by_x ON numbered (x DESC)", "CREATE TABLE keyed (x INTEGER, y TEXT PRIMARY KEY) WITHOUT ROWID",
       "INSERT INTO keyed VALUES (1, 'b'), (2, 'a')", "CREATE TABLE shadowed (rowid TEXT)",
       "INSERT INTO shadowed VALUES ('z'), ('a')", "CREATE VIEW backwards AS SELECT x FROM numbered ORDER BY x DESC"});
  EXPECT_EQ(shown(opened(path + "#numbered")), "'a' / 'b' / 'c'");
  EXPECT_EQ(shown(opened(path + "#keyed")), "2 'a' / 1 'b'");
  EXPECT_EQ(shown(opened(path + "#shadowed")), "'z' / 'a'");
  EXPECT_EQ(shown(opened(path + "#backwards")), "'c' / 'b' / 'a'");
}

TEST(SqliteTables, AreTypedTogetherWithWhatTheyAreComparedWith) {
  const TestFolder folder;
  const std::string path = sqliteOf(folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  EXPECT_EQ(types(opened(path, folder.write("b.csv", "x\nabc\n"))), "x A3");
  EXPECT_EQ(types(opened(folder.write("c.csv", "x\n1\n"),
                         sqliteOf(folder, "d.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES ('0123')"}))),
            "x A4");
}

TEST(SqliteTables, SayThatTextsThatLookLikeNumbersMakeAColumnText) {
  const TestFolder folder;
  const std::string texts = sqliteOf(folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES ('1')"});
  const std::string numbers = sqliteOf(folder, "b.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  EXPECT_EQ(warningsOf(opened(texts)), "");
  EXPECT_EQ(warningsOf(opened(numbers, texts)),
            fmt::format("Column \"x\" is read as text: {} holds texts in it, whatever they look like; this file alone "
                        "would have been read as a number.",
                        texts));
}

TEST(SqliteTables, AreReadInOneStateWhateverIsWrittenMeanwhile) {
  const TestFolder folder;
  const SharedSqlite writer =
      sqliteWith(folder.path("a.db"), {"PRAGMA journal_mode = WAL", "CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  const SharedFile before = opened(folder.path("a.db"));
  ASSERT_TRUE(writer->run("INSERT INTO t VALUES (2)"));
  EXPECT_EQ(shown(before), "1");
  EXPECT_EQ(shown(opened(folder.path("a.db"))), "1 / 2");
}

TEST(SqliteTables, ThatWereReplacedSinceTheyWereOpenedAreNotRead) {
  const TestFolder folder;
  const std::string path = sqliteOf(folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  const SharedFile file = opened(path);
  std::filesystem::rename(sqliteOf(folder, "b.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"}), path);
  EXPECT_EQ(messageOf([&] { casesOf(*file); }),
            path + ": The data have changed since they were opened; open them again.");
}

TEST(SqliteTables, AreReadForTheWantedVariablesOnly) {
  const TestFolder folder;
  const SharedFile file =
      opened(sqliteOf(folder, "a.db", {"CREATE TABLE t (a, b, c)", "INSERT INTO t VALUES (1, 'x', 3)"}));
  const auto reader = file->openReader(VariableSubset({2}));
  CaseBlock block(3);
  block.at(0)[0].number = -7;
  reader->fill(block);
  EXPECT_EQ(block.cases(), 1U);
  EXPECT_EQ(block.at(0)[0].number, -7);
  EXPECT_EQ(block.at(0)[2].number, 3);
  const auto rowsOnly = file->openReader(VariableSubset(std::vector<std::int32_t>()));
  rowsOnly->fill(block);
  EXPECT_EQ(block.cases(), 1U);
}

TEST(SqliteTables, TellWhetherTheirColumnsRise) {
  const TestFolder folder;
  const SharedFile file =
      opened(sqliteOf(folder, "a.db",
                      {"CREATE TABLE t (id INTEGER, k TEXT, half INTEGER, gap INTEGER)",
                       "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 4999) INSERT INTO t "
                       "SELECT i, 'k' || (1000 + i * 2), i / 2, nullif(i, 5) FROM n ORDER BY i"}));
  EXPECT_TRUE(file->isKnownIncreasing(0));
  EXPECT_FALSE(file->isKnownIncreasing(1));
  EXPECT_FALSE(file->isKnownIncreasing(2));
  EXPECT_FALSE(file->isKnownIncreasing(3));
}

}  // namespace
}  // namespace workbench::data
