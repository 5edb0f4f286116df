// Tables of DuckDB database files.
#include <gtest/gtest.h>

#include "tests/data/columnar/stored_fixture.h"

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
            "e.duckdb: The database holds no table. Name another file.");
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

TEST(DuckDbTables, AreNotWritten) {
  const TestFolder folder;
  Dictionary dictionary;
  dictionary.add({});
  const auto writer = createDataFile(folder.path("a.duckdb"), dictionary, "");
  ASSERT_FALSE(writer);
  EXPECT_NE(writer.problem().text().find("A DuckDB database is only read, not written."), std::string::npos);
}

}  // namespace
}  // namespace workbench::data
