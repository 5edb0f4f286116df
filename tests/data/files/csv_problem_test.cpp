// What an unsound file is refused with: what, where, and what to do.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

constexpr const char* raggedRemedy =
    " Put a field that holds a delimiter into quotes, and write an empty one where a value is missing.";

std::string problemOfText(const std::string& bytes, const std::string& name = "a.csv") {
  const TestFolder folder;
  return problemOf(folder, folder.write(name, bytes));
}

TEST(CsvProblem, NamesAFileThatIsNotThere) {
  const TestFolder folder;
  EXPECT_EQ(problemOf(folder, folder.path("none.csv")),
            "none.csv: There is no such file. Check the name and the folder.");
  EXPECT_EQ(problemOf(folder, folder.path("no/none.csv")),
            "no/none.csv: There is no such file. Check the name and the folder.");
}

TEST(CsvProblem, NamesWhatIsNoPlainFile) {
  const TestFolder folder;
  ASSERT_EQ(::mkdir(folder.path("folder.csv").c_str(), 0700), 0);
  EXPECT_EQ(problemOf(folder, folder.path("folder.csv")), "folder.csv: This is a folder. Name a data file in it.");
  ASSERT_EQ(::mkfifo(folder.path("pipe.csv").c_str(), 0600), 0);
  EXPECT_EQ(problemOf(folder, folder.path("pipe.csv")),
            "pipe.csv: This is no plain file, and data are read more than once. Copy the data to a file first.");
}

TEST(CsvProblem, NamesAFileThatMayNotBeRead) {
  if (::geteuid() == 0) GTEST_SKIP() << "everything may be read by this user";
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a\n1\n");
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  EXPECT_EQ(problemOf(folder, path), "a.csv: The file may not be read. Ask its owner for the permission to read it.");
}

TEST(CsvProblem, NamesTheEndingsThatAreKnown) {
  EXPECT_EQ(problemOfText("x", "a.xyz"),
            "a.xyz: The ending of the name is none of a data file. Use one of these: .csv, .tsv, .csv.gz, .tsv.gz, "
            ".csv.zst, .tsv.zst, .jsonl, .ndjson, .jsonl.gz, .ndjson.gz, .jsonl.zst, .ndjson.zst, .parquet, .duckdb, "
            ".sqlite, .sqlite3, .db.");
}

TEST(CsvProblem, RefusesAPasswordForAPlainFile) {
  const TestFolder folder;
  const auto file = openDataFile(folder.write("a.csv", "a\n1\n"), {"secret", std::nullopt});
  ASSERT_FALSE(file);
  EXPECT_EQ(file.problem().what, "The file is not protected by a password.");
}

TEST(CsvProblem, RefusesAnEmptyFile) {
  const auto expected = "a.csv: The file is empty, and its first line has to name the columns. Name another file.";
  EXPECT_EQ(problemOfText(""), expected);
  EXPECT_EQ(problemOfText("\xEF\xBB\xBF"), expected);
}

TEST(CsvProblem, RefusesABlankFirstLine) {
  const auto expected =
      "a.csv, line 1: The first line is blank, and it has to name the columns. Remove the blank line.";
  EXPECT_EQ(problemOfText("\na,b\n1,2\n"), expected);
  EXPECT_EQ(problemOfText("\n1\n"), expected);
}

TEST(CsvProblem, CountsTheFieldsOfARaggedLine) {
  EXPECT_EQ(problemOfText("a,b,c\n1,2,3\n4,5\n6,7,8\n"),
            "a.csv, line 3: The number of fields in this line is 2; 3 are expected, as the first line has them."s +
                raggedRemedy);
  EXPECT_EQ(problemOfText("a,b\n1,2\n3,4,5,6\n"),
            "a.csv, line 3: The number of fields in this line is 4; 2 are expected, as the first line has them."s +
                raggedRemedy);
  EXPECT_EQ(problemOfText("a,b\n1,2\n3"),
            "a.csv, line 3: The number of fields in this line is 1; 2 are expected, as the first line has them."s +
                raggedRemedy);
}

TEST(CsvProblem, CountsEmptyFieldsBeyondTheLastColumn) {
  const auto expected = [](int line, int fields) {
    return fmt::format(
        "a.csv, line {}: The number of fields in this line is {}; 2 are expected, as the first line has them.{}", line,
        fields, raggedRemedy);
  };
  EXPECT_EQ(problemOfText("a,b\n1,2,\n"), expected(2, 3));
  EXPECT_EQ(problemOfText("a,b\n1,2,\"\"\n"), expected(2, 3));
  EXPECT_EQ(problemOfText("a,b\n1,2\n3,4,,\n"), expected(3, 4));
}

TEST(CsvProblem, NamesTheLineInTheFileWhenFieldsHaveLineBreaks) {
  EXPECT_EQ(problemOfText("a,b\n1,\"x\ny\r\nz\rw\"\n3\n"),
            "a.csv, line 6: The number of fields in this line is 1; 2 are expected, as the first line has them."s +
                raggedRemedy);
}

TEST(CsvProblem, NamesWhereAQuoteOpenedThatIsNeverClosed) {
  const auto remedy = " Close it, or double it where it is a character of the text."s;
  EXPECT_EQ(problemOfText("a,b\n1,2\n3,\"4\n5,6\n"),
            "a.csv, line 3: The quote that opens here is never closed." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,\""), "a.csv, line 2: The quote that opens here is never closed." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,\"x\"\""), "a.csv, line 2: The quote that opens here is never closed." + remedy);
}

