// SQLite databases that are not as one would wish.
#include <gtest/gtest.h>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

std::string manyRows(const TestFolder& folder) {
  return sqliteOf(folder, "a.db",
                  {"CREATE TABLE t (x INTEGER, y TEXT)",
                   "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 9999) INSERT INTO t "
                   "SELECT i, 'text ' || i FROM n"});
}

TEST(HostileSqlite, FilesThatAreCutAreAProblem) {
  const TestFolder folder;
  const std::string path = manyRows(folder);
  for (const std::uintmax_t size : {std::uintmax_t{100}, std::uintmax_t{5000}, std::uintmax_t{100'000}}) {
    const std::string cut = folder.path(fmt::format("cut{}.db", size));
    std::filesystem::copy_file(path, cut);
    std::filesystem::resize_file(cut, size);
    EXPECT_TRUE(problemOf(folder, cut).starts_with(fmt::format("cut{}.db: SQLite reports: ", size)))
        << problemOf(folder, cut);
  }
  EXPECT_TRUE(problemOf(folder, folder.write("n.db", "nothing of the kind, though of some length"))
                  .starts_with("n.db: SQLite reports: file is not a database"));
  EXPECT_EQ(problemOf(folder, folder.write("z.db", "")), "z.db: The database holds no table. Name another file.");
  EXPECT_EQ(problemOf(folder, folder.path("m.db")), "m.db: There is no such file. Check the name and the folder.");
}

TEST(HostileSqlite, ALogBesideTheFileIsAPartOfIt) {
  const TestFolder folder;
  const SharedSqlite writer =
      sqliteWith(folder.path("a.db"), {"PRAGMA journal_mode = WAL", "PRAGMA wal_autocheckpoint = 0",
                                       "CREATE TABLE t (x)", "INSERT INTO t VALUES (1), (2)"});
  std::filesystem::copy_file(folder.path("a.db"), folder.path("b.db"));
  std::filesystem::copy_file(folder.path("a.db-wal"), folder.path("b.db-wal"));
  EXPECT_EQ(shown(opened(folder.path("b.db"))), "1 / 2");
}

TEST(HostileSqlite, ADatabaseThatIsLockedIsAProblem) {
  const TestFolder folder;
  const SharedSqlite writer = sqliteWith(folder.path("a.db"), {"CREATE TABLE t (x)", "BEGIN EXCLUSIVE"});
  EXPECT_EQ(problemOf(folder, folder.path("a.db")), "a.db: SQLite reports: database is locked.");
}

TEST(HostileSqlite, TablesAndColumnsMayHaveAnyNames) {
  const TestFolder folder;
  const std::string path =
      sqliteOf(folder, "a.db",
               {"CREATE TABLE \"t#u\" (\"a \"\"b\"\"\" , \"c'd\", \"two\nlines\")", "CREATE TABLE \"two\nlines\" (x)",
                "CREATE TABLE \"it's \"\"quoted\"\"\" (x)", "INSERT INTO \"t#u\" VALUES (1, 2, 3)"});
  EXPECT_EQ(shown(opened(path + "#t#u")), "1 2 3");
  EXPECT_EQ(shown(opened(path + "#two\nlines")), "");
  EXPECT_EQ(shown(opened(path + "#it's \"quoted\"")), "");
  const std::string withSign = sqliteOf(folder, "a#b.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (5)"});
  EXPECT_EQ(shown(opened(withSign)) + shown(opened(withSign + "#t")), "55");
}

TEST(HostileSqlite, AViewThatFailsHalfWayIsAProblem) {
  const TestFolder folder;
  const std::string path = sqliteOf(
      folder, "a.db",
      {"CREATE TABLE n (i)",
       "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 4999) INSERT INTO n SELECT i FROM n",
       "CREATE VIEW v AS SELECT CASE WHEN i = 4000 THEN abs(-9223372036854775808) ELSE i END AS x FROM n",
       "CREATE VIEW broken AS SELECT x FROM nowhere"});
  EXPECT_EQ(problemOf(folder, path + "#v"), "a.db: SQLite reports: integer overflow.");
  EXPECT_EQ(problemOf(folder, path + "#broken"), "a.db: SQLite reports: no such table: main.nowhere.");
}

TEST(HostileSqlite, TextsThatAreNoUtf8AreAProblem) {
  const TestFolder folder;
  const std::string path =
      sqliteOf(folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES ('a'), (CAST(x'FF' AS TEXT))"});
  EXPECT_EQ(problemOf(folder, path), "a.db, row 2: In column \"x\" the value is no UTF-8. Correct the value.");
  const std::string withNul =
      sqliteOf(folder, "b.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (CAST(x'6100' AS TEXT))"});
  EXPECT_EQ(problemOf(folder, withNul), "b.db, row 1: In column \"x\" the value holds a NUL byte. Correct the value.");
}

TEST(HostileSqlite, TablesMayHaveTwoThousandColumns) {
  const TestFolder folder;
  std::vector<std::string> columns;
  for (int column = 0; column < 2000; ++column) columns.push_back(fmt::format("v{} INTEGER", column));
  const std::string path = sqliteOf(
      folder, "a.db",
      {fmt::format("CREATE TABLE t ({})", fmt::join(columns, ", ")), "INSERT INTO t (v0, v1999) VALUES (1, 2000)"});
  const SharedFile file = opened(path);
  EXPECT_EQ(file->dictionary().size(), 2000);
  EXPECT_EQ(casesOf(*file).front().back(), "2000");
}

TEST(HostileSqlite, ProtectedDatabasesAreRefused) {
  const TestFolder folder;
  EXPECT_NE(problemOf(folder, folder.write("a.db.pgp", "x")), "opened");
}

}  // namespace
}  // namespace workbench::data
