// What is written, byte by byte, and what stands on disk when.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"
#include "tests/data/files/system_limits.h"
#include "workbench/data/files/csv_case_writer.h"

namespace workbench::data {
namespace {

Variable number(std::string name, FormatType type = FormatType::number) {
  Variable variable;
  variable.name = std::move(name);
  variable.format.type = type;
  return variable;
}

Variable text(std::string name, std::int32_t width) {
  Variable variable;
  variable.name = std::move(name);
  variable.width = width;
  variable.format = {FormatType::text, width, 0};
  return variable;
}

Dictionary dictionaryOf(std::vector<Variable> variables) {
  Dictionary dictionary;
  for (Variable& variable : variables) dictionary.add(std::move(variable));
  return dictionary;
}

OBS slot(double value) {
  OBS obs;
  obs.number = value;
  return obs;
}

OBS slot(const char* eightBytes) {
  OBS obs;
  std::memcpy(obs.text, eightBytes, sizeof(obs.text));
  return obs;
}

// Only the data file, not its dictionary. Requires: the path can be written.
std::unique_ptr<CaseWriter> created(const std::string& path, const Dictionary& dictionary) {
  auto writer = createCsvFile(path, *fileKind(path), dictionary);
  EXPECT_TRUE(writer) << writer.problem().text();
  return std::move(*writer);
}

std::string written(const Dictionary& dictionary, const std::vector<OBS>& slots, const std::string& name = "a.csv") {
  const TestFolder folder;
  const auto writer = created(folder.path(name), dictionary);
  const std::size_t ofACase = CaseLayout(dictionary).caseSlots;
  writer->append(slots.data(), slots.size() / ofACase, ofACase);
  writer->complete();
  writer->commit();
  return folder.read(name);
}

TEST(CsvWriting, WritesNumbersInTheirShortestForm) {
  EXPECT_EQ(written(dictionaryOf({number("a"), number("b")}),
                    {slot(1), slot(0.1), slot(systemMissing), slot(-0.0), slot(1e22), slot(100000)}),
            "a,b\n1,0.1\n,-0\n1e+22,100000\n");
}

TEST(CsvWriting, WritesDatesAndTimesAsIso) {
  EXPECT_EQ(written(dictionaryOf({number("d", FormatType::date), number("t", FormatType::time),
                                  number("dt", FormatType::dateTime)}),
                    {slot(20778), slot(57595.25), slot(1795276795), slot(-1), slot(0.0), slot(-0.5)}),
            "d,t,dt\n2026-11-21,15:59:55.25,2026-11-21T15:59:55\n1969-12-31,00:00:00,1969-12-31T23:59:59.5\n");
}

TEST(CsvWriting, QuotesTextsOnlyWhereNeeded) {
  const Dictionary dictionary = dictionaryOf({text("a,\"b\"", 8), text("t", 8)});
  EXPECT_EQ(written(dictionary, {slot("x,y     "), slot("say \"hi\""), slot("p\nq     "), slot(" blank  "),
                                 slot("        "), slot("plain   ")}),
            "\"a,\"\"b\"\"\",t\n\"x,y\",\"say \"\"hi\"\"\"\n\"p\nq\", blank\n,plain\n");
}

TEST(CsvWriting, QuotesALoneCarriageReturnAndWhatOthersTakeForAComment) {
  EXPECT_EQ(written(dictionaryOf({text("#t", 8)}), {slot("p\rq     "), slot("#1      "), slot("1       ")}),
            "\"#t\"\n\"p\rq\"\n\"#1\"\n1\n");
}

TEST(CsvWriting, QuotesOnlyTabsInTabSeparatedFiles) {
  EXPECT_EQ(written(dictionaryOf({text("a", 8), text("b", 8)}), {slot("x,y     "), slot("p\tq     ")}, "a.tsv"),
            "a\tb\nx,y\t\"p\tq\"\n");
}

TEST(CsvWriting, WritesAnEmptyCaseOfOneColumnVisibly) {
  EXPECT_EQ(written(dictionaryOf({number("a")}), {slot(1), slot(systemMissing)}), "a\n1\n\"\"\n");
}

TEST(CsvWriting, WritesADatasetWithoutCasesAsItsHeader) {
  EXPECT_EQ(written(dictionaryOf({number("a"), text("b", 8)}), {}), "a,b\n");
}

TEST(CsvWriting, QuotesAFirstNameThatBeginsWithAByteOrderMarkAndItsWholeColumn) {
  const Dictionary dictionary = dictionaryOf({number("\xEF\xBB\xBF\"a\""), number("\xEF\xBB\xBF"
                                                                                  "b")});
  EXPECT_EQ(written(dictionary, {slot(1), slot(2), slot(systemMissing), slot(3)}),
            "\"\xEF\xBB\xBF\"\"a\"\"\",\xEF\xBB\xBF"
            "b\n\"1\",2\n,3\n");
}

TEST(CsvWriting, TakesCasesFurtherApart) {
  const TestFolder folder;
  const Dictionary dictionary = dictionaryOf({number("a")});
  const auto writer = created(folder.path("a.csv"), dictionary);
  const std::vector<OBS> slots{slot(1), slot(-1), slot(-1), slot(2), slot(-1), slot(-1)};
  writer->append(slots.data(), 2, 3);
  writer->complete();
  writer->commit();
  EXPECT_EQ(folder.read("a.csv"), "a\n1\n2\n");
}

TEST(CsvWriting, PutsTheFileIntoPlaceOnlyAtTheEnd) {
  const TestFolder folder;
  folder.write("a.csv", "old\n");
  const Dictionary dictionary = dictionaryOf({number("a")});
  const auto writer = created(folder.path("a.csv"), dictionary);
  const OBS value = slot(1);
  writer->append(&value, 1, 1);
  writer->complete();
  EXPECT_EQ(folder.read("a.csv"), "old\n");
  writer->commit();
  EXPECT_EQ(folder.read("a.csv"), "a\n1\n");
  EXPECT_EQ(folder.names(), std::vector<std::string>{"a.csv"});
}

TEST(CsvWriting, LeavesNothingBehindWhenItIsAbandoned) {
  const TestFolder folder;
  const Dictionary dictionary = dictionaryOf({number("a")});
  const OBS value = slot(1);
  for (const bool isComplete : {false, true}) {
    auto writer = created(folder.path("a.csv"), dictionary);
    writer->append(&value, 1, 1);
    if (isComplete) writer->complete();
    EXPECT_EQ(folder.names().size(), 1U);
    writer.reset();
    EXPECT_TRUE(folder.names().empty());
  }
}

TEST(CsvWriting, KeepsThePermissionsOfTheFileThatItReplaces) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "old\n");
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  const auto writer = created(path, dictionaryOf({number("a")}));
  writer->complete();
  writer->commit();
  struct stat status{};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(CsvWriting, ReplacesAFileThatItsOwnerMayNotWriteTo) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "old\n");
  ASSERT_EQ(::chmod(path.c_str(), 0440), 0);
  const auto writer = created(path, dictionaryOf({number("a")}));
  writer->complete();
  writer->commit();
  struct stat status{};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0440U);
  EXPECT_EQ(folder.read("a.csv"), "a\n");
}

