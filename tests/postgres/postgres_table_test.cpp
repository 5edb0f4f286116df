// Tables of a PostgreSQL database: how they are named, which there are, and that all passes see one state.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/data/files/writing_fixture.h"
#include "tests/postgres/postgres_server.h"
#include "workbench/data/databases/postgres_source.h"

namespace workbench::data {
namespace {

using tests::TestDatabase;

std::string problemAt(const TestDatabase& database, const std::string& table) {
  const auto file = openDataFile(database.reference(table), {});
  return file ? "opened" : database.plain(file.problem().text());
}

TEST(PostgresTables, AreReadByTheirNames) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE people (id int, name text); INSERT INTO people VALUES (1, 'Ann');"
      "CREATE SCHEMA clinic; CREATE TABLE clinic.visits (id int); INSERT INTO clinic.visits VALUES (7);"
      "CREATE TABLE clinic.people (id int); INSERT INTO clinic.people VALUES (8)");
  EXPECT_EQ(shown(opened(database.reference("people"))), "1 'Ann'");
  EXPECT_EQ(shown(opened(database.reference("public.people"))), "1 'Ann'");
  EXPECT_EQ(shown(opened(database.reference("clinic.people"))), "8");
  EXPECT_EQ(shown(opened(database.reference("clinic.visits"))), "7");
  EXPECT_EQ(problemAt(database, "visits"),
            "postgresql://postgres@/base: The database holds no table \"visits\". It has: clinic.people, "
            "clinic.visits, people.");
  EXPECT_EQ(problemAt(database, ""),
            "postgresql://postgres@/base: The database holds 3 tables. Name one behind \"#\": clinic.people, "
            "clinic.visits, people.");
}

TEST(PostgresTables, NeedNoNameWhereThereIsOne) {
  const TestDatabase database;
  EXPECT_EQ(problemAt(database, ""),
            "postgresql://postgres@/base: The database holds no table. Name another database.");
  database.run(
      "CREATE TABLE t (x int) PARTITION BY LIST (x);"
      "CREATE TABLE one PARTITION OF t FOR VALUES IN (1); INSERT INTO t VALUES (1)");
  const TestDatabase other;
  other.run(
      "CREATE TABLE t (x int) PARTITION BY LIST (x);"
      "CREATE TABLE one PARTITION OF t FOR VALUES IN (1); INSERT INTO t VALUES (1)");
  EXPECT_EQ(shown(opened(other.reference())), "1");
  EXPECT_EQ(shown(opened(other.reference("one"))), "1");
}

TEST(PostgresTables, AreLookedForWhereTheServerLooksForThem) {
  const TestDatabase database;
  database.run(
      "CREATE SCHEMA first; CREATE TABLE first.t (x int); INSERT INTO first.t VALUES (1);"
      "CREATE TABLE t (x int); INSERT INTO t VALUES (2);"
      "ALTER DATABASE " +
      database.name() + " SET search_path = first, public");
  EXPECT_EQ(shown(opened(database.reference("t"))), "1");
  EXPECT_EQ(shown(opened(database.reference("public.t"))), "2");
}

TEST(PostgresTables, HaveNamesOfAnyCharacters) {
  const TestDatabase database;
  database.run(
      R"(CREATE SCHEMA "a.b"; CREATE TABLE "a.b"."c""d' #é/@x" ("x "" y'; DROP TABLE t--" int, "Ü" text, whole int, "select" int);
    INSERT INTO "a.b"."c""d' #é/@x" VALUES (1, 'ü', 2, 3); CREATE TABLE "x.csv" (i int); INSERT INTO "x.csv" VALUES (5);
    CREATE TABLE "a.b.c" (i int); INSERT INTO "a.b.c" VALUES (6))");
  const SharedFile file = opened(database.reference("a.b.c\"d' #é/@x"));
  EXPECT_EQ(shown(file), "1 'ü' 2 3");
  EXPECT_EQ(types(file), "x \" y'; DROP TABLE t-- F1.0, Ü A2, whole F1.0, select F1.0");
  EXPECT_EQ(shown(opened(database.reference("x.csv"))), "5");
  EXPECT_EQ(shown(opened(database.reference("a.b.c"))), "6");
}

TEST(PostgresTables, MayBeViewsPartitionedForeignOrInherited) {
  const TestDatabase database;
  const std::string csv = database.file("foreign.csv");
  std::ofstream(csv) << "1,a\n2,b\n";
  database.run(
      "CREATE TABLE t (i int, s text); INSERT INTO t VALUES (1, 'x'), (2, 'y');"
      "CREATE VIEW v AS SELECT s, i * 10 AS tens FROM t ORDER BY i DESC;"
      "CREATE MATERIALIZED VIEW m AS SELECT * FROM t WHERE i = 2;"
      "CREATE TABLE p (i int PRIMARY KEY) PARTITION BY RANGE (i);"
      "CREATE TABLE p1 PARTITION OF p FOR VALUES FROM (0) TO (10);"
      "CREATE TABLE p2 PARTITION OF p FOR VALUES FROM (10) TO (20);"
      "INSERT INTO p VALUES (15), (3), (11);"
      "CREATE TABLE parent (i int PRIMARY KEY); CREATE TABLE child () INHERITS (parent);"
      "INSERT INTO parent VALUES (2); INSERT INTO child VALUES (1);"
      "CREATE EXTENSION file_fdw; CREATE SERVER files FOREIGN DATA WRAPPER file_fdw;"
      "CREATE FOREIGN TABLE f (i int, s text) SERVER files OPTIONS (filename '" +
      csv + "', format 'csv')");
  EXPECT_EQ(shown(opened(database.reference("v"))), "'y' 20 / 'x' 10");
  EXPECT_EQ(shown(opened(database.reference("m"))), "2 'y'");
  EXPECT_EQ(shown(opened(database.reference("p"))), "3 / 11 / 15");
  EXPECT_EQ(shown(opened(database.reference("parent"))), "2 / 1");
  EXPECT_EQ(shown(opened(database.reference("f"))), "1 'a' / 2 'b'");
}

