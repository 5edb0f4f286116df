// Input that cannot be read: a clear error that names file, line and remedy, exit status 2, nothing written. And input
// that is odd, but can.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/program/program_run.h"

namespace workbench::tests::bad_input_test {

// Compares a good file with the given one, asks for every kind of output, and expects none.
struct BadFile {
  explicit BadFile(const std::string& content) : BadFile() { folder.write("bad.csv", content); }
  BadFile() { folder.write("good.csv", "id,x\n1,2\n2,3\n"); }

  std::string errorOf(const std::string& name = "bad.csv") {
    const std::string before = folder.names();
    const ProgramResult result = folder.run({"compare", "good.csv", name, "--id", "id", "--matched", "matched.csv",
                                             "--mismatched", "mismatched.csv", "--save-active", "saved.csv"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(folder.names(), before);
    return result.err;
  }

  ProgramFolder folder;
};

void expectParts(const std::string& text, const std::vector<std::string>& parts) {
  for (const std::string& part : parts) EXPECT_NE(text.find(part), std::string::npos) << part << "\nin: " << text;
}

TEST(BadInput, AFileThatIsNotThereIsNamed) { expectParts(BadFile().errorOf("none.csv"), {"none.csv"}); }

TEST(BadInput, AFolderIsNoDataFile) {
  BadFile bad;
  std::filesystem::create_directory(bad.folder.path("folder.csv"));
  expectParts(bad.errorOf("folder.csv"), {"folder.csv", "folder"});
}

TEST(BadInput, AnEmptyFileHasNoHeader) { expectParts(BadFile("").errorOf(), {"bad.csv", "empty"}); }

TEST(BadInput, ARowWithTooFewFieldsIsNamedByItsLine) {
  expectParts(BadFile("id,x\n1,2\n2\n3,4\n").errorOf(), {"bad.csv", "line 3"});
}

TEST(BadInput, ARowWithTooManyFieldsIsNamedByItsLine) {
  expectParts(BadFile("id,x\n1,2\n2,3\n3,4,5\n").errorOf(), {"bad.csv", "line 4"});
}

TEST(BadInput, BytesThatAreNoUtf8AreNamedByTheirLine) {
  expectParts(BadFile("id,x\n1,caf\xe9\n").errorOf(), {"bad.csv", "line 2", "UTF-8"});
}

TEST(BadInput, ANulByteIsNamedByItsLine) {
  expectParts(BadFile(std::string("id,x\n1,a\n2,b\0c\n", 15)).errorOf(), {"bad.csv", "line 3", "NUL"});
}

TEST(BadInput, AQuoteThatIsNeverClosedIsNamedByTheLineWhereItOpens) {
  expectParts(BadFile("id,x\n1,\"open\n2,3\n3,4\n").errorOf(), {"bad.csv", "line 2", "quote"});
}

TEST(BadInput, AJobWithASyntaxErrorNamesLineColumnAndTheNearestWord) {
  const ProgramFolder folder;
  folder.write("a.csv", "id\n1\n");
  folder.write("job.txt", "OPEN DATA FILE='a.csv' NAME=a.\nCOMPARE DATASETS\n  /COMPDATSET=a /VARIABLES=ALL.\n");
  const ProgramResult result = folder.run({"run", "job.txt"});
  EXPECT_EQ(result.status, 2);
  expectParts(result.err, {"line 3, column 4", "COMPDATASET"});
}

TEST(BadInput, AnUnknownCommandNamesTheNearestKnownOne) {
  const ProgramFolder folder;
  const ProgramResult result = folder.run({"run", "-"}, "COMPARE DATASET /COMPDATASET=a.\n");
  EXPECT_EQ(result.status, 2);
  expectParts(result.err, {"line 1, column 1", "COMPARE DATASETS"});
}

TEST(BadInput, APluginThatLacksItsEntryPointIsNamed) {
  const ProgramFolder folder;
  std::filesystem::create_directory(folder.path("plugins"));
  std::filesystem::copy(std::string(EXAMPLE_PLUGINS) + "/missing_counts.so", folder.path("plugins/lacking.so"));
  folder.write("plugins/lacking.plugin.json",
               R"({ "command": "LACK ENTRY", "library": "lacking.so", "entryPoint": "NOTHERE" })");
  folder.write("a.csv", "id\n1\n");
  const ProgramResult result =
      folder.run({"--plugins", "plugins", "run", "-"}, "OPEN DATA FILE='a.csv'.\nLACK ENTRY.\n");
  EXPECT_EQ(result.status, 2);
  expectParts(result.err, {"lacking.so", "LACK ENTRY", "NOTHERE"});
}

TEST(BadInput, APluginWhoseLibraryIsMissingIsNamed) {
  const ProgramFolder folder;
  std::filesystem::create_directory(folder.path("plugins"));
  folder.write("plugins/gone.plugin.json", R"({ "command": "GONE", "library": "gone.so", "entryPoint": "GONE" })");
  folder.write("a.csv", "id\n1\n");
  const ProgramResult result = folder.run({"--plugins", "plugins", "run", "-"}, "OPEN DATA FILE='a.csv'.\nGONE.\n");
  EXPECT_EQ(result.status, 2);
  expectParts(result.err, {"gone.so"});
}

// A file that can be opened, but whose bytes the system will not give, whoever asks.
TEST(BadInput, AFileThatCannotBeReadIsNamed) {
  BadFile bad;
  std::filesystem::create_symlink("/proc/self/mem", bad.folder.path("bad.csv"));
  expectParts(bad.errorOf(), {"bad.csv", "cannot be read"});
}

TEST(BadInput, AFileThatTheUserMayNotReadIsNamed) {
  BadFile bad("id,x\n1,2\n");
  chmod(bad.folder.path("bad.csv").c_str(), 0);
  if (access(bad.folder.path("bad.csv").c_str(), R_OK) == 0) GTEST_SKIP() << "this user may read everything";
  expectParts(bad.errorOf(), {"bad.csv"});
}

TEST(OddInput, AHeaderAloneIsADatasetOfNoCases) {
  const ProgramFolder folder;
  folder.write("none.csv", "id,x\n");
  folder.write("one.csv", "id,x\n1,2\n");
  EXPECT_EQ(folder.run({"compare", "none.csv", "none.csv", "--id", "id"}).status, 0);
  const auto results = folder.results({"compare", "one.csv", "none.csv", "--id", "id"});
  EXPECT_EQ(results["verdict"], "different");
  EXPECT_EQ(cellOf(results, "CD_MatchedSummaryTableName", {"CD_Cases", "CD_Count", "CD_Comparison"}), "0");
  EXPECT_EQ(cellOf(results, "CD_MatchedSummaryTableName", {"CD_CasesCompared", "CD_Percent", "CD_Comparison"}), "0.0%");
}

TEST(OddInput, AColumnWhoseNameRepeatsIsRenamedWithAWarning) {
  const ProgramFolder folder;
  folder.write("a.csv", "id,x,X\n1,2,3\n");
  const auto results = folder.results({"compare", "a.csv", "a.csv", "--id", "id"});
  EXPECT_EQ(results["verdict"], "same");
  expectParts(messagesOf(results), {"2: ", "X_1"});
}

TEST(OddInput, TwoThousandColumnsAreCompared) {
  const ProgramFolder folder;
  std::string header = "id";
  std::string first = "1";
  for (int column = 1; column < 2000; ++column) {
    header += ",v" + std::to_string(column);
    first += "," + std::to_string(column);
  }
  folder.write("a.csv", header + "\n" + first + "\n");
  folder.write("b.csv", header + "\n" + first + "7\n");
  const auto results = folder.results({"compare", "a.csv", "b.csv", "--id", "id"});
  EXPECT_EQ(cellOf(results, "CD_MismatchedByVarsTableName", {"v1999", "CD_Count"}), "1");
  EXPECT_EQ(cellOf(results, "CD_MismatchedByVarsTableName", {"v1998", "CD_Count"}), "0");
}

TEST(OddInput, AFieldOfOneMebibyteIsComparedToItsLastByte) {
  const ProgramFolder folder;
  const std::string field(std::size_t{1} << 20, 'x');
  folder.write("a.csv", "id,x\n1," + field + "\n");
  folder.write("b.csv", "id,x\n1," + field.substr(1) + "y\n");
  EXPECT_EQ(folder.run({"compare", "a.csv", "a.csv", "--id", "id"}).status, 0);
  EXPECT_EQ(folder.run({"compare", "a.csv", "b.csv", "--id", "id"}).status, 1);
}

}  // namespace workbench::tests::bad_input_test
