// Tables of DuckDB database files.
#include <gtest/gtest.h>

#include "tests/data/columnar/stored_fixture.h"
#include "tests/data/descriptors/dictionary_builder.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

TEST(DuckDbTables, AreReadByTheirNames) {
  const TestFolder folder;
  const std::string path =
      duckDbOf(folder, "study.duckdb",
               {"CREATE TABLE made.people AS SELECT 1 AS id, 'Ann' AS name",
                "CREATE TABLE made.visits AS SELECT 7 AS id", "CREATE SCHEMA made.old",
                "CREATE TABLE made.old.people AS SELECT 9 AS id", "CREATE VIEW made.v AS SELECT 5 AS x"});
  EXPECT_EQ(shown(opened(path + "#people")), "1 'Ann'");
  EXPECT_EQ(shown(opened(path + "#visits")), "7");
  EXPECT_EQ(shown(opened(path + "#old.people")), "9");
  EXPECT_EQ(shown(opened(path + "#v")), "5");
}

TEST(DuckDbTables, TakeLabelsFromCommentsUnlessADictionaryIsTheComment) {
  const TestFolder folder;
  const std::string path = duckDbOf(
      folder, "a.duckdb",
      {"CREATE TABLE made.t AS SELECT 1 AS a, 2 AS b", "COMMENT ON COLUMN made.t.a IS 'An \"a\"'",
       "COMMENT ON TABLE made.t IS 'For people'", "CREATE VIEW made.v AS SELECT 1 AS a",
       "COMMENT ON COLUMN made.v.a IS 'Seen'", "CREATE SCHEMA made.old", "CREATE TABLE made.old.t AS SELECT 1 AS a",
       "COMMENT ON COLUMN made.old.t.a IS 'Former'", "CREATE TABLE made.described AS SELECT 1 AS a, 'x' AS b",
       "COMMENT ON COLUMN made.described.a IS 'unused'",
       R"(COMMENT ON TABLE made.described IS '{"name": "d", "schema": {"fields": [{"name": "a", "title": "From the )"
       R"(dictionary", "type": "integer"}, {"name": "b", "type": "string"}]}}')"});
  const SharedFile plain = opened(path + "#t");
  EXPECT_EQ(plain->dictionary().at(0).label, "An \"a\"");
  EXPECT_EQ(plain->dictionary().at(1).label, std::nullopt);
  EXPECT_EQ(plain->dictionaryFile(), "");
  EXPECT_EQ(opened(path + "#v")->dictionary().at(0).label, "Seen");
  EXPECT_EQ(opened(path + "#old.t")->dictionary().at(0).label, "Former");
  EXPECT_EQ(opened(path + "#described")->dictionary().at(0).label, "From the dictionary");
}

TEST(DuckDbTables, HoldEnumerationsAsTheirTexts) {
  const TestFolder folder;
  const SharedFile file = opened(duckDbOf(folder, "a.duckdb",
                                          {"CREATE TYPE made.mood AS ENUM ('sad', 'glad')",
                                           "CREATE TABLE made.t AS SELECT x::made.mood AS x FROM (VALUES ('glad'), "
                                           "('sad'), (NULL)) AS v(x)"}));
  EXPECT_EQ(types(file), "x A4");
  EXPECT_EQ(shown(file), "'glad' / 'sad' / ''");
}

TEST(DuckDbTables, NeedNoNameWhereThereIsOne) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(duckDbOf(folder, "a.duckdb", {"CREATE TABLE made.t AS SELECT 1 AS x"}))), "1");
}

TEST(DuckDbTables, AndTheirFilesMayHaveTheSignInTheirNames) {
  const TestFolder folder;
  const std::string path = duckDbOf(folder, "a#b.duckdb", {"CREATE TABLE made.\"t#u\" AS SELECT 1 AS x"});
  EXPECT_EQ(shown(opened(path)), "1");
  EXPECT_EQ(shown(opened(path + "#t#u")), "1");
}

TEST(DuckDbTables, ThatAreNotThereAreAProblemThatNamesThoseThatAre) {
  const TestFolder folder;
  const std::string path = duckDbOf(folder, "a.duckdb", {"CREATE TABLE made.t(x INT)", "CREATE TABLE made.u(x INT)"});
  EXPECT_EQ(problemOf(folder, path + "#w"), "a.duckdb: The database holds no table \"w\". It has: t, u.");
  EXPECT_EQ(problemOf(folder, path), "a.duckdb: The database holds 2 tables. Name one behind \"#\": t, u.");
  EXPECT_EQ(problemOf(folder, duckDbOf(folder, "e.duckdb", {})),
            "e.duckdb: The database holds no table. Name another database.");
  EXPECT_TRUE(
      problemOf(folder, folder.write("n.duckdb", "nothing of the kind")).starts_with("n.duckdb: DuckDB reports: "));
}

TEST(DuckDbTables, OfOneFileAreReadSideBySide) {
  const TestFolder folder;
  const std::string path =
      duckDbOf(folder, "a.duckdb", {"CREATE TABLE made.t AS SELECT 1 AS x", "CREATE TABLE made.u AS SELECT 2 AS x"});
  const SharedFile left = opened(path + "#t", path + "#u");
  const SharedFile right = opened(path + "#u", path + "#t");
  EXPECT_EQ(shown(left) + " " + shown(right), "1 2");
}

TEST(DuckDbTables, HoldHugeNumbersThatAreTextsWhereADoubleDoesNotHoldThem) {
  const TestFolder folder;
  const std::string path = duckDbOf(
      folder, "a.duckdb",
      {"CREATE TABLE made.t AS SELECT 5::HUGEINT AS small, 170141183460469231731687303715884105727::HUGEINT AS large"});
  EXPECT_EQ(types(opened(path)), "small F1.0, large A39");
  EXPECT_EQ(shown(opened(path)), "5 '170141183460469231731687303715884105727'");
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

TEST(WrittenDuckDbTables, StandInTheSchemaThatTheirNamesSayWhereItIsThere) {
  const TestFolder folder;
  const std::string path = duckDbOf(
      folder, "a.duckdb",
      {"CREATE TABLE made.t AS SELECT 1 AS x", "CREATE SCHEMA made.s", "CREATE TABLE made.s.t AS SELECT 2 AS x"});
  const std::string csv = folder.write("a.csv", "y\n7\n");
  copyCases(csv, path + "#s.t");
  copyCases(csv, path + "#p.q");
  EXPECT_EQ(shown(opened(path + "#t")) + shown(opened(path + "#s.t")) + shown(opened(path + "#p.q")), "177");
}

TEST(WrittenDuckDbTables, AreNotPutWhereChangesWaitBesideTheDatabase) {
  const TestFolder folder;
  folder.write("a.duckdb.wal", "what another program has not brought in yet");
  const auto writer = createDataFile(folder.path("a.duckdb"), oneDate(), "");
  ASSERT_FALSE(writer);
  EXPECT_TRUE(writer.problem().what.starts_with("Changes that are not in the database yet lie beside it"));
}

}  // namespace
}  // namespace workbench::data
