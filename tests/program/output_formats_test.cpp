// Formats of results at the command line: which is chosen, where it may go, in which language and forms.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/program/program_run.h"

namespace workbench::tests::output_formats_test {

class OutputFormatsAtWork : public testing::Test {
 protected:
  OutputFormatsAtWork() {
    std::string active = "id,amount,day\n";
    std::string comparison = active;
    for (int id = 1; id <= 1200; ++id) {
      active += std::to_string(id) + ",1.5,2026-11-22\n";
      comparison += std::to_string(id) + (id == 7 ? ",2.25,2026-11-23\n" : ",1.5,2026-11-22\n");
    }
    folder.write("a.csv", active);
    folder.write("b.csv", comparison);
  }
  ~OutputFormatsAtWork() override {
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG", "SOURCE_DATE_EPOCH"}) unsetenv(name);
  }

  ProgramResult compare(std::vector<std::string> options) const {
    std::vector<std::string> arguments = {"compare", "a.csv", "b.csv", "--id", "id"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return folder.run(arguments);
  }

  // The program on a terminal of its own; what it shows there.
  std::string onTerminal(const std::string& options) const {
    const std::string command = "cd " + folder.path("").string() + " && script -qec '" PROGRAM " compare a.csv b.csv " +
                                options + "; echo status $?' shown </dev/null >/dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return folder.read("shown");
  }

  ProgramFolder folder;
};

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST_F(OutputFormatsAtWork, AreListedByTheHelp) {
  EXPECT_TRUE(has(folder.run({"compare", "--help"}).out, "text (default), json,"));
  EXPECT_TRUE(has(folder.run({"compare", "--help"}).out, "xlsx"));
}

TEST_F(OutputFormatsAtWork, WriteAWorkbookIntoAFileAndIntoAPipeAlike) {
  EXPECT_EQ(compare({"-o", "results.xlsx"}).status, 1);
  const ProgramResult piped = compare({"--format", "xlsx"});
  EXPECT_EQ(piped.status, 1);
  EXPECT_TRUE(piped.out.starts_with("PK"));
  EXPECT_TRUE(piped.out == folder.read("results.xlsx"));
  EXPECT_EQ(folder.names(), "a.csv b.csv results.xlsx");
}

TEST_F(OutputFormatsAtWork, PutNoWorkbookOnATerminal) {
  const std::string shown = onTerminal("--format xlsx");
  EXPECT_TRUE(has(shown, "A workbook cannot be shown on a terminal. Name a file by -o,")) << shown;
  EXPECT_TRUE(has(shown, "status 2")) << shown;
  EXPECT_TRUE(has(onTerminal("--format xlsx -o results.xlsx"), "status 1"));
  EXPECT_TRUE(has(onTerminal("--format markdown"), "## Matched Summary"));
}

TEST_F(OutputFormatsAtWork, RefuseCsvOfSeveralTablesAndListTheirKeys) {
  const ProgramResult refused = compare({"--format", "csv", "-o", "results.csv"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_TRUE(has(refused.err, "Name one by --table; their keys are: CD_")) << refused.err;
  EXPECT_EQ(folder.names(), "a.csv b.csv");
  const ProgramResult one = compare({"--format", "csv", "--table", "CD_CaseByCaseComparisonTableName"});
  EXPECT_EQ(one.status, 1);
  EXPECT_EQ(one.out.substr(0, one.out.find("\r\n")), ",Case ID / id,Row / Active,Row / Comparison,amount,day")
      << one.out;
}

TEST_F(OutputFormatsAtWork, WarnOfATableThatIsNotThereAndKeepTheVerdict) {
  const ProgramResult missing = compare({"--table", "CD_Nothing"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(has(missing.err, "Warning: There is no table CD_Nothing among the results. There are: CD_"))
      << missing.err;
  EXPECT_EQ(compare({"--table", "CD_Nothing", "-q"}).err, "");
}

TEST_F(OutputFormatsAtWork, HaveTheNumbersAndDatesOfTheLanguageForPeopleOnly) {
  const std::string german = compare({"--lang", "de"}).out;
  EXPECT_TRUE(has(german, "1.200")) << german;
  EXPECT_TRUE(has(german, "0,08\u00A0%") || has(german, "0,1\u00A0%")) << german;
  EXPECT_TRUE(has(german, "(1) 1,50")) << german;
  EXPECT_TRUE(has(german, "(1) 22.11.2026")) << german;
  for (const char* const format : {"json", "csv"}) {
    const std::string forPrograms =
        compare({"--lang", "de", "--format", format, "--table", "CD_CaseByCaseComparisonTableName"}).out;
    EXPECT_TRUE(has(forPrograms, "(1) 1.5")) << forPrograms;
    EXPECT_TRUE(has(forPrograms, "(1) 2026-11-22")) << forPrograms;
  }
}

TEST_F(OutputFormatsAtWork, TakeLanguageAndNumbersFromTheEnvironment) {
  setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_TRUE(has(compare({}).out, "1.200"));
  setenv("LC_NUMERIC", "C", 1);
  const std::string mixed = compare({}).out;
  EXPECT_TRUE(has(mixed, "1,200")) << mixed;
  EXPECT_TRUE(has(mixed, "Fälle")) << mixed;
  EXPECT_TRUE(has(compare({"--lang", "de"}).out, "1.200"));  // what is asked for counts for both
  setenv("LC_ALL", "fr_FR.UTF-8", 1);                        // no wording: English, with the numbers of the locale
  EXPECT_TRUE(has(compare({}).out, "1\u202F200"));
}

TEST_F(OutputFormatsAtWork, TellProblemsInTheLanguageOfTheResults) {
  const ProgramResult german = compare({"--lang", "de", "--format", "nothing"});
  EXPECT_TRUE(has(german.err, "Es gibt kein Ausgabeformat nothing.")) << german.err;
  const ProgramResult table = compare({"--lang", "de", "--table", "CD_Nothing"});
  EXPECT_TRUE(has(table.err, "Unter den Ergebnissen ist keine Tabelle CD_Nothing.")) << table.err;
}

TEST_F(OutputFormatsAtWork, RefuseADateThatIsNone) {
  setenv("SOURCE_DATE_EPOCH", "yesterday", 1);
  const ProgramResult refused = compare({});
  EXPECT_EQ(refused.status, 2);
  EXPECT_TRUE(has(refused.err, "SOURCE_DATE_EPOCH: This is no time in seconds since 1970.")) << refused.err;
}

}  // namespace workbench::tests::output_formats_test
