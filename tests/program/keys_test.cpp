// What the host says of case IDs and of variables before two datasets are compared.
#include <gtest/gtest.h>

#include "tests/program/program_run.h"

namespace workbench::tests::keys_test {

struct TwoFiles {
  TwoFiles(const std::string& active, const std::string& comparison) {
    folder.write("a.csv", active);
    folder.write("b.csv", comparison);
  }
  std::string messages(std::vector<std::string> options) const {
    options.insert(options.begin(), {"compare", "a.csv", "b.csv"});
    return messagesOf(folder.results(std::move(options)));
  }
  ProgramFolder folder;
};

TEST(Keys, ThatAreSoundNeedNoWord) {
  const TwoFiles files("id,x\n1,1\n2,2\n", "id,x\n1,1\n3,2\n");
  for (const char* const sort : {"auto", "never", "always"}) {
    EXPECT_EQ(files.messages({"--id", "id", "--sort", sort}), "") << sort;
  }
}

TEST(Keys, ThatAreRepeatedAreCountedOnceAndTheLowestIsNamedWithItsRows) {
  const TwoFiles files("id,x\n1,1\n2,2\n2,2\n4,2\n4,2\n4,2\n", "id,x\n1,1\n2,2\n3,3\n3,3\n");
  const std::string notes =
      "1: Dataset active: 2 values of id stand in several cases each, in 5 cases altogether; the lowest is 2, in rows "
      "2, 3.\n"
      "1: Dataset comparison: one value of id stands in several cases: 3 in rows 3, 4.\n";
  for (const char* const sort : {"auto", "never", "always"}) {
    EXPECT_EQ(files.messages({"--id", "id", "--sort", sort}), notes) << sort;
  }
}

TEST(Keys, AreToldInTheNumbersAndDatesOfTheLanguageToPeopleOnly) {
  std::string active = "day,part,x\n";
  for (int row = 0; row < 1300; ++row) active += "2026-11-22,1.25,1\n";
  active += "2026-11-23,2.5,1\n2026-11-23,2.5,1\n";
  const TwoFiles files(active, "day,part,x\n2026-11-22,1.25,1\n");
  const std::vector<std::string> german = {"compare", "a.csv", "b.csv", "--id", "day,part", "--lang", "de"};
  const std::string told = files.folder.run(german).err;
  EXPECT_EQ(
      told.substr(0, told.find(": Es gibt")),
      "Hinweis: Dataset active: 2 Werte von day, part stehen in je mehreren Fällen, zusammen in 1.302 Fällen; der "
      "niedrigste\nist 22.11.2026, 1,25, in den Zeilen 1, 2, 3, 4, 5, … 1.295 weitere.\n");
  EXPECT_EQ(messagesOf(files.folder.results(german)).substr(0, 191),
            "1: Dataset active: 2 Werte von day, part stehen in je mehreren Fällen, zusammen in 1302 Fällen; der "
            "niedrigste ist 2026-11-22, 1.25, in den Zeilen 1, 2, 3, 4, 5, … 1295 weitere.\n");
}

TEST(Keys, ArePairedInTheOrderOfTheFileWhereTheyAreRepeated) {
  const TwoFiles files("id,x\n2,first\n1,only\n2,second\n", "id,x\n1,only\n2,first\n2,other\n");
  const auto results = files.folder.results({"compare", "a.csv", "b.csv", "--id", "id"});
  EXPECT_EQ(cellOf(results, "CD_MismatchedByCasesTableName", {"CD_CasesCompared", "CD_Count"}), "3");
  EXPECT_EQ(cellOf(results, "CD_MismatchedByCasesTableName", {"CD_CasesContainingMismatches", "CD_Count"}), "1");
}

TEST(Keys, OfASortedDatasetAreToldByTheRowsOfTheFile) {
  const TwoFiles files("id,x\n7,1\n3,1\n,1\n3,2\n", "id,x\n3,1\n7,1\n");
  EXPECT_EQ(
      files.messages({"--id", "id"}),
      "1: Dataset active was sorted by id: row 1 (7) stood before row 2 (3). Row numbers count the sorted cases.\n"
      "1: Dataset active: one value of id stands in several cases: 3 in rows 2, 4. Rows are counted as they stood "
      "before sorting.\n"
      "1: Dataset active: id is missing in one case, row 3. Rows are counted as they stood before sorting.\n"
      "1: All values in the two datasets match.\n");
}

TEST(Keys, OfSeveralVariablesAreMissingWhereOneOfThemIs) {
  const TwoFiles files("a,b,x\n1,,1\n1,u,2\n2,,3\n", "a,b,x\n1,u,2\n1,u,2\n");
  EXPECT_EQ(files.messages({"--id", "a,b"}),
            "1: Dataset active: a, b is missing in 2 cases, the first of them row 1.\n"
            "1: Dataset comparison: one value of a, b stands in several cases: 1, u in rows 1, 2.\n");
}

TEST(Keys, OfTheComparisonDatasetAreCutAsTheActiveOneCutsThem) {
  const TwoFiles files("id,x\naa,1\n", "id,x\naab,1\naac,1\n");
  EXPECT_EQ(files.messages({"--id", "id"}), "") << "both files are read with the wider texts";
  files.folder.write("job.txt",
                     "OPEN DATA FILE='a.csv' NAME=a.\nOPEN DATA FILE='b.csv' NAME=b.\nACTIVATE DATASET NAME=a.\n"
                     "CHECK DATASETS WITH=b KEYS=id.\n");
  EXPECT_EQ(messagesOf(files.folder.results({"run", "job.txt"})),
            "1: Dataset b: one value of id stands in several cases: aa in rows 1, 2.\n");
}

TEST(Keys, OutOfOrderAreNamedWithTheirRowsWhereNothingMayBeSorted) {
  const TwoFiles files("id,x\n1,1\n5,1\n4,1\n", "id,x\n1,1\n4,1\n");
  EXPECT_EQ(files.messages({"--id", "id", "--sort", "never"}),
            "1: Dataset active is not in ascending order of id: row 2 (5) stands before row 3 (4).\n"
            "3: The active dataset is not sorted in ascending order of the case ID variables.\n");
}

TEST(Keys, AreToldInTheLanguageOfTheRun) {
  const TwoFiles files("id,x\n1,1\n1,1\n", "id,x\n1,1\n");
  EXPECT_EQ(files.messages({"--id", "id", "--lang", "de"}),
            "1: Dataset active: Ein Wert von id steht in mehreren Fällen: 1 in den Zeilen 1, 2.\n");
}

TEST(Variables, OfTheComparisonDatasetAloneAreToldInOneNote) {
  const TwoFiles one("id,x\n1,1\n", "id,x,y\n1,1,2\n");
  EXPECT_EQ(one.messages({"--id", "id"}),
            "1: One variable stands only in dataset comparison: y.\n"
            "1: All values in the two datasets match.\n");
  std::string header = "id";
  std::string row = "1";
  for (int number = 1; number <= 30; ++number) {
    header += ",v" + std::to_string(number);
    row += ",1";
  }
  const TwoFiles many("id,v3,mine\n1,1,1\n", header + "\n" + row + "\n");
  const ProgramResult shortened = many.folder.run({"compare", "a.csv", "b.csv"});
  EXPECT_NE(shortened.err.find("29 variables stand only in dataset comparison: v1, v2, v4"), std::string::npos)
      << shortened.err;
  EXPECT_EQ(shortened.err.find("v30"), std::string::npos) << shortened.err;
  const ProgramResult full = many.folder.run({"compare", "a.csv", "b.csv", "--full"});
  EXPECT_NE(full.err.find("v30"), std::string::npos) << full.err;
}

TEST(Check, SaysWhichDatasetLacksAKey) {
  const TwoFiles files("id,x\n1,1\n", "x\n1\n");
  EXPECT_EQ(files.messages({"--id", "id", "--sort", "never"}).substr(0, 48),
            "3: comparison: The dataset has no variable id.\n3");
}

}  // namespace workbench::tests::keys_test
