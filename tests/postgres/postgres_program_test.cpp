// Tables of PostgreSQL as the program's user meets them.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/postgres/postgres_server.h"
#include "tests/program/program_run.h"

namespace workbench::tests {
namespace {

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

// A reference with a password, which must be nowhere.
struct Protected {
  Protected() {
    database.run(
        "CREATE TABLE t (id int PRIMARY KEY, x int); INSERT INTO t VALUES (1, 10), (2, 20);"
        "GRANT SELECT ON t TO anna");
    folder.write("b.csv", "id,x\n1,10\n2,21\n");
    reference = fmt::format("postgresql://anna:{}@/{}?host={}#t", passwordOfAnnaInUri, database.name(),
                            PostgresServer::instance().folder());
    shown = replaced(reference, passwordOfAnnaInUri, "***");
  }
  // Of all that the run has left, and all that it has said.
  void expectNothingIsTold(const ProgramResult& result) const {
    std::string all = result.out + result.err;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path("."))) {
      if (entry.is_regular_file()) all += folder.read(entry.path().filename());
    }
    EXPECT_FALSE(has(all, "geheim")) << all;
  }

  TestDatabase database;
  ProgramFolder folder;
  std::string reference;
  std::string shown;
};

TEST(PostgresPasswords, AreNeitherInTheSyntaxNorInAnyResultsNorInTheJournalNorOnTheTerminal) {
  const Protected data;
  for (const char* const format : {"text", "json", "html", "markdown"}) {
    const ProgramResult result =
        data.folder.run({"compare", data.reference, "b.csv", "--id", "id", "--show-syntax", "-v", "--journal",
                         "journal", "--format", format, "-o", "results", "--progress", "always", "--profile"});
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_TRUE(has(result.out, "FILE='" + data.shown + "' NAME=active")) << result.out;
    EXPECT_FALSE(data.folder.read("results").empty());
    data.expectNothingIsTold(result);
  }
}

TEST(PostgresPasswords, AreInNoFileThatIsWrittenFromTheTable) {
  const Protected data;
  for (const char* const name : {"out.csv", "out.jsonl", "out.parquet", "out.duckdb", "out.sqlite"}) {
    const ProgramResult result = data.folder.run({"convert", data.reference, name});
    EXPECT_EQ(result.status, 0) << result.err;
    data.expectNothingIsTold(result);
  }
  data.expectNothingIsTold(data.folder.run({"describe", data.reference}));
  data.expectNothingIsTold(data.folder.run({"sort", data.reference, "sorted.csv", "--by", "x"}));
}

TEST(PostgresPasswords, InAJobAreHiddenInItsResultsAndStillOpenTheDatabase) {
  const Protected data;
  const std::string job = fmt::format(
      "OPEN DATA FILE='{0}' NAME=a.\nOPEN DATA FILE=\"b.csv\" NAME=b TYPESWITH=\"{0}\".\nACTIVATE DATASET NAME=b.\n"
      "DESCRIBE DATA.\nCOMPARE DATASETS /COMPDATASET=a /VARIABLES=ALL /CASEID=id /SAVE FLAGMISMATCHES=NO /OUTPUT "
      "VARPROPERTIES=NONE.\n",
      data.reference);
  const ProgramResult result = data.folder.run({"run", "-", "-o", "results.json", "--journal", "journal"}, job);
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_TRUE(has(data.folder.read("results.json"), "OPEN DATA FILE='" + data.shown + "' NAME=a."));
  const std::string input = ".standard-input";
  std::filesystem::remove(data.folder.path(input));  // that is what the user wrote
  data.expectNothingIsTold(result);
}

TEST(PostgresPasswords, AreInNoErrorWhateverIsWrongWithTheCommand) {
  const Protected data;
  const std::string& reference = data.reference;
  const std::string noSuchTable = reference + "able";
  const std::vector<std::vector<std::string>> commands{
      {"compare", reference},
      {"compare", reference, "b.csv", reference},
      {"compare", reference, "b.csv", "--no-such-option=" + reference},
      {"compare", reference, "b.csv", "--limit", reference},
      {"compare", reference, "b.csv", "--rename", reference},
      {"compare", reference, "b.csv", "--matched", reference},
      {"compare", reference, "b.csv", "-o", reference},
      {"compare", reference, "b.csv", "--lang", reference},
      {"compare", "--lang=" + reference},
      {"compare", reference, "b.csv", "--journal", reference},
      {"compare", reference, "b.csv", "--password-file", reference},
      {"compare", noSuchTable, "b.csv"},
      {"compare", "b.csv", noSuchTable, "--id", "id"},
      {"describe", noSuchTable, "--lang", "de"},
      {"describe", replaced(reference, "%40", "@")},
      {"describe", replaced(reference, "%40", "%4")},
      {"describe", replaced(reference, "%2F", "#")},
      {"describe", replaced(reference, "anna", "berta")},
      {"describe", replaced(reference, "postgresql", "postgresq")},
      {"describe", replaced(reference, "postgresql", "POSTGRESQL")},
      {"convert", "b.csv", reference},
      {"convert", reference, reference},
      {"sort", "b.csv", reference, "--by", "x"},
      {"run", reference},
      {reference},
  };
  for (const std::vector<std::string>& command : commands) {
    const ProgramResult result = data.folder.run(command);
    EXPECT_EQ(result.status, 2) << fmt::format("{}", command.size());
    EXPECT_FALSE(result.err.empty());
    data.expectNothingIsTold(result);
  }
}

