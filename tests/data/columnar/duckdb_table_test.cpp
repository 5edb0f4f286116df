// Tables of DuckDB database files.
#include <gtest/gtest.h>

#include "tests/data/columnar/stored_fixture.h"
#include "tests/data/descriptors/kept_dictionary.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

// A database with the tables that the statements make in "made".
std::string databaseOf(const TestFolder& folder, const std::string& name, const std::vector<std::string>& statements) {
  std::string path = folder.path(name);
  runSql(fmt::format("ATTACH {} AS made", sqlText(path)));
  for (const std::string& statement : statements) runSql(statement);
  runSql("DETACH made");
  return path;
}

TEST(DuckDbTables, AreReadByTheirNames) {
  const TestFolder folder;
  const std::string path =
      databaseOf(folder, "study.duckdb",
                 {"CREATE TABLE made.people AS SELECT 1 AS id, 'Ann' AS name",
                  "CREATE TABLE made.visits AS SELECT 7 AS id", "CREATE SCHEMA made.old",
                  "CREATE TABLE made.old.people AS SELECT 9 AS id", "CREATE VIEW made.v AS SELECT 5 AS x"});
  EXPECT_EQ(shown(opened(path + "#people")), "1 'Ann'");
  EXPECT_EQ(shown(opened(path + "#visits")), "7");
  EXPECT_EQ(shown(opened(path + "#old.people")), "9");
  EXPECT_EQ(shown(opened(path + "#v")), "5");
}

TEST(DuckDbTables, NeedNoNameWhereThereIsOne) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(databaseOf(folder, "a.duckdb", {"CREATE TABLE made.t AS SELECT 1 AS x"}))), "1");
}

TEST(DuckDbTables, AndTheirFilesMayHaveTheSignInTheirNames) {
  const TestFolder folder;
  const std::string path = databaseOf(folder, "a#b.duckdb", {"CREATE TABLE made.\"t#u\" AS SELECT 1 AS x"});
  EXPECT_EQ(shown(opened(path)), "1");
  EXPECT_EQ(shown(opened(path + "#t#u")), "1");
}

TEST(DuckDbTables, ThatAreNotThereAreAProblemThatNamesThoseThatAre) {
  const TestFolder folder;
  const std::string path = databaseOf(folder, "a.duckdb", {"CREATE TABLE made.t(x INT)", "CREATE TABLE made.u(x INT)"});
  EXPECT_EQ(problemOf(folder, path + "#w"), "a.duckdb: The database holds no table \"w\". It has: t, u.");
  EXPECT_EQ(problemOf(folder, path), "a.duckdb: The database holds 2 tables. Name one behind \"#\": t, u.");
  EXPECT_EQ(problemOf(folder, databaseOf(folder, "e.duckdb", {})),
            "e.duckdb: The database holds no table. Name another database.");
  EXPECT_TRUE(
      problemOf(folder, folder.write("n.duckdb", "nothing of the kind")).starts_with("n.duckdb: DuckDB reports: "));
}

TEST(DuckDbTables, OfOneFileAreReadSideBySide) {
  const TestFolder folder;
  const std::string path =
      databaseOf(folder, "a.duckdb", {"CREATE TABLE made.t AS SELECT 1 AS x", "CREATE TABLE made.u AS SELECT 2 AS x"});
  const SharedFile left = opened(path + "#t", path + "#u");
  const SharedFile right = opened(path + "#u", path + "#t");
  EXPECT_EQ(shown(left) + " " + shown(right), "1 2");
}

TEST(DuckDbTables, HoldHugeNumbersThatAreTextsWhereADoubleDoesNotHoldThem) {
  const TestFolder folder;
  const std::string path = databaseOf(
      folder, "a.duckdb",
      {"CREATE TABLE made.t AS SELECT 5::HUGEINT AS small, 170141183460469231731687303715884105727::HUGEINT AS large"});
  EXPECT_EQ(types(opened(path)), "small F1.0, large A39");
  EXPECT_EQ(shown(opened(path)), "5 '170141183460469231731687303715884105727'");
}

TEST(WrittenDuckDbTables, HoldTheSameCasesAsTheTextFileTheyWereMadeFrom) {
  const TestFolder folder;
  const std::string csv = mixedTextFile(folder);
  copyCases(csv, folder.path("a.duckdb#visits"));
  EXPECT_EQ(types(opened(folder.path("a.duckdb#visits"))), types(opened(csv)));
  EXPECT_EQ(casesOf(*opened(folder.path("a.duckdb"))), casesOf(*opened(csv)));
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.csv", "a.duckdb"}));
}

TEST(WrittenDuckDbTables, HoldTheirDictionaries) { checkThatDictionariesAreKept("a.duckdb", {"a.duckdb"}); }

TEST(WrittenDuckDbTables, AreCalledAsTheirFileWhereNobodyNamesThem) {
  const TestFolder folder;
  copyCases(folder.write("a.csv", "x\n1\n"), folder.path("study.duckdb"));
  EXPECT_EQ(shown(opened(folder.path("study.duckdb#study"))), "1");
}

TEST(WrittenDuckDbTables, HaveColumnsOfTheirTypes) {
  const TestFolder folder;
  copyCases(folder.write("a.csv", "n,s,d,t,m\n1.5,a,2026-01-01,10:00:00,2026-01-01T10:00:00\n"),
            folder.path("a.duckdb"));
  const std::string path = folder.path("a.duckdb");
  runSql(fmt::format("ATTACH {} AS looked_at (READ_ONLY)", sqlText(path)));
  const auto types = firstText("SELECT string_agg(data_type, ' ') FROM duckdb_columns() WHERE table_name = 'a'");
  ASSERT_TRUE(types) << types.problem().text();
  EXPECT_EQ(*types, "DOUBLE VARCHAR DATE TIME TIMESTAMP");
  runSql("DETACH looked_at");
}

