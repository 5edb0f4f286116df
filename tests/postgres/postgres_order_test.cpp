// In which order the rows of a PostgreSQL table come.
#include <gtest/gtest.h>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/postgres/postgres_server.h"
#include "workbench/data/working/sort.h"

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

TEST(PostgresOrder, IsWhatTheServerIsAskedFor) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (n numeric, s text, d date); INSERT INTO t VALUES (10, 'b', '2026-01-02'), (NULL, 'é', "
      "NULL), (9.5, NULL, 'infinity'), (-1, 'B', '2026-01-01'), (3, 'a ', NULL), (4, '', NULL)");
  const SharedFile file = opened(database.reference("t"));
  EXPECT_EQ(shown(file->broughtIntoOrder({0})),
            ". 'é' '' / -1 'B' '2026-01-01' / 3 'a' '' / 4 '' '' / 9.5 '' 'infinity' / 10 'b' '2026-01-02'");
  EXPECT_EQ(shown(file->broughtIntoOrder({1, 0})),
            "9.5 '' 'infinity' / 4 '' '' / -1 'B' '2026-01-01' / 3 'a' '' / 10 'b' '2026-01-02' / . 'é' ''");
  EXPECT_FALSE(file->broughtIntoOrder({0})->isKnownIncreasing(0));
}

// What a sort that is done when needed has led to: whether the cases are kept here, and which they are.
std::string sorted(const std::string& reference, const std::vector<std::string>& by,
                   const VariableChanges& changes = {}) {
  OpenOptions options;
  options.changes = changes;
  const auto file = openDataFile(reference, options);
  if (!file) return file.problem().text();
  Dataset dataset(*file);
  const auto result = sortCases(dataset, {by, {}, SortPolicy::whenNeeded});
  if (!result) return result.problem().text();
  std::string all = fmt::format("{}{} cases, {}:", result->reordered ? "reordered " : "", result->cases,
                                dataset.isKept() ? "kept" : "left to the server");
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    for (std::size_t index = 0; index < span.count; ++index) {
      all += fmt::format(" {}", span.cases[index * span.caseSlots].number);
    }
  }
  return all;
}

TEST(PostgresOrder, IsLeftToTheServerWhereOnlyOneIsPossible) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (x int, id int, twice int, gap int, name text COLLATE \"en-x-icu\", odd numeric);"
      "INSERT INTO t VALUES (1, 3, 5, 3, 'ann', 9), (2, 1, 4, NULL, 'Zoe', 10), (3, 2, 4, 1, 'Émile', 'NaN')");
  EXPECT_EQ(sorted(database.reference("t"), {"x"}), "3 cases, left to the server: 1 2 3");
  EXPECT_EQ(sorted(database.reference("t"), {"id"}), "reordered 3 cases, left to the server: 2 3 1");
  EXPECT_EQ(sorted(database.reference("t"), {"name"}), "reordered 3 cases, left to the server: 2 1 3");
  EXPECT_EQ(sorted(database.reference("t"), {"twice", "id"}), "reordered 3 cases, left to the server: 2 3 1");
  // Renamed and without what stood before it.
  EXPECT_EQ(sorted(database.reference("t"), {"key"}, {{{"id", "key"}}, {"x"}}),
            "reordered 3 cases, left to the server: 1 2 3");
  // Repeated, missing, and ordered otherwise by the server.
  EXPECT_EQ(sorted(database.reference("t"), {"twice"}), "reordered 3 cases, kept: 2 3 1");
  EXPECT_EQ(sorted(database.reference("t"), {"gap"}), "reordered 3 cases, kept: 2 3 1");
  EXPECT_EQ(sorted(database.reference("t"), {"odd"}), "reordered 3 cases, kept: 2 1 3");
}

}  // namespace
}  // namespace workbench::data