TEST(PostgresPasswords, AreInNoErrorOfAJob) {
  const Protected data;
  for (const char* const pattern :
       {"OPEN DATA FILE='{}.\n", "OPEN DATA FILE={}.\n", "OPEN DATA FILE '{}' NAME=a NAME=b.\n", "'{}'.\n",
        "OPEN DATA NAME='{}'.\n", "OPEN DATA FILE='b.csv' NAME=a.\nACTIVATE DATASET NAME=a.\nSAVE DATA FILE='{}'.\n",
        "OPEN DATA FILE='b.csv' NAME=a.\nACTIVATE DATASET NAME=a.\nCOMPARE DATASETS /COMPDATASET='{}' /VARIABLES={}.\n",
        "OPEN DATA FILE='b.csv' RENAME='{}' TO x.\n", "SORT CASES BY='{}'.\n", "CLOSE DATASET NAME='{}'.\n"}) {
    const std::string job = replaced(pattern, "{}", data.reference);
    const ProgramResult result = data.folder.run({"run", "-", "--journal", "journal", "-o", "results.json"}, job);
    EXPECT_EQ(result.status, 2) << pattern << result.err;
    std::filesystem::remove(data.folder.path(".standard-input"));
    data.expectNothingIsTold(result);
  }
}

TEST(PostgresPasswords, OfAFileSpecificationAreHiddenFromTheProcedure) {
  const Protected data;
  const std::string job = fmt::format(
      "OPEN DATA FILE='b.csv' NAME=a.\nACTIVATE DATASET NAME=a.\nCOMPARE DATASETS /COMPDATASET='{}' /VARIABLES=ALL "
      "/CASEID=id /SAVE FLAGMISMATCHES=NO /OUTPUT VARPROPERTIES=NONE.\n",
      data.reference);
  const ProgramResult result = data.folder.run({"run", "-", "-o", "results.json", "--journal", "journal"}, job);
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_TRUE(has(data.folder.read("journal"), "Init(\"" + data.shown));
  std::filesystem::remove(data.folder.path(".standard-input"));
  data.expectNothingIsTold(result);
}

// What a comparison gives of the same data, whatever holds them.
nlohmann::json comparisonOf(const ProgramFolder& folder, const std::string& active, const std::string& compared) {
  nlohmann::json results = folder.results({"compare", active, compared, "--id", "id", "--limit", "50"});
  results.erase("created");
  return nlohmann::json::parse(replaced(results.dump(), active, "the active data"));
}

TEST(PostgresTablesInTheProgram, GiveTheDocumentThatTheSameRowsGiveAsText) {
  const TestDatabase database;
  const ProgramFolder folder;
  const std::string active = database.file("active.csv");
  const std::string compared = database.file("compared.csv");
  // The key is no primary one, and the rows lie in another order than the key's.
  database.run(
      "CREATE TABLE t AS SELECT (i * 7919) % 100003 AS id, 'k' || i % 977 AS name, i % 5000 / 4.0 AS x, date "
      "'2020-01-01' + i % 3000 AS d, CASE WHEN i % 13 <> 0 THEN i * 0.5::float8 END AS r FROM "
      "generate_series(1, 100000) i; COPY t TO '" +
      active +
      "' WITH (FORMAT csv, HEADER);"
      "COPY (SELECT id, CASE WHEN id % 500 = 0 THEN 'other' ELSE name END AS name, x, d, r + (id % 1000 = "
      "1)::int AS r FROM t WHERE id % 9999 <> 0) TO '" +
      compared + "' WITH (FORMAT csv, HEADER)");
  const nlohmann::json ofText = comparisonOf(folder, active, compared);
  const nlohmann::json ofTable = comparisonOf(folder, database.reference("t"), compared);
  EXPECT_EQ(ofTable["verdict"], "different");
  EXPECT_TRUE(ofText == ofTable) << nlohmann::json::diff(ofText, ofTable).dump(1);
  database.run("ALTER TABLE t ADD PRIMARY KEY (id)");
  const nlohmann::json byKey = comparisonOf(folder, database.reference("t"), compared);
  EXPECT_EQ(byKey["verdict"], "different");
}

TEST(PostgresTablesInTheProgram, OfOneDatabaseAreComparedWithEachOther) {
  const TestDatabase database;
  const ProgramFolder folder;
  database.run(
      "CREATE TABLE a (id int PRIMARY KEY, x text); INSERT INTO a VALUES (1, 'a'), (2, 'b');"
      "CREATE VIEW b AS SELECT id, CASE WHEN id = 2 THEN 'c' ELSE x END AS x FROM a ORDER BY id DESC");
  const nlohmann::json results =
      folder.results({"compare", database.reference("a"), database.reference("b"), "--id", "id"});
  EXPECT_EQ(results["verdict"], "different");
}

TEST(PostgresTablesInTheProgram, AreNotWrittenAndTheErrorNamesWhatIs) {
  const TestDatabase database;
  const ProgramFolder folder;
  folder.write("x.csv", "id\n1\n");
  const ProgramResult result = folder.run({"convert", "x.csv", database.reference("t")});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(
      has(replaced(result.err, "\n", " "), "A PostgreSQL table is only read, not written. Use one of these: .csv,"))
      << result.err;
}

}  // namespace
}  // namespace workbench::tests
