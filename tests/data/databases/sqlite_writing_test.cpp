// Tables of SQLite databases, written.
#include <gtest/gtest.h>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/data/descriptors/dictionary_builder.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

TEST(WrittenSqliteTables, HoldTheSameCasesWithoutTheirDictionaries) {
  const TestFolder folder;
  const std::string csv = mixedTextFile(folder);
  copyCases(csv, folder.path("a.db"));
  sqliteWith(folder.path("a.db"), {"DELETE FROM \"statistics:resource\""});
  EXPECT_EQ(types(opened(folder.path("a.db"))), types(opened(csv)));
  EXPECT_EQ(casesOf(*opened(folder.path("a.db"))), casesOf(*opened(csv)));
}

TEST(WrittenSqliteTables, TakeWithThemWhatLiesInALogAsLongAsNobodyElseNeedsIt) {
  const TestFolder folder;
  const std::string path = folder.path("a.db");
  sqliteWith(path, {"PRAGMA journal_mode = WAL", "CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  const std::string csv = folder.write("a.csv", "y\n7\n");
  copyCases(csv, path + "#u");
  EXPECT_EQ(shown(opened(path + "#t")) + shown(opened(path + "#u")), "17");
  const std::string inUse = folder.path("b.db");
  const SharedSqlite writer = sqliteWith(inUse, {"PRAGMA journal_mode = WAL", "CREATE TABLE t (x)"});
  const auto refused = createDataFile(inUse + "#w", oneDate(), "");
  ASSERT_FALSE(refused);
  EXPECT_TRUE(refused.problem().what.starts_with("Changes that are not in the database yet lie beside it"));
}

TEST(WrittenSqliteTables, TakeThePlaceOfTheTableOfTheirNameInAnyCaseAndOfItsDictionary) {
  const TestFolder folder;
  copyCases(folder.write("a.csv", "x\n1\n"), folder.path("a.db#t"));
  copyCases(folder.write("b.csv", "y,z\n2,b\n"), folder.path("a.db#T"));
  EXPECT_EQ(types(opened(folder.path("a.db"))), "y F1.0, z A1");
  EXPECT_EQ(shown(opened(folder.path("a.db#T"))), "2 'b'");
}

TEST(WrittenSqliteTables, AreNotCalledAsTheTableOfTheirDictionaries) {
  const TestFolder folder;
  EXPECT_FALSE(createDataFile(folder.path("a.db#statistics:resource"), oneDate(), ""));
}

TEST(WrittenSqliteTables, HaveTwoThousandColumnsAtMost) {
  const TestFolder folder;
  Dictionary dictionary;
  for (int column = 0; column < 2001; ++column) dictionary.add(dated(fmt::format("v{}", column)));
  const auto refused = createDataFile(folder.path("b.db"), dictionary, "");
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.problem().what, "SQLite reports: too many columns on b.");
}

}  // namespace
}  // namespace workbench::data
