// compare --profile: the difference profile behind the comparison, in one run.
#include <gtest/gtest.h>

#include "tests/program/program_run.h"

namespace workbench::tests::profile_test {

struct TwoEntries {
  TwoEntries() {
    folder.write("a.csv", "id,score,town\n3,30,Lund\n1,10,Ghent\n2,20,Mons\n");
    folder.write("b.csv", "id,score,town\n1,11,Gent\n2,20,Mons\n4,7,Oslo\n3,28,Lund\n");
  }
  nlohmann::json results(std::vector<std::string> further) const {
    std::vector<std::string> all = {"compare", "a.csv", "b.csv", "--id", "id"};
    all.insert(all.end(), further.begin(), further.end());
    return folder.results(all);
  }
  ProgramFolder folder;
};

std::string commandsOf(const nlohmann::json& results) {
  std::string names;
  for (const auto& command : results["commands"]) names += command["name"].get<std::string>() + "; ";
  return names;
}

TEST(ProfileOption, AddsTheProfileBehindTheComparison) {
  const TwoEntries entries;
  const auto results = entries.results({"--profile"});
  EXPECT_TRUE(commandsOf(results).ends_with("COMPARE DATASETS; PROFILE DIFFERENCES; ")) << commandsOf(results);
  EXPECT_EQ(cellOf(results, "PD_PairedCases", {"PD_CasesPaired", "PD_Count"}), "3");
  EXPECT_EQ(cellOf(results, "PD_PairedCases", {"PD_OnlyInComparison", "PD_Count"}), "1");
  EXPECT_EQ(cellOf(results, "PD_DifferencesTable", {"score", "PD_Mean"}), "-0.333");
  EXPECT_EQ(cellOf(results, "PD_DifferencesTable", {"score", "PD_Difference"}), "-2");
  EXPECT_EQ(cellOf(results, "PD_DifferencesTable", {"score", "id"}), "3");
  EXPECT_EQ(cellOf(results, "PD_AgreementTable", {"PD_AllVariables", "PD_Agreement"}), "50.0%");
}

TEST(ProfileOption, LeavesTheVerdictToTheComparison) {
  const TwoEntries entries;
  EXPECT_EQ(entries.results({"--profile"})["verdict"], "different");
  EXPECT_EQ(entries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--profile", "-q"}).status, 1);
  EXPECT_EQ(entries.folder.run({"compare", "a.csv", "a.csv", "--id", "id", "--profile", "-q"}).status, 0);
  const auto nothingToProfile = entries.results({"--profile", "--variables", "id"});
  EXPECT_EQ(nothingToProfile["verdict"], entries.results({"--variables", "id"})["verdict"]);
}

TEST(ProfileOption, IsNotRunBehindARefusedComparison) {
  const TwoEntries entries;
  const auto results = entries.results({"--profile", "--sort", "never"});
  EXPECT_EQ(commandsOf(results).find("PROFILE"), std::string::npos) << commandsOf(results);
  EXPECT_EQ(results["verdict"], "trouble");
}

TEST(ProfileOption, DoesNotProfileTheFlagVariableOfItsOwnComparison) {
  const ProgramFolder folder;
  folder.write("a.csv", "id,x\n1,1\n2,2\n");
  folder.write("b.csv", "id,x,CasesCompare\n1,1,5\n2,3,6\n");
  const auto results = folder.results({"compare", "a.csv", "b.csv", "--id", "id", "--profile"});
  EXPECT_EQ(cellOf(results, "PD_AgreementTable", {"x", "PD_ValuesDiffering"}), "1");
  EXPECT_EQ(cellOf(results, "PD_AgreementTable", {"CasesCompare", "PD_ValuesDiffering"}), "-");
}

TEST(ProfileOption, SpeaksTheLanguageOfTheRun) {
  const TwoEntries entries;
  const auto result = entries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--profile", "--lang", "de"});
  EXPECT_NE(result.out.find("Häufigste Änderungen"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find("PD_"), std::string::npos) << result.out;
}

TEST(ProfileOption, RunsInAJobOfItsOwnOverADataFile) {
  const TwoEntries entries;
  entries.folder.write("job.txt",
                       "OPEN DATA FILE='a.csv'.\nSORT CASES BY=id.\n"
                       "PROFILE DIFFERENCES /COMPDATASET='b.csv' /VARIABLES=score town /OUTPUT CHANGES=1.\n");
  const auto results = entries.folder.results({"run", "job.txt"});
  EXPECT_EQ(cellOf(results, "PD_PairedCases", {"PD_OnlyInComparison", "PD_Count"}), "1");
  EXPECT_TRUE(results["verdict"].is_null());
}

}  // namespace workbench::tests::profile_test