TEST(WrittenDuckDbTables, LeaveTheOtherTablesOfTheirDatabaseAsTheyAre) {
  const TestFolder folder;
  const std::string path =
      databaseOf(folder, "a.duckdb",
                 {"CREATE TABLE made.t AS SELECT 1 AS x", "CREATE SCHEMA made.s",
                  "CREATE TABLE made.s.t AS SELECT 2 AS x", "CREATE VIEW made.v AS SELECT 3 AS x"});
  const std::string csv = folder.write("a.csv", "y\n7\n");
  copyCases(csv, path + "#u");
  copyCases(csv, path + "#s.t");
  copyCases(csv, path + "#p.q");
  EXPECT_EQ(shown(opened(path + "#t")) + shown(opened(path + "#v")), "13");
  EXPECT_EQ(shown(opened(path + "#u")) + shown(opened(path + "#s.t")) + shown(opened(path + "#p.q")), "777");
}

TEST(WrittenDuckDbTables, TakeThePlaceOfTheTableOfTheirNameWhoeverReadsThatStill) {
  const TestFolder folder;
  copyCases(folder.write("a.csv", "x\n1\n"), folder.path("a.duckdb#t"));
  const SharedFile before = opened(folder.path("a.duckdb#t"));
  copyCases(folder.write("b.csv", "y,z\n2,b\n"), folder.path("a.duckdb#t"));
  EXPECT_EQ(types(opened(folder.path("a.duckdb#t"))), "y F1.0, z A1");
  EXPECT_EQ(shown(opened(folder.path("a.duckdb"))), "2 'b'");
}

TEST(WrittenDuckDbTables, HaveAnyNames) {
  const TestFolder folder;
  const std::string csv = folder.write("a.csv", "x\n1\n");
  copyCases(csv, folder.path("a.duckdb#first"));
  for (const char* const name : {"t#u", "it's \"quoted\"", "two\nlines", "Grüße", "a/b"}) {
    const std::string path = folder.path("a.duckdb") + "#" + name;
    copyCases(csv, path);
    EXPECT_EQ(shown(opened(path)), "1") << name;
  }
}

TEST(WrittenDuckDbTables, LeaveTheOldFileWholeWhenTheyAreAbandoned) {
  const TestFolder folder;
  const std::string path = databaseOf(folder, "a.duckdb", {"CREATE TABLE made.t AS SELECT 1 AS x"});
  const std::string before = folder.read("a.duckdb");
  Dictionary dictionary;
  dictionary.add(dated("d"));
  auto writer = createDataFile(path + "#t", dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  OBS half{};
  half.number = 0.5;
  EXPECT_EQ(messageOf([&] { (*writer)->append(&half, 1, 1); }),
            path +
                "#t: In case 1 the value of \"d\" is 0.5, which is no day of the calendar, so it cannot be written; "
                "correct the value.");
  writer->reset();
  EXPECT_EQ(folder.names(), std::vector<std::string>{"a.duckdb"});
  EXPECT_EQ(folder.read("a.duckdb"), before);
}

TEST(WrittenDuckDbTables, AreNotPutWhereChangesWaitBesideTheDatabase) {
  const TestFolder folder;
  folder.write("a.duckdb.wal", "what another program has not brought in yet");
  Dictionary dictionary;
  dictionary.add(dated("d"));
  const auto writer = createDataFile(folder.path("a.duckdb"), dictionary, "");
  ASSERT_FALSE(writer);
  EXPECT_TRUE(writer.problem().what.starts_with("Changes that are not in the database yet lie beside it"));
}

TEST(WrittenDuckDbTables, AreNotPutInThePlaceOfADatabaseThatChangedMeanwhile) {
  const TestFolder folder;
  const std::string path = databaseOf(folder, "a.duckdb", {"CREATE TABLE made.t AS SELECT 1 AS x"});
  Dictionary dictionary;
  dictionary.add(dated("d"));
  auto writer = createDataFile(path + "#u", dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  std::ofstream(path, std::ios::app) << "more";
  (*writer)->complete();
  EXPECT_TRUE(messageOf([&] { (*writer)->commit(); }).starts_with(path + ": The database has changed since"));
}

TEST(WrittenDuckDbTables, AreNeitherProtectedNorPutInThePlaceOfAView) {
  const TestFolder folder;
  Dictionary dictionary;
  dictionary.add(dated("d"));
  EXPECT_FALSE(createDataFile(folder.path("a.duckdb.pgp"), dictionary, "secret"));
  const std::string path = databaseOf(folder, "a.duckdb", {"CREATE VIEW made.v AS SELECT 1 AS x"});
  EXPECT_FALSE(createDataFile(path + "#v", dictionary, ""));
  EXPECT_EQ(shown(opened(path)), "1");
}

TEST(WrittenDuckDbTables, MayHaveTwoThousandColumnsAndNoCases) {
  const TestFolder folder;
  Dictionary dictionary;
  for (int column = 0; column < 2000; ++column) dictionary.add(dated(fmt::format("v{}", column)));
  auto writer = createDataFile(folder.path("a.duckdb"), dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  (*writer)->complete();
  (*writer)->commit();
  const SharedFile file = opened(folder.path("a.duckdb"));
  EXPECT_EQ(file->dictionary().size(), 2000);
  EXPECT_EQ(shown(file), "");
}

}  // namespace
}  // namespace workbench::data