TEST(PostgresTables, MayHaveHadOtherColumns) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (a int, b int, c int); ALTER TABLE t DROP COLUMN b; ALTER TABLE t ADD COLUMN d int;"
      "INSERT INTO t VALUES (1, 2, 3); CREATE TABLE bare ()");
  EXPECT_EQ(types(opened(database.reference("t"))), "a F1.0, c F1.0, d F1.0");
  EXPECT_EQ(problemAt(database, "bare"), "postgresql://postgres@/base#bare: The table has no columns.");
}

TEST(PostgresTables, TakeLabelsFromCommentsUnlessADictionaryIsTheComment) {
  const TestDatabase database;
  database.run(R"(CREATE TABLE t (a int, b int); COMMENT ON COLUMN t.a IS 'An "a"'; COMMENT ON TABLE t IS 'For people';
    INSERT INTO t VALUES (1, 2); CREATE TABLE described (a int, b text); COMMENT ON COLUMN described.a IS 'unused';
    INSERT INTO described VALUES (1, 'x');
    COMMENT ON TABLE described IS '{"name": "d", "schema": {"fields": [{"name": "a", "title": "From the dictionary",
      "type": "integer"}, {"name": "b", "type": "string"}]}}')");
  const SharedFile plain = opened(database.reference("t"));
  EXPECT_EQ(plain->dictionary().at(0).label, "An \"a\"");
  EXPECT_EQ(plain->dictionary().at(1).label, std::nullopt);
  EXPECT_EQ(plain->dictionaryFile(), "");
  EXPECT_FALSE(bringsDictionary(database.reference("t")));
  const SharedFile described = opened(database.reference("described"));
  EXPECT_EQ(described->dictionary().at(0).label, "From the dictionary");
  EXPECT_EQ(described->dictionaryFile(), database.reference("described"));
  EXPECT_TRUE(bringsDictionary(database.reference("described")));
}

TEST(PostgresTables, AreReadInOneStateWhateverIsWrittenMeanwhile) {
  const TestDatabase database;
  database.run("CREATE TABLE t (x int); INSERT INTO t VALUES (1); CREATE TABLE u (x int); INSERT INTO u VALUES (1)");
  const SharedFile before = opened(database.reference("t"));
  database.run(
      "INSERT INTO t VALUES (200); DELETE FROM t WHERE x = 1; INSERT INTO u VALUES (2); CREATE TABLE w (x int)");
  EXPECT_EQ(shown(before), "1");
  // A run sees one state of a database, also in tables that it opens later on.
  EXPECT_EQ(shown(opened(database.reference("u"))), "1");
  EXPECT_EQ(shown(opened(database.reference("t"))), "1");
  EXPECT_EQ(problemAt(database, "w"), "postgresql://postgres@/base: The database holds no table \"w\". It has: t, u.");
}

TEST(PostgresTables, AreOnlyRead) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (x int); INSERT INTO t VALUES (1); CREATE FUNCTION writes() RETURNS int LANGUAGE sql AS "
      "'INSERT INTO public.t VALUES (2) RETURNING x'; CREATE VIEW v AS SELECT public.writes() AS x");
  EXPECT_EQ(problemAt(database, "v"),
            "postgresql://postgres@/base#v: PostgreSQL reports: cannot execute INSERT in a read-only transaction.");
  EXPECT_EQ(shown(opened(database.reference("t"))), "1");
}

TEST(PostgresTables, AreReadForTheWantedVariablesOnly) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (a int, b text, c int); INSERT INTO t VALUES (1, 'x', 3);"
      "CREATE VIEW v AS SELECT * FROM t");
  for (const char* const table : {"t", "v"}) expectOnlyTheThirdOfThreeIsRead(opened(database.reference(table)));
}

// The most memory that this process has had, in kilobytes.
long mostMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
  }
  return 0;
}

TEST(PostgresTables, AreReadInBoundedMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer has memory of its own";
#endif
  const TestDatabase database;
  database.run("CREATE VIEW big AS SELECT i AS id, repeat(md5(i::text), 32) AS t FROM generate_series(1, 200000) i");
  const auto source = openPostgresTable(database.reference("big"));
  ASSERT_TRUE(source) << source.problem().text();
  const auto cursor = (*source)->open({0, 1}, {});
  ASSERT_TRUE(cursor) << cursor.problem().text();
  CellBatch batch;
  ASSERT_TRUE((*cursor)->next(batch));
  std::ofstream("/proc/self/clear_refs") << 5;  // from here on
  const long before = mostMemory();
  std::size_t rows = batch.records();
  std::uint64_t bytes = 0;
  do {
    ASSERT_TRUE((*cursor)->next(batch));
    rows += batch.records();
    bytes += batch.bytes();
  } while (batch.records() != 0);
  EXPECT_EQ(rows, 200000U);
  EXPECT_GT(bytes, 200'000'000U);
  EXPECT_LT(mostMemory() - before, 16'000);
}

}  // namespace
}  // namespace workbench::data
