// Tables of SQLite databases, written.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/data/descriptors/kept_dictionary.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

Dictionary oneDate() {
  Dictionary dictionary;
  dictionary.add(dated("d"));
  return dictionary;
}

TEST(WrittenSqliteTables, HoldTheSameCasesAsTheTextFileTheyWereMadeFrom) {
  const TestFolder folder;
  const std::string csv = mixedTextFile(folder);
  copyCases(csv, folder.path("a.db#visits"));
  EXPECT_EQ(types(opened(folder.path("a.db#visits"))), types(opened(csv)));
  EXPECT_EQ(casesOf(*opened(folder.path("a.db"))), casesOf(*opened(csv)));
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.csv", "a.db"}));
}

TEST(WrittenSqliteTables, HoldTheirDictionaries) { checkThatDictionariesAreKept("a.db", {"a.db"}); }

TEST(WrittenSqliteTables, HoldTheSameCasesWithoutTheirDictionaries) {
  const TestFolder folder;
  const std::string csv = mixedTextFile(folder);
  copyCases(csv, folder.path("a.db"));
  sqliteWith(folder.path("a.db"), {"DELETE FROM \"statistics:resource\""});
  EXPECT_EQ(types(opened(folder.path("a.db"))), types(opened(csv)));
  EXPECT_EQ(casesOf(*opened(folder.path("a.db"))), casesOf(*opened(csv)));
}

TEST(WrittenSqliteTables, AreCalledAsTheirFileWhereNobodyNamesThem) {
  const TestFolder folder;
  copyCases(folder.write("a.csv", "x\n1\n"), folder.path("study.sqlite"));
  EXPECT_EQ(shown(opened(folder.path("study.sqlite#study"))), "1");
}

TEST(WrittenSqliteTables, LeaveTheOtherTablesOfTheirDatabaseAsTheyAre) {
  const TestFolder folder;
  const std::string path = sqliteOf(
      folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)", "CREATE VIEW v AS SELECT x + 2 AS x FROM t"});
  const std::string csv = folder.write("a.csv", "y\n7\n");
  copyCases(csv, path + "#u");
  copyCases(csv, path + "#w");
  EXPECT_EQ(shown(opened(path + "#t")) + shown(opened(path + "#v")), "13");
  EXPECT_EQ(shown(opened(path + "#u")) + shown(opened(path + "#w")), "77");
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

TEST(WrittenSqliteTables, TakeThePlaceOfTheTableOfTheirNameAndOfItsDictionary) {
  const TestFolder folder;
  copyCases(folder.write("a.csv", "x\n1\n"), folder.path("a.db#t"));
  copyCases(folder.write("b.csv", "y,z\n2,b\n"), folder.path("a.db#T"));
  EXPECT_EQ(types(opened(folder.path("a.db"))), "y F1.0, z A1");
  EXPECT_EQ(shown(opened(folder.path("a.db#T"))), "2 'b'");
}

TEST(WrittenSqliteTables, HaveAnyNames) {
  const TestFolder folder;
  const std::string csv = folder.write("a.csv", "x\n1\n");
  copyCases(csv, folder.path("a.db#first"));
  for (const char* const name : {"t#u", "it's \"quoted\"", "two\nlines", "Grüße", "a/b"}) {
    const std::string path = folder.path("a.db") + "#" + name;
    copyCases(csv, path);
    EXPECT_EQ(shown(opened(path)), "1") << name;
  }
  EXPECT_FALSE(createDataFile(folder.path("a.db#statistics:resource"), oneDate(), ""));
}

TEST(WrittenSqliteTables, RefuseValuesThatTheyCannotHoldAndLeaveTheOldFileWhole) {
  const TestFolder folder;
  const std::string path = sqliteOf(folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  const std::string before = folder.read("a.db");
  auto writer = createDataFile(path + "#t", oneDate(), "");
  ASSERT_TRUE(writer) << writer.problem().text();
  OBS half{};
  half.number = 0.5;
  EXPECT_EQ(messageOf([&] { (*writer)->append(&half, 1, 1); }),
            path +
                "#t: In case 1 the value of \"d\" is 0.5, which is no day of the calendar, so it cannot be "
                "written; correct the value.");
  writer->reset();
  EXPECT_EQ(folder.names(), std::vector<std::string>{"a.db"});
  EXPECT_EQ(folder.read("a.db"), before);
}

TEST(WrittenSqliteTables, AreNotPutInThePlaceOfADatabaseThatChangedMeanwhile) {
  const TestFolder folder;
  const std::string path = sqliteOf(folder, "a.db", {"CREATE TABLE t (x)", "INSERT INTO t VALUES (1)"});
  auto writer = createDataFile(path + "#u", oneDate(), "");
  ASSERT_TRUE(writer) << writer.problem().text();
  sqliteWith(path, {"INSERT INTO t VALUES (2)"});
  (*writer)->complete();
  EXPECT_TRUE(messageOf([&] { (*writer)->commit(); }).starts_with(path + ": The database has changed since"));
  EXPECT_EQ(shown(opened(path)), "1 / 2");
}

TEST(WrittenSqliteTables, MayHaveTwoThousandColumnsAndNoMore) {
  const TestFolder folder;
  Dictionary dictionary;
  for (int column = 0; column < 2000; ++column) dictionary.add(dated(fmt::format("v{}", column)));
  auto writer = createDataFile(folder.path("a.db"), dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  (*writer)->complete();
  (*writer)->commit();
  EXPECT_EQ(opened(folder.path("a.db"))->dictionary().size(), 2000);
  dictionary.add(dated("one more"));
  const auto refused = createDataFile(folder.path("b.db"), dictionary, "");
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.problem().what, "SQLite reports: too many columns on b.");
}

}  // namespace
}  // namespace workbench::data
