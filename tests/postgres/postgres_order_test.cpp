// In which order the rows of a PostgreSQL table come.
#include <gtest/gtest.h>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/postgres/postgres_server.h"

namespace workbench::data {
namespace {

using tests::TestDatabase;

TEST(PostgresOrder, IsThatOfThePrimaryKeyAsCasesAreSorted) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE numbers (x int, id int PRIMARY KEY); INSERT INTO numbers VALUES (1, 30), (2, -5), (3, 7);"
      "CREATE TABLE two (b int, a text, PRIMARY KEY (a, b));"
      "INSERT INTO two VALUES (2, 'b'), (1, 'b'), (3, 'B'), (4, 'é'), (5, 'z'), (6, 'a ');"
      "CREATE TABLE upper (upper numeric PRIMARY KEY, y bytea);"
      "INSERT INTO upper VALUES (10, '\\x01'), (9, '\\x02')");
  EXPECT_EQ(shown(opened(database.reference("numbers"))), "2 -5 / 3 7 / 1 30");
  EXPECT_EQ(shown(opened(database.reference("two"))), "3 'B' / 6 'a' / 1 'b' / 2 'b' / 5 'z' / 4 'é'");
  EXPECT_EQ(shown(opened(database.reference("upper"))), "9 '02' / 10 '01'");
  EXPECT_TRUE(opened(database.reference("numbers"))->isKnownIncreasing(1));
  EXPECT_FALSE(opened(database.reference("numbers"))->isKnownIncreasing(0));
}

TEST(PostgresOrder, TellsKeysApartThatDifferInBlanksOnly) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (a text PRIMARY KEY, x int); INSERT INTO t VALUES ('k  ', 3), ('k', 1), ('k ', 2), "
      "('j', 0)");
  EXPECT_EQ(shown(opened(database.reference("t"))), "'j' 0 / 'k' 1 / 'k' 2 / 'k' 3");
}

TEST(PostgresOrder, OfATableWithoutAKeyIsThatInWhichItsRowsLieWhateverIsRead) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t AS SELECT 1000 - i AS x, repeat('x', 500) AS wide FROM generate_series(1, 999) i;"
      "CREATE INDEX ON t (x); CREATE VIEW v AS SELECT * FROM t");
  database.run("VACUUM ANALYZE t");  // so that the index alone would do
  for (const char* const table : {"t", "v"}) {
    const SharedFile file = opened(database.reference(table));
    const auto reader = file->openReader(VariableSubset({0}));
    CaseBlock block(CaseLayout(file->dictionary()).caseSlots);
    reader->fill(block);
    EXPECT_EQ(block.at(0)[0].number, 999) << table;
    EXPECT_EQ(casesOf(*file).front().front(), "999") << table;
  }
}

}  // namespace
}  // namespace workbench::data
