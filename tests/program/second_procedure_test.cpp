// The example of a second procedure, COUNT MISSING: what it answers, and what it asks of the host on the way.
#include <gtest/gtest.h>

#include "tests/program/program_run.h"

namespace workbench::tests::second_procedure_test {

struct FourAnswers {
  FourAnswers() { folder.write("answers.csv", "id,age,town\n1,34,Ghent\n2,,Delft\n3,51,\n4,,Lund\n"); }

  // The calls of the host that the command makes, a line each.
  std::string journalOf(const std::string& command) const {
    folder.write("job.txt", "OPEN DATA FILE='answers.csv'.\n" + command + "\n");
    folder.run({"--plugins", EXAMPLE_PLUGINS, "run", "job.txt", "--journal", "calls.txt"});
    return folder.read("calls.txt");
  }
  ProgramFolder folder;
};

int countOf(const std::string& part, const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(SecondProcedure, LoadsAndRunsTheSameWay) {
  const ProgramFolder folder;
  folder.write("a.csv", "id,name,x\n1,ann,\n2,,\n3,cy,3\n");
  folder.write("job.txt", "OPEN DATA FILE='a.csv'.\nCOUNT MISSING /VARIABLES=ALL /OUTPUT PERCENT=YES.\n");
  const auto results = folder.results({"--plugins", EXAMPLE_PLUGINS, "run", "job.txt"});
  EXPECT_EQ(results["commands"][1]["procedure"]["title"], "Count Missing");
  EXPECT_EQ(cellOf(results, "Missing Values", {"id", "Count"}), "0");
  EXPECT_EQ(cellOf(results, "Missing Values", {"name", "Count"}), "1");
  EXPECT_EQ(cellOf(results, "Missing Values", {"x", "Percent"}), "66.7%");
  EXPECT_TRUE(results["verdict"].is_null());
}

TEST(SecondProcedure, IsHeldToItsOwnGrammar) {
  const ProgramFolder folder;
  folder.write("a.csv", "id\n1\n");
  const ProgramResult result =
      folder.run({"--plugins", EXAMPLE_PLUGINS, "run", "-"},
                 "OPEN DATA FILE='a.csv'.\nCOUNT MISSING /VARIABLES=ALL /OUTPUT PERCENT=SOME.\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("SOME"), std::string::npos) << result.err;
}

TEST(SecondProcedure, ReadsEveryCaseOnceAndPassesOverThoseThatTheFilterLeavesOut) {
  const FourAnswers answers;
  const std::string all = answers.journalOf("COUNT MISSING /VARIABLES=ALL.");
  EXPECT_EQ(countOf(".NextCase() -> true", all), 4);
  const std::string filtered = answers.journalOf("FILTER CASES BY=age.\nCOUNT MISSING /VARIABLES=ALL.");
  EXPECT_EQ(countOf(".NextCase() -> true", filtered), 2);
}

TEST(SecondProcedure, ReleasesTheOutputLastAndEverythingInTheReverseOrder) {
  const FourAnswers answers;
  const std::string journal = answers.journalOf("COUNT MISSING /VARIABLES=age.");
  EXPECT_TRUE(journal.ends_with("~BpPivotTable#1\n~ProcedureDataSource#1\n~VRIX_TokenSequence#1\n~BpProcedure#1\n"))
      << journal;
}

TEST(SecondProcedure, ReadsNoCaseAndOpensNoTableWhenItsCommandIsRefused) {
  const FourAnswers answers;
  const std::string journal = answers.journalOf("COUNT MISSING /VARIABLES=agee.");
  EXPECT_EQ(countOf("CreateCaseIterator", journal), 0) << journal;
  EXPECT_EQ(countOf("PivotTable", journal), 0) << journal;
  EXPECT_TRUE(journal.ends_with("~BpProcedure#1\n")) << journal;
}

}  // namespace workbench::tests::second_procedure_test
