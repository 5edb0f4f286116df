// Whole jobs: what they print, what they write, and how they end.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/program/program_run.h"

namespace workbench::tests::jobs_test {

struct TwoEntries {
  TwoEntries() {
    folder.write("a.csv", "id,name,x\n1,ann,1.5\n2,bob,2.5\n3,cy,3.5\n5,eve,5\n");
    folder.write("b.csv", "id,name,x\n1,ann,1.5\n2,bobby,2.5\n4,dan,4\n5,eve,5.25\n");
  }
  // A job over both files, open as first (active) and second.
  nlohmann::json job(const std::string& commands) const {
    folder.write("job.txt",
                 "OPEN DATA FILE='a.csv' NAME=first TYPESWITH='b.csv'.\n"
                 "OPEN DATA FILE='b.csv' NAME=second TYPESWITH='a.csv'.\n"
                 "ACTIVATE DATASET NAME=first.\n" +
                     commands);
    return folder.results({"run", "job.txt"});
  }
  ProgramFolder folder;
};

std::string outcomesOf(const nlohmann::json& results) {
  std::string all;
  for (const auto& command : results["commands"]) {
    all += (all.empty() ? "" : " ") + command["outcome"].get<std::string>();
  }
  return all;
}

TEST(Compare, SavesMatchedAndMismatchedCasesAndTheFlaggedDataset) {
  const TwoEntries entries;
  const ProgramResult result = entries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--matched", "m.csv",
                                                   "--mismatched", "n.csv", "--save-active", "s.csv"});
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(entries.folder.read("m.csv"), "id,name,x\n1,ann,1.5\n");
  EXPECT_EQ(entries.folder.read("n.csv"), "id,name,x\n2,bob,2.5\n5,eve,5\n");
  EXPECT_EQ(entries.folder.read("s.csv"), "id,name,x,CasesCompare\n1,ann,1.5,0\n2,bob,2.5,1\n3,cy,3.5,-1\n5,eve,5,1\n");
  EXPECT_EQ(entries.folder.names(), "a.csv b.csv m.csv m.schema.json n.csv n.schema.json s.csv s.schema.json");
}

