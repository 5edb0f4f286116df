// Comparing files whose makers named variables differently: renaming and dropping on the comparison side.
#include <gtest/gtest.h>

#include "tests/program/program_run.h"

namespace workbench::tests::names_test {

struct TwoFiles {
  TwoFiles(const std::string& active, const std::string& comparison) {
    folder.write("a.csv", active);
    folder.write("b.csv", comparison);
  }
  ProgramResult compared(std::vector<std::string> options) const {
    options.insert(options.begin(), {"compare", "a.csv", "b.csv"});
    return folder.run(options);
  }
  nlohmann::json results(std::vector<std::string> options) const {
    options.insert(options.begin(), {"compare", "a.csv", "b.csv"});
    return folder.results(std::move(options));
  }
  // What stands in the way, on one line.
  std::string refusal(std::vector<std::string> options) const {
    const auto document = results(std::move(options));
    const std::string messages = messagesOf(document);
    return document["verdict"] == "trouble" ? messages.substr(0, messages.find('\n')) : "accepted: " + messages;
  }
  ProgramFolder folder;
};

constexpr const char* active = "id,sex,town\n1,f,Ghent\n2,m,Leuven\n3,f,Namur\n";
constexpr const char* otherwiseNamed = "key,gender,place,note\n1,f,Ghent,x\n2,f,Leuven,y\n3,f,Namur,z\n";

TEST(Rename, PairsVariablesOfDifferentNames) {
  const TwoFiles files(active, otherwiseNamed);
  const auto results = files.results({"--id", "id", "--rename", "key=id,GENDER=sex", "--rename", "place=town"});
  EXPECT_EQ(results["verdict"], "different");
  EXPECT_EQ(cellOf(results, "CD_MismatchedByVarsTableName", {"sex", "CD_Count"}), "1");
  EXPECT_EQ(cellOf(results, "CD_MismatchedByCasesTableName", {"CD_CasesContainingMismatches", "CD_Count"}), "1");
  EXPECT_EQ(messagesOf(results), "1: One variable stands only in dataset comparison: note.\n");
}

TEST(Rename, ExchangesTwoNames) {
  const TwoFiles files("id,x,y\n1,10,20\n2,11,21\n", "id,y,x\n1,10,20\n2,11,21\n");
  EXPECT_EQ(files.compared({"--id", "id"}).status, 1);
  EXPECT_EQ(files.compared({"--id", "id", "--rename", "x=y,y=x"}).status, 0);
}

TEST(Rename, FindsTypesUnderTheNewNamesInBothFiles) {
  // Alone the second file's column would be numbers, and "x" of the second file is another thing altogether.
  const TwoFiles files("id,x\n1,10\n2,n/a\n", "id,value,x\n1,10,2026-01-01\n2,12,2026-01-02\n");
  const auto results = files.results({"--id", "id", "--rename", "value=x,x=day"});
  EXPECT_EQ(cellOf(results, "CD_MismatchedByCasesTableName", {"CD_CasesContainingMismatches", "CD_Count"}), "1");
  const std::string messages = messagesOf(results);
  EXPECT_NE(messages.find("Column \"x\" is read as text"), std::string::npos) << messages;
}

TEST(Drop, LeavesVariablesOutOfTheComparison) {
  const TwoFiles files("a,id,x,t,y\n1,1,1,long text here,5\n2,2,2,another one,6\n",
                       "t,a,id,junk,x,y\nelse,9,1,text,1,5\nelse,8,2,12,2,6\n");
  const auto results = files.results({"--id", "id", "--drop", "A,t,junk", "--variables", "x,y"});
  EXPECT_EQ(results["verdict"], "same") << messagesOf(results);
  EXPECT_EQ(messagesOf(results), "1: All values in the two datasets match.\n");
  EXPECT_EQ(cellOf(results, "CD_MatchedSummaryTableName", {"CD_CasesCompared", "CD_Count", "CD_Active"}), "2");
}

TEST(Drop, SaysNothingOfTheTypeOfWhatIsLeftOut) {
  const TwoFiles files("id,x\n1,10\n2,11\n3,12\n", "id,x,u\n1,10,1\n2,11,2\n3,12,?\n");
  EXPECT_NE(messagesOf(files.results({"--id", "id"})).find("\"u\" is read as text"), std::string::npos);
  EXPECT_EQ(messagesOf(files.results({"--id", "id", "--drop", "u"})), "1: All values in the two datasets match.\n");
}

TEST(Drop, WorksOnColumnsThatAreStoredWithTheirTypes) {
  const TwoFiles files("id,x,y,z\n1,1,a,5\n2,2,b,6\n", "id,w,y,x\n1,text of some length,a,1\n2,other,b,3\n");
  ASSERT_EQ(files.folder.run({"convert", "b.csv", "b.parquet"}).status, 0);
  const auto results = files.folder.results(
      {"compare", "a.csv", "b.parquet", "--id", "id", "--drop", "w", "--rename", "x=z", "--variables", "y,z"});
  EXPECT_EQ(cellOf(results, "CD_MismatchedByCasesTableName", {"CD_CasesContainingMismatches", "CD_Count"}), "2");
}

TEST(Names, ThatCannotBeChangedSoAreRefusedWithTheReason) {
  const TwoFiles files(active, otherwiseNamed);
  const auto refused = [&](std::vector<std::string> options) { return files.refusal(std::move(options)); };
  EXPECT_EQ(refused({"--rename", "gendre=sex"}),
            "3: b.csv: There is no variable \"gendre\" to rename. Did you mean \"gender\"?");
  EXPECT_EQ(refused({"--drop", "zzzzzz"}),
            "3: b.csv: There is no variable \"zzzzzz\" to drop. Name one of the file's columns.");
  EXPECT_EQ(
      refused({"--rename", "gender=Place"}),
      "3: b.csv: The variables \"gender\" and \"place\" would both be named \"place\". Rename or drop one of them.");
  EXPECT_EQ(refused({"--rename", "gender=sex,GENDER=s"}),
            "3: b.csv: The variable \"GENDER\" is renamed twice. Give it one name.");
  EXPECT_EQ(refused({"--rename", "gender=sex", "--drop", "gender"}),
            "3: b.csv: The variable \"gender\" is both renamed and dropped. Do one of them.");
  EXPECT_EQ(refused({"--rename", "gender=a\tb"}),
            "3: b.csv: \"a\tb\" is no name that a variable can have. Leave out characters that cannot be seen.");
  EXPECT_EQ(refused({"--drop", "key,gender,place,note"}), "3: b.csv: All variables are dropped. Keep one at least.");
  EXPECT_EQ(files.compared({"--id", "id", "--rename", "key=id,gender=place,place=town"}).status, 1)
      << "a name that is given away is free";
}

TEST(Names, AreChangedByAJobAsWell) {
  const TwoFiles files(active, otherwiseNamed);
  files.folder.write("job.txt",
                     "OPEN DATA FILE='b.csv' RENAME=gender TO sex, key TO 'the id' DROP=note.\n"
                     "SAVE DATA FILE='c.csv'.\n"
                     "OPEN DATA FILE='b.csv' RENAME=gender sex.\n");
  const auto results = files.folder.results({"run", "job.txt"});
  EXPECT_EQ(files.folder.read("c.csv"), "the id,sex,place\n1,f,Ghent\n2,f,Leuven\n3,f,Namur\n");
  EXPECT_EQ(messagesOf(results), "3: RENAME: This is no list of old and new names. Write it so: a TO b, c TO d.\n");
}

TEST(Names, TakeTheRolesOfVariablesWithThem) {
  const TwoFiles files("id,x\n1,1\n", "id,f,w,x\n1,1,2,1\n");
  files.folder.write("b.schema.json", R"({"fields":[{"name":"id","type":"number"},{"name":"f","type":"number"},)"
                                      R"({"name":"w","type":"number"},{"name":"x","type":"number"}],)"
                                      R"("statistics:dataset":{"filter":"f","weight":"w"}})");
  files.folder.write("job.txt", "OPEN DATA FILE='b.csv' RENAME=w TO 'the weight' DROP=f.\nDESCRIBE DATA.\n");
  const auto results = files.folder.results({"run", "job.txt"});
  EXPECT_EQ(messagesOf(results), "2: b.csv: The variable \"f\" was dropped, which is the filter.\n");
  EXPECT_EQ(cellOf(results, "Dataset", {"Weight", ""}), "the weight");
}

}  // namespace workbench::tests::names_test