TEST(CsvProblem, RefusesWhatStandsBehindAClosingQuote) {
  const auto remedy = " Double the quotes inside a quoted field, and leave no blanks behind it."s;
  EXPECT_EQ(problemOfText("a,b\n1,\"2\"x\n"),
            "a.csv, line 2: A quote is closed, and the field (which began in line 2) goes on." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,\"2\" \n"),
            "a.csv, line 2: A quote is closed, and the field (which began in line 2) goes on." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,\"2\n3,\"4\"\n"),
            "a.csv, line 3: A quote is closed, and the field (which began in line 2) goes on." + remedy);
}

TEST(CsvProblem, RefusesBlanksBeforeAnOpeningQuote) {
  const auto expected =
      "a.csv, line 2: A blank stands before an opening quote. Remove it, or put it inside the quotes.";
  EXPECT_EQ(problemOfText("a,b\n1, \"2,3\"\n"), expected);
  EXPECT_EQ(problemOfText("a,b\n  \"1\",2\n"), expected);
}

TEST(CsvProblem, RefusesBytesThatAreNoUtf8) {
  EXPECT_EQ(problemOfText("a,b\n1,2\n3,K\xF6ln\n"),
            "a.csv, line 3: The byte 0xF6 is no UTF-8. Save the file as UTF-8.");
  EXPECT_EQ(problemOfText("a,\xFF\n1,2\n"), "a.csv, line 1: The byte 0xFF is no UTF-8. Save the file as UTF-8.");
  EXPECT_EQ(problemOfText("a,b\n1,\"x\ny\xED\xA0\x80\"\n"),
            "a.csv, line 3: The byte 0xED is no UTF-8. Save the file as UTF-8.");
  EXPECT_EQ(problemOfText("a,b\n1,\xC0\x80\n"), "a.csv, line 2: The byte 0xC0 is no UTF-8. Save the file as UTF-8.");
  EXPECT_EQ(problemOfText("a,b\n1,\xE2\x82"), "a.csv, line 2: The byte 0xE2 is no UTF-8. Save the file as UTF-8.");
  EXPECT_EQ(problemOfText("\xFF\xFE\x61\x00"s), "a.csv, line 1: This is UTF-16. Save the file as UTF-8.");
}

TEST(CsvProblem, RefusesNulBytes) {
  const auto remedy = " Is this a text file, saved as UTF-8? Then remove the NUL bytes from it."s;
  EXPECT_EQ(problemOfText("a,b\n1,x\0y\n"s), "a.csv, line 2: A NUL byte stands in the text." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,\"x\n\0\"\n"s), "a.csv, line 3: A NUL byte stands in the text." + remedy);
  EXPECT_EQ(problemOfText("a,\0\n1,2\n"s), "a.csv, line 1: A NUL byte stands in the text." + remedy);
}

TEST(CsvProblem, RefusesLinesThatDoNotEndAlike) {
  const auto remedy = " Let all lines end alike, and put line breaks inside a field in quotes."s;
  EXPECT_EQ(problemOfText("a,b\r\n1,2\r\n3,4\n"),
            "a.csv, line 3: The line ends with LF, the lines before it with CR LF." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,2\r\n"),
            "a.csv, line 2: The line ends with CR LF, the lines before it with LF." + remedy);
  EXPECT_EQ(problemOfText("a,b\n1,x\ry\n"),
            "a.csv, line 2: The line ends with CR, the lines before it with LF." + remedy);
}

TEST(CsvProblem, FindsWhatIsWrongFarIntoAFile) {
  std::string text = "a,b\n";
  for (int row = 0; row < 200'000; ++row) text += "12345,\"x\ny\"\n";
  EXPECT_EQ(problemOfText(text + "1,2,3\n").substr(0, 22), "a.csv, line 400002: Th");
  EXPECT_EQ(problemOfText(text + "1,\"2\n").substr(0, 22), "a.csv, line 400002: Th");
}

TEST(CsvProblem, RefusesDamagedPackedFiles) {
  EXPECT_EQ(problemOfText("a,b\n1,2\n", "a.csv.gz"),
            "a.csv.gz: The file is no sound gzip file (incorrect header check). Pack it anew, or give it the name of "
            "what it is.");
  EXPECT_EQ(
      problemOfText("\x1F\x8B\x08", "a.csv.gz"),
      "a.csv.gz: The file is no sound gzip file (it ends too early). Pack it anew, or give it the name of what it is.");
  EXPECT_EQ(problemOfText("a,b\n1,2\n", "a.csv.zst").substr(0, 39), "a.csv.zst: The file is no sound zstd fi");
  EXPECT_EQ(problemOfText("\x28\xB5\x2F\xFD", "a.csv.zst"),
            "a.csv.zst: The file is no sound zstd file (it ends too early). Pack it anew, or give it the name of what "
            "it is.");
}

TEST(CsvProblem, OfTheOtherFileIsNamedWithItsName) {
  const TestFolder folder;
  const auto file = openDataFile(folder.write("a.csv", "a\n1\n"), {"", folder.write("b.csv", "a,b\n1\n")});
  ASSERT_FALSE(file);
  EXPECT_EQ(file.problem().where, folder.path("b.csv") + ", line 2");
}

}  // namespace
}  // namespace workbench::data