TEST(Compare, NamesTheDatasetThatLacksACaseIdAndLetsTheComparisonSayTheRest) {
  const ProgramFolder folder;
  folder.write("a.csv", "id,x,only\n1,2,3\n");
  folder.write("b.csv", "id,x\n1,2\n");
  const ProgramResult result = folder.run({"compare", "a.csv", "b.csv", "--id", "only"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("comparison: The dataset has no variable only."), std::string::npos) << result.err;
  std::string oneLine = result.err;
  std::replace(oneLine.begin(), oneLine.end(), '\n', ' ');
  EXPECT_NE(oneLine.find("The comparison cannot be performed because the case ID variables do not match in the two "
                         "datasets."),
            std::string::npos)
      << result.err;
}

TEST(Compare, PrintsTheJobThatItRuns) {
  const TwoEntries entries;
  const ProgramResult result = entries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--show-syntax", "-q"});
  EXPECT_TRUE(result.out.starts_with("OPEN DATA FILE='a.csv' NAME=active TYPESWITH='b.csv'.\n")) << result.out;
  EXPECT_NE(result.out.find("  /CASEID=id\n"), std::string::npos);
}

TEST(Compare, WritesEveryCallOfTheProcedureIntoTheJournalAndNoneOfTheHosts) {
  const TwoEntries entries;
  entries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--journal", "j.txt"});
  const std::string journal = entries.folder.read("j.txt");
  EXPECT_TRUE(journal.starts_with("# COMPARE DATASETS\nBpProcedure#1 = BpProcedure(\"Compare Datasets\", 7)\n"))
      << journal.substr(0, 200);
  EXPECT_TRUE(journal.ends_with("~BpProcedure#1\n")) << journal.substr(journal.size() - 200);
}

TEST(Compare, WritesTheResultsWholeIntoAFileOfTheFormatThatItsEndingNames) {
  const TwoEntries entries;
  EXPECT_EQ(entries.folder.run({"compare", "a.csv", "b.csv", "-o", "r.json"}).out, "");
  EXPECT_EQ(nlohmann::json::parse(entries.folder.read("r.json"))["format"], "compare-datasets-results");
  EXPECT_EQ(entries.folder.names(), "a.csv b.csv r.json");
}

TEST(Compare, LeavesOutTheCaseTableOrEverythingElse) {
  const TwoEntries entries;
  const std::string caseTable = "Case By Case Comparison";
  const std::string summary = "Matched Summary";
  const std::string without = entries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--no-case-table"}).out;
  EXPECT_EQ(without.find(caseTable), std::string::npos);
  EXPECT_NE(without.find(summary), std::string::npos);
  const std::string only =
      entries.folder.run({"compare", "a.csv", "b.csv", "--table", "CD_CaseByCaseComparisonTableName"}).out;
  EXPECT_NE(only.find(caseTable), std::string::npos);
  EXPECT_EQ(only.find(summary), std::string::npos);
}

TEST(Compare, ShowsTheOutputInAnotherLanguage) {
  const TwoEntries entries;
  const std::string english = entries.folder.run({"compare", "a.csv", "b.csv", "--lang", "en"}).out;
  const std::string german = entries.folder.run({"compare", "a.csv", "b.csv", "--lang", "de"}).out;
  EXPECT_NE(english, german);
  EXPECT_EQ(german.find("Matched Summary"), std::string::npos) << german;
  EXPECT_EQ(entries.folder.run({"compare", "a.csv", "b.csv", "--lang", "tlh"}).status, 2);
}

TEST(Compare, ComparesNothingTwiceWhenTheCaseTableIsOffAndFlagsDecide) {
  const TwoEntries entries;
  const auto same = entries.job(
      "CLOSE DATASET NAME=second.\nOPEN DATA FILE='a.csv' NAME=second.\n"
      "ACTIVATE DATASET NAME=first.\n"
      "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id /OUTPUT CASETABLE=NO.\n");
  EXPECT_EQ(same["verdict"], "same");
  const auto different =
      entries.job("COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id /OUTPUT CASETABLE=NO.\n");
  EXPECT_EQ(different["verdict"], "different");
}

TEST(Job, ACommandThatIsRefusedDoesNotStopItUnlessAsked) {
  const TwoEntries entries;
  const auto results = entries.job("COMPARE DATASETS /VARIABLES=ALL.\nDESCRIBE DATA.\n");
  EXPECT_EQ(outcomesOf(results), "completed completed completed refused completed");
  EXPECT_EQ(results["verdict"], "trouble");
  EXPECT_EQ(outcomesOf(entries.folder.results({"run", "job.txt", "--stop-on-error"})),
            "completed completed completed refused");
}

TEST(Job, SaysSoWhenAProcedureEndsWithoutAResultAndWithoutAReason) {
  const TwoEntries entries;
  // The procedure refuses this list without a word.
  const auto results =
      entries.job("COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /OUTPUT VARPROPERTIES=LABEL ALL.\n");
  EXPECT_EQ(outcomesOf(results), "completed completed completed refused");
  EXPECT_EQ(results["verdict"], "trouble");
  EXPECT_NE(results["commands"][3].dump().find("COMPARE DATASETS ended without a result and without a reason."),
            std::string::npos)
      << results["commands"][3].dump();
}

TEST(Job, PutsTheOutputsOfAFailedCommandNowhere) {
  const TwoEntries entries;
  entries.folder.write("c.csv", "id,name,x\n9,zed,1\n1,ann,1\n");
  const auto results = entries.job(
      "COMPARE DATASETS /COMPDATASET='c.csv' /VARIABLES=ALL /CASEID=id\n"
      "  /SAVE MATCHDATASET=YES MATCHNAME='m.csv' MISMATCHDATASET=YES MISMATCHNAME=open.\n"
      "ACTIVATE DATASET NAME=open.\n");
  EXPECT_EQ(outcomesOf(results), "completed completed completed failed refused");
  EXPECT_FALSE(entries.folder.has("m.csv"));
}

TEST(Job, OpensSavedCasesAsADatasetOfThatHandle) {
  const TwoEntries entries;
  const auto results = entries.job(
      "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id /SAVE MISMATCHDATASET=YES MISMATCHNAME=toCheck.\n"
      "ACTIVATE DATASET NAME=toCheck.\nSAVE DATA FILE='check.csv'.\n");
  EXPECT_EQ(outcomesOf(results), "completed completed completed completed completed completed");
  EXPECT_EQ(entries.folder.read("check.csv"), "id,name,x\n2,bob,2.5\n5,eve,5\n");
}

TEST(Job, NeverWritesOverAFileThatDataAreReadFrom) {
  const TwoEntries entries;
  const std::string before = entries.folder.read("b.csv");
  const auto results = entries.job(
      "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id /SAVE MATCHDATASET=YES MATCHNAME='./b.csv'.\n");
  EXPECT_EQ(results["verdict"], "trouble");
  EXPECT_EQ(entries.folder.read("b.csv"), before);
}

TEST(Job, LetsGoOfTheFileOfAClosedDatasetThatARefusedComparisonLeftOpen) {
  const TwoEntries entries;
  entries.folder.write("b.csv", "id,x\n1,1.5\n");
  const auto results = entries.job(
      "COMPARE DATASETS /COMPDATASET=second /VARIABLES=x /CASEID=name /SAVE FLAGMISMATCHES=NO.\n"
      "CLOSE DATASET NAME=second.\n"
      "SAVE DATA FILE='b.csv'.\n");
  EXPECT_EQ(outcomesOf(results), "completed completed completed refused completed completed");
  EXPECT_EQ(entries.folder.read("b.csv"), entries.folder.read("a.csv"));
}

TEST(Job, HidesPasswordsInWhatItShows) {
  const TwoEntries entries;
  const auto results = entries.job("OPEN DATA FILE='a.csv' PASSWORD='open sesame'.\n");
  EXPECT_EQ(results.dump().find("sesame"), std::string::npos);
  EXPECT_NE(results["commands"][3]["syntax"].get<std::string>().find("PASSWORD='***'"), std::string::npos);
}

TEST(Job, WithoutAComparisonHasNoVerdictAndEndsWith0) {
  const TwoEntries entries;
  const ProgramResult result = entries.folder.run({"run", "-"}, "OPEN DATA FILE='a.csv'.\nDESCRIBE DATA.\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(entries.job("DESCRIBE DATA.\n")["verdict"].is_null());
}

TEST(Job, ShowsFilterWeightAndSplitOfBothDatasets) {
  const TwoEntries entries;
  const auto results = entries.job(
      "WEIGHT CASES BY=x.\nSPLIT CASES BY=name id.\n"
      "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id.\n");
  const std::string table = "CD_CompSummaryTableName";
  EXPECT_EQ(cellOf(results, table, {"CD_Weight", "CD_Active"}), "x");
  EXPECT_EQ(cellOf(results, table, {"CD_SplitFile", "CD_Active"}), "name, id");
  EXPECT_EQ(cellOf(results, table, {"CD_Filter", "CD_Active"}), "");
  EXPECT_EQ(cellOf(results, table, {"CD_Weight", "CD_Comparison"}), "");
}

TEST(Describe, ShowsTheDictionaryAndTheNumberOfCases) {
  const TwoEntries entries;
  const auto results = entries.folder.results({"describe", "a.csv"});
  EXPECT_EQ(cellOf(results, "Dataset", {"Cases", ""}), "4");
  EXPECT_EQ(cellOf(results, "Dictionary", {"x", "Print Format"}), "F3.1");
  EXPECT_EQ(cellOf(results, "Dictionary", {"name", "Type"}), "Text");
}

TEST(Sort, WritesTheCasesInOrder) {
  const ProgramFolder folder;
  folder.write("in.csv", "id,x\n3,c\n1,b\n1,a\n,z\n");
  EXPECT_EQ(folder.run({"sort", "in.csv", "out.csv", "--by", "id"}).status, 0);
  EXPECT_EQ(folder.read("out.csv"), "id,x\n,z\n1,b\n1,a\n3,c\n");
}

// Two datasets whose texts are of different widths, open as first (active) and second.
nlohmann::json jobOverTexts(const ProgramFolder& folder, const std::string& commands) {
  folder.write("a.csv", "t,x\nbb,1\naa,2\n");
  folder.write("b.csv", "t,x\nbbz,1\nbba,2\naaa,3\n");
  folder.write("job.txt",
               "OPEN DATA FILE='a.csv' NAME=first.\nOPEN DATA FILE='b.csv' NAME=second.\n"
               "ACTIVATE DATASET NAME=first.\n" +
                   commands);
  return folder.results({"run", "job.txt"});
}

TEST(Sort, SortsAnotherDatasetAlongAsTheActiveOneCutsItsTexts) {
  for (const std::string when : {"", " WHEN=NEEDED"}) {
    const ProgramFolder folder;
    const auto results = jobOverTexts(folder, "SORT CASES BY=t WITH=second" + when +
                                                  ".\nSAVE DATA FILE='sa.csv'.\n"
                                                  "ACTIVATE DATASET NAME=second.\nSAVE DATA FILE='sb.csv'.\n");
    EXPECT_EQ(messagesOf(results),
              "1: Dataset second was sorted by t: row 2 (bb) stood before row 3 (aa). Row numbers count the sorted "
              "cases.\n"
              "1: Dataset first was sorted by t: row 1 (bb) stood before row 2 (aa). Row numbers count the sorted "
              "cases.\n");
    EXPECT_EQ(folder.read("sa.csv"), "t,x\naa,2\nbb,1\n");
    EXPECT_EQ(folder.read("sb.csv"), "t,x\naaa,3\nbbz,1\nbba,2\n");
  }
}

TEST(Sort, SortsTheActiveDatasetAlsoWhereTheOtherOneCannotBe) {
  const ProgramFolder folder;
  folder.write("c.csv", "y\n1\n");
  const auto results = jobOverTexts(folder,
                                    "SORT CASES BY=t WITH=third.\n"
                                    "OPEN DATA FILE='c.csv' NAME=third.\nACTIVATE DATASET NAME=first.\n"
                                    "SORT CASES BY=t WITH=third.\nSAVE DATA FILE='sa.csv'.\n");
  EXPECT_EQ(outcomesOf(results), "completed completed completed refused completed completed refused completed");
  const std::string messages = messagesOf(results);
  EXPECT_NE(messages.find("third: The dataset does not exist. Open it first."), std::string::npos) << messages;
  EXPECT_NE(messages.find("third: The dataset has no variable t."), std::string::npos) << messages;
  EXPECT_EQ(folder.read("sa.csv"), "t,x\naa,2\nbb,1\n");
}

TEST(Demo, TheTwoEntriesThatAreShippedDifferIn42Cases) {
  const ProgramFolder folder;
  const std::string examples = EXAMPLES;
  const auto results = folder.results({"compare", examples + "/entry1.csv", examples + "/entry2.csv", "--id", "id"});
  EXPECT_EQ(results["verdict"], "different");
  EXPECT_EQ(cellOf(results, "CD_MismatchedByCasesTableName", {"CD_CasesContainingMismatches", "CD_Count"}), "42");
  EXPECT_EQ(cellOf(results, "CD_MatchedSummaryTableName", {"CD_CasesNotCompared", "CD_Count", "CD_Active"}), "3");
}

}  // namespace workbench::tests::jobs_test