TEST(CsvWriting, ReplacesWhatALinkPointsTo) {
  const TestFolder folder;
  folder.write("real.csv", "old\n");
  std::filesystem::create_symlink("real.csv", folder.path("link.csv"));
  const auto writer = created(folder.path("link.csv"), dictionaryOf({number("a")}));
  writer->complete();
  writer->commit();
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.csv")));
  EXPECT_EQ(folder.read("real.csv"), "a\n");
}

TEST(CsvWriting, WritesPackedFilesThatReadAsTheSameCases) {
  const TestFolder folder;
  const Dictionary dictionary = dictionaryOf({number("a"), text("b", 8)});
  std::vector<OBS> slots;
  for (int row = 0; row < 100'000; ++row) {
    slots.push_back(slot(row * 0.25));
    slots.push_back(slot(fmt::format("t{:<7}", row * 31 % 100'000).c_str()));
  }
  std::vector<std::string> read;
  for (const char* name : {"a.csv", "a.csv.gz", "a.csv.zst"}) {
    const auto writer = created(folder.path(name), dictionary);
    writer->append(slots.data(), slots.size() / 2, 2);
    writer->complete();
    writer->commit();
    read.push_back(shown(opened(folder.path(name))));
  }
  EXPECT_EQ(read[0].substr(0, 24), "0 't0' / 0.25 't31' / 0.");
  EXPECT_EQ(read[1], read[0]);
  EXPECT_EQ(read[2], read[0]);
  EXPECT_LT(folder.read("a.csv.gz").size(), folder.read("a.csv").size() / 2);
  EXPECT_LT(folder.read("a.csv.zst").size(), folder.read("a.csv").size() / 2);
}

TEST(CsvWriting, RefusesValuesThatNoTextHolds) {
  const auto refusal = [](const Variable& variable, const OBS& value) -> std::string {
    try {
      written(dictionaryOf({variable}), {value});
    } catch (const ErrorText& error) {
      const std::string message = error.GetText();
      return message.substr(message.find("a.csv"));
    }
    return "written";
  };
  EXPECT_EQ(refusal(number("x"), slot(std::numeric_limits<double>::infinity())),
            "a.csv: In case 1 the value of \"x\" is no finite number, so it cannot be written; correct the value.");
  EXPECT_EQ(
      refusal(number("x", FormatType::date), slot(0.5)),
      "a.csv: In case 1 the value of \"x\" is 0.5, which its print format cannot show as a date or time, so it cannot "
      "be written; correct the value.");
  EXPECT_EQ(refusal(text("x", 8), slot("a\xFF      ")),
            "a.csv: In case 1 the value of \"x\" is no UTF-8, so it cannot be written; correct the value.");
  EXPECT_EQ(refusal(text("x", 8), slot("a\0b     ")),
            "a.csv: In case 1 the value of \"x\" holds a NUL byte, so it cannot be written; correct the value.");
}

// What stops the writing of that many different numbers when no file grows beyond the limit.
std::string problemOfWriting(const std::string& path, int numbers, rlim_t limitBytes) {
  const FileSizeLimit limit(limitBytes);
  std::vector<OBS> slots;
  for (int index = 0; index < numbers; ++index) slots.push_back(slot(std::sqrt(index)));
  const auto writer = created(path, dictionaryOf({number("a")}));
  try {
    writer->append(slots.data(), slots.size(), 1);
    writer->complete();
    writer->commit();
  } catch (const ErrorText& error) {
    return error.GetText();
  }
  return "";
}

TEST(CsvWriting, SaysWhyAFileCannotGrowAndLeavesNothingOfItBehind) {
  const TestFolder folder;
  constexpr int numbers = 20'000;
  for (const std::string name : {"a.csv", "a.csv.gz", "a.csv.zst"}) {
    const std::string path = folder.path(name);
    const std::string tooLarge = path + ": The file cannot be written (File too large).";
    ASSERT_EQ(problemOfWriting(path, numbers, RLIM_INFINITY), "");
    const auto bytes = static_cast<rlim_t>(std::filesystem::file_size(path));
    EXPECT_EQ(problemOfWriting(path, numbers, bytes), "");
    std::filesystem::remove(path);
    for (const rlim_t limit : {bytes - 1, bytes - 9, bytes / 2, rlim_t{1}}) {
      EXPECT_EQ(problemOfWriting(path, numbers, limit), tooLarge) << limit << " of " << bytes;
      EXPECT_TRUE(folder.names().empty());
    }
  }
}

TEST(CsvWriting, RefusesNamesThatNoTextHolds) {
  const TestFolder folder;
  for (const std::string& name : {std::string(), std::string("a\0b", 3), std::string("a\xFF")}) {
    const auto writer = createDataFile(folder.path("a.csv"), dictionaryOf({number("a"), number(name)}), "");
    ASSERT_FALSE(writer);
    EXPECT_EQ(writer.problem().text(), folder.path("a.csv") + ": The name of variable 2 cannot be written as text.");
  }
  EXPECT_TRUE(folder.names().empty());
}

std::string creationProblem(const TestFolder& folder, const std::string& name, const Dictionary& dictionary,
                            const Secret& password = {}) {
  const auto writer = createDataFile(folder.path(name), dictionary, password);
  if (writer) return "created";
  std::string message = writer.problem().text();
  return message.substr(message.find(name));
}

TEST(CsvWriting, SaysWhyAFileCannotBeCreated) {
  const TestFolder folder;
  const Dictionary dictionary = dictionaryOf({number("a")});
  std::filesystem::create_directory(folder.path("folder.csv"));
  EXPECT_EQ(creationProblem(folder, "none/a.csv", dictionary),
            "none/a.csv: The folder of the file does not exist. Make the folder, or name another one.");
  EXPECT_EQ(creationProblem(folder, "folder.csv", dictionary), "folder.csv: This is a folder. Name a file in it.");
  EXPECT_EQ(creationProblem(folder, "a.txt", dictionary),
            "a.txt: The ending of the name is none of a data file. Use one of these: .csv, .tsv, .csv.gz, .tsv.gz, "
            ".csv.zst, .tsv.zst, .jsonl, .ndjson, .jsonl.gz, .ndjson.gz, .jsonl.zst, .ndjson.zst, .parquet, .duckdb, "
            ".sqlite, .sqlite3, .db.");
  EXPECT_EQ(
      creationProblem(folder, "a.csv", dictionary, "secret"),
      "a.csv: The file is to be protected by a password, and its name does not say so. Let the name end in .pgp, as "
      "in people.csv.pgp, or leave the password out.");
  EXPECT_EQ(
      creationProblem(folder, "a.csv.pgp", dictionary),
      "a.csv.pgp: The name says that the file is protected, and no password was given for it. Give a password, or "
      "leave the last ending of the name out.");
  EXPECT_EQ(creationProblem(folder, "a.csv.asc", dictionary, "secret"),
            "a.csv.asc: Files that end in .asc are read, and not written. Let the name end in .pgp instead.");
  EXPECT_EQ(creationProblem(folder, "a.csv.pgp", dictionary, Secret(std::string(256, 'x'))),
            "a.csv.pgp: The password has more than 255 bytes. Give a shorter one.");
  EXPECT_EQ(creationProblem(folder, "a.csv", Dictionary()),
            "a.csv: A dataset without variables cannot be written as text. Save one that has a variable, or none.");
}

TEST(CsvWriting, SaysWhenTheFolderCannotBeWrittenTo) {
  if (::geteuid() == 0) GTEST_SKIP() << "The system refuses nothing to its administrator.";
  const TestFolder folder;
  std::filesystem::create_directory(folder.path("closed"));
  ASSERT_EQ(::chmod(folder.path("closed").c_str(), 0500), 0);
  EXPECT_EQ(creationProblem(folder, "closed/a.csv", dictionaryOf({number("a")})),
            "closed/a.csv: The folder of the file cannot be written to. Name a folder in which you may write.");
}

}  // namespace
}  // namespace workbench::data
