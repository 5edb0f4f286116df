// Tables that are written into databases: what every kind of database has to hold.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/data/columnar/stored_fixture.h"
#include "tests/data/databases/sqlite_fixture.h"
#include "tests/data/descriptors/kept_dictionary.h"
#include "tests/data/files/writing_fixture.h"

namespace workbench::data {
namespace {

struct DatabaseKind {
  const char* name;
  const char* ending;
  std::string (*make)(const TestFolder& folder, const std::string& name, const std::vector<std::string>& statements);
  const char* schema;  // what stands before the names of tables in these statements
};

class WrittenTables : public testing::TestWithParam<DatabaseKind> {
 protected:
  std::string nameOf(std::string_view name) const { return fmt::format("{}{}", name, GetParam().ending); }
  std::string pathOf(std::string_view name) const { return folder_.path(nameOf(name)); }
  // The database "a" with a table "t" whose only variable is x, 1 in its only case.
  std::string oneTable(const std::vector<std::string>& furtherStatements = {}) const {
    std::vector<std::string> statements{fmt::format("CREATE TABLE {}t AS SELECT 1 AS x", GetParam().schema)};
    statements.insert(statements.end(), furtherStatements.begin(), furtherStatements.end());
    return GetParam().make(folder_, nameOf("a"), statements);
  }

  const TestFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Kinds, WrittenTables,
                         testing::Values(DatabaseKind{"DuckDb", ".duckdb", &duckDbOf, "made."},
                                         DatabaseKind{"Sqlite", ".db", &sqliteOf, ""}),
                         [](const auto& kind) { return kind.param.name; });

TEST_P(WrittenTables, HoldTheSameCasesAsTheTextFileTheyWereMadeFrom) {
  const std::string csv = mixedTextFile(folder_);
  copyCases(csv, pathOf("a") + "#visits");
  EXPECT_EQ(types(opened(pathOf("a") + "#visits")), types(opened(csv)));
  EXPECT_EQ(casesOf(*opened(pathOf("a"))), casesOf(*opened(csv)));
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"a.csv", nameOf("a")}));
}

TEST_P(WrittenTables, HoldTheirDictionaries) { checkThatDictionariesAreKept(nameOf("a"), {nameOf("a")}); }

TEST_P(WrittenTables, AreCalledAsTheirFileWhereNobodyNamesThem) {
  copyCases(folder_.write("a.csv", "x\n1\n"), pathOf("study"));
  EXPECT_EQ(shown(opened(pathOf("study") + "#study")), "1");
}

TEST_P(WrittenTables, LeaveTheOtherTablesOfTheirDatabaseAsTheyAre) {
  const std::string path = oneTable({fmt::format("CREATE VIEW {}v AS SELECT 3 AS x", GetParam().schema)});
  const std::string csv = folder_.write("a.csv", "y\n7\n");
  copyCases(csv, path + "#u");
  copyCases(csv, path + "#w");
  EXPECT_EQ(shown(opened(path + "#t")) + shown(opened(path + "#v")), "13");
  EXPECT_EQ(shown(opened(path + "#u")) + shown(opened(path + "#w")), "77");
}

TEST_P(WrittenTables, TakeThePlaceOfTheTableOfTheirNameWhoeverReadsThatStill) {
  const std::string path = pathOf("a") + "#t";
  copyCases(folder_.write("a.csv", "x\n1\n"), path);
  const SharedFile before = opened(path);
  copyCases(folder_.write("b.csv", "y,z\n2,b\n"), path);
  EXPECT_EQ(types(opened(path)), "y F1.0, z A1");
  EXPECT_EQ(shown(opened(pathOf("a"))), "2 'b'");
}

TEST_P(WrittenTables, HaveAnyNames) {
  const std::string csv = folder_.write("a.csv", "x\n1\n");
  copyCases(csv, pathOf("a") + "#first");
  for (const char* const name : {"t#u", "it's \"quoted\"", "two\nlines", "Grüße", "a/b"}) {
    const std::string path = pathOf("a") + "#" + name;
    copyCases(csv, path);
    EXPECT_EQ(shown(opened(path)), "1") << name;
  }
}

TEST_P(WrittenTables, RefuseValuesThatTheyCannotHoldAndLeaveTheOldFileWhole) {
  const std::string path = oneTable();
  const std::string before = folder_.read(nameOf("a"));
  auto writer = createDataFile(path + "#t", oneDate(), "");
  ASSERT_TRUE(writer) << writer.problem().text();
  OBS half{};
  half.number = 0.5;
  EXPECT_EQ(messageOf([&] { (*writer)->append(&half, 1, 1); }),
            path +
                "#t: In case 1 the value of \"d\" is 0.5, which is no day of the calendar, so it cannot be written; "
                "correct the value.");
  writer->reset();
  EXPECT_EQ(folder_.names(), std::vector<std::string>{nameOf("a")});
  EXPECT_EQ(folder_.read(nameOf("a")), before);
}

TEST_P(WrittenTables, AreNotPutInThePlaceOfADatabaseThatChangedMeanwhile) {
  const std::string path = oneTable();
  auto writer = createDataFile(path + "#u", oneDate(), "");
  ASSERT_TRUE(writer) << writer.problem().text();
  GetParam().make(folder_, nameOf("a"), {fmt::format("INSERT INTO {}t VALUES (2)", GetParam().schema)});
  (*writer)->complete();
  EXPECT_TRUE(messageOf([&] { (*writer)->commit(); }).starts_with(path + ": The database has changed since"));
  EXPECT_EQ(shown(opened(path)), "1 / 2");
}

TEST_P(WrittenTables, AreNeitherProtectedNorPutInThePlaceOfAView) {
  EXPECT_FALSE(createDataFile(pathOf("b") + ".pgp", oneDate(), "secret"));
  const std::string path = oneTable({fmt::format("CREATE VIEW {}v AS SELECT 3 AS x", GetParam().schema)});
  EXPECT_FALSE(createDataFile(path + "#v", oneDate(), ""));
  EXPECT_EQ(shown(opened(path + "#v")), "3");
}

TEST_P(WrittenTables, MayHaveTwoThousandColumnsAndNoCases) {
  Dictionary dictionary;
  for (int column = 0; column < 2000; ++column) dictionary.add(dated(fmt::format("v{}", column)));
  auto writer = createDataFile(pathOf("a"), dictionary, "");
  ASSERT_TRUE(writer) << writer.problem().text();
  (*writer)->complete();
  (*writer)->commit();
  const SharedFile file = opened(pathOf("a"));
  EXPECT_EQ(file->dictionary().size(), 2000);
  EXPECT_EQ(shown(file), "");
}

}  // namespace
}  // namespace workbench::data
