// What a sound CSV file is read as.

#include <gtest/gtest.h>
#include <zlib.h>
#include <zstd.h>

#include <chrono>
#include <thread>

#include "host/messages.h"
#include "tests/data/files/file_fixture.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

TEST(CsvReading, ReadsNumbersAndTexts) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "id,name\n1,Ann\n2,Bob\n"));
  EXPECT_EQ(types(file), "id F1.0, name A3");
  EXPECT_EQ(shown(file), "1 'Ann' / 2 'Bob'");
  EXPECT_EQ(file->caseCount(), 2);
  EXPECT_TRUE(file->warnings().empty());
}

TEST(CsvReading, TakesNamesWithTheSignThatPartsTables) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a#b.csv", "x\n1\n"))), "1");
}

TEST(CsvReading, TakesEveryKindOfLineEnd) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("lf.csv", "a,b\n1,x\n2,y\n"))), "1 'x' / 2 'y'");
  EXPECT_EQ(shown(opened(folder.write("crlf.csv", "a,b\r\n1,x\r\n2,y\r\n"))), "1 'x' / 2 'y'");
  EXPECT_EQ(shown(opened(folder.write("cr.csv", "a,b\r1,x\r2,y\r"))), "1 'x' / 2 'y'");
  EXPECT_EQ(shown(opened(folder.write("none.csv", "a,b\n1,x\n2,y"))), "1 'x' / 2 'y'");
}

TEST(CsvReading, TakesAByteOrderMark) {
  const TestFolder folder;
  EXPECT_EQ(types(opened(folder.write("a.csv", "\xEF\xBB\xBFid,b\n1,2\n"))), "id F1.0, b F1.0");
  EXPECT_EQ(types(opened(folder.write("b.csv", "\xEF\xBB\xBF\"id\",b\n1,2\n"))), "id F1.0, b F1.0");
}

TEST(CsvReading, KeepsWhatStandsInQuotes) {
  const TestFolder folder;
  const auto file =
      opened(folder.write("a.csv", "a,\"b,\nc\"\n\"x\ny\",\"p\r\nq\"\n\"say \"\"so\"\"\",\" r \"\n\"\"\"\",\"s,t\"\n"));
  EXPECT_EQ(file->dictionary().at(1).name, "b,\nc");
  EXPECT_EQ(shown(file), "'x\ny' 'p\r\nq' / 'say \"so\"' ' r' / '\"' 's,t'");
}

TEST(CsvReading, KeepsQuotesInsideUnquotedFields) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a.csv", "a,b\n5\" nail,x\"\"y\nz\",\\\"\n"))),
            "'5\" nail' 'x\"\"y' / 'z\"' '\\\"'");
}

TEST(CsvReading, ReadsEmptyFieldsAlikeWithQuotesAndWithout) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a.csv", "a,b\n,\"\"\n1,x\n\"\",\n"))), ". '' / 1 'x' / . ''");
}

TEST(CsvReading, KeepsWordsThatMeanNothingElsewhere) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "a,b,c\nNULL,NA,nan\nnull,\"NULL\",inf\n#,\\N,true\n"));
  EXPECT_EQ(shown(file), "'NULL' 'NA' 'nan' / 'null' 'NULL' 'inf' / '#' '\\N' 'true'");
}

TEST(CsvReading, KeepsBlanksAroundTexts) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "a,b\n 1,x \n2 ,  \n"));
  EXPECT_EQ(types(file), "a A2, b A2");
  EXPECT_EQ(shown(file), "' 1' 'x' / '2' ''");
}

TEST(CsvReading, TakesAHeaderAloneForNoCases) {
  const TestFolder folder;
  for (const auto* text : {"a,b\n", "a,b", "a,b\r\n", "a,b\n\n"}) {
    const auto file = opened(folder.write("a.csv", text));
    EXPECT_EQ(types(file), "a F8.0, b F8.0") << text;
    EXPECT_EQ(shown(file), "");
    EXPECT_EQ(file->caseCount(), 0);
  }
}

TEST(CsvReading, SkipsBlankLinesOfSeveralColumnsAndSaysSo) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "a,b\n1,2\n\n\n3,4\n\n5,6\n\n"));
  EXPECT_EQ(shown(file), "1 2 / 3 4 / 5 6");
  EXPECT_EQ(file->warnings(),
            std::vector{"3 blank lines stand between others, the first in line 3; they were skipped."s});
  EXPECT_TRUE(opened(folder.write("b.csv", "a,b\n1,2\n\n\n"))->warnings().empty()) << "at the end they are nothing";
}

TEST(CsvReading, TakesBlankLinesOfOneColumnForEmptyValues) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a.csv", "a\n1\n\n3\n\"\"\n5\n"))), "1 / . / 3 / . / 5");
  EXPECT_EQ(shown(opened(folder.write("b.csv", "a\r\n1\r\n\r\n"))), "1 / .");
}

TEST(CsvReading, ReadsTabSeparatedFiles) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a.tsv", "a\tb\n1\tx,y\n2\t\"p\tq\"\n"))), "1 'x,y' / 2 'p\tq'");
}

std::string gzipped(const std::string& text) {
  std::string packed(text.size() + 1000, '\0');
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

std::string zstdPacked(const std::string& text) {
  std::string packed(ZSTD_compressBound(text.size()), '\0');
  packed.resize(ZSTD_compress(packed.data(), packed.size(), text.data(), text.size(), 3));
  return packed;
}

TEST(CsvReading, ReadsPackedFiles) {
  const TestFolder folder;
  std::string text = "id,name\n";
  std::string expected;
  for (int id = 0; id < 50'000; ++id) {
    text += fmt::format("{},name {}\n", id, id * 7 % 1000);
    expected += fmt::format("{}{} 'name {}'", id == 0 ? "" : " / ", id, id * 7 % 1000);
  }
  EXPECT_EQ(shown(opened(folder.write("a.csv.gz", gzipped(text)))), expected);
  EXPECT_EQ(shown(opened(folder.write("a.CSV.ZST", zstdPacked(text)))), expected);
}

TEST(CsvReading, ReadsAGzipFileOfSeveralMembers) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a.csv.gz", gzipped("a,b\n1,2\n") + gzipped("3,4\n")))), "1 2 / 3 4");
}

TEST(CsvReading, ReadsAFieldOfAMebibyte) {
  const TestFolder folder;
  const std::string longText(std::size_t{1} << 20, 'x');
  const auto file = opened(folder.write("a.csv", "a,b\n1," + longText + "\n2,\"" + longText + "\ny\"\n3,z\n"));
  ASSERT_EQ(file->dictionary().at(1).width, (1 << 20) + 2);
  const auto cases = casesOf(*file);
  ASSERT_EQ(cases.size(), 3U);
  EXPECT_EQ(cases[0][1], "'" + longText + "'");
  EXPECT_EQ(cases[1][1], "'" + longText + "\ny'");
  EXPECT_EQ(cases[2][1], "'z'");
}

TEST(CsvReading, ReadsALineOfTwelveMebibytes) {
  const TestFolder folder;
  const std::string longText(std::size_t{3} << 20, 'x');
  const std::string line = longText + "," + longText + "," + longText + "," + longText + "\n";
  const auto file = opened(folder.write("a.csv", "a,b,c,d\n1,2,3,4\n" + line + line + "5,6,7,8\n"));
  const auto cases = casesOf(*file);
  ASSERT_EQ(cases.size(), 4U);
  EXPECT_EQ(cases[2][3], "'" + longText + "'");
  EXPECT_EQ(cases[3][0], "'5'");
}

TEST(CsvReading, ReadsTwoThousandColumns) {
  const TestFolder folder;
  std::string text;
  for (int column = 0; column < 2000; ++column) text += fmt::format("{}v{}", column == 0 ? "" : ",", column);
  for (int row = 0; row < 300; ++row) {
    text += '\n';
    for (int column = 0; column < 2000; ++column)
      text += fmt::format("{}{}", column == 0 ? "" : ",", (row + column) % 10);
  }
  const auto file = opened(folder.write("a.csv", text));
  const auto cases = casesOf(*file);
  ASSERT_EQ(cases.size(), 300U);
  for (std::size_t row = 0; row < cases.size(); row += 51) {
    for (std::size_t column = 0; column < 2000; column += 333) {
      EXPECT_EQ(cases[row][column], std::to_string((row + column) % 10));
    }
  }
}

TEST(CsvReading, KeepsTheOrderOfManyLinesWithQuotedLineBreaks) {
  const TestFolder folder;
  for (const std::string_view lineEnd : {"\n", "\r\n", "\r"}) {
    const auto note = [&](std::size_t id) {
      return fmt::format("line {}{}{},0\n\"end\"{}", id, lineEnd, id % 13 == 0 ? "\n\n\"," : "5,6",
                         std::string(id * 7919 % 61, 'x'));
    };
    constexpr std::size_t cases = 160'000;
    std::string text = fmt::format("id,note{}", lineEnd);
    for (std::size_t id = 0; id < cases; ++id) {
      text += fmt::format("{},\"", id);
      for (const char character : note(id)) text += character == '"' ? "\"\"" : std::string(1, character);
      text += fmt::format("\"{}", lineEnd);
    }
    ASSERT_GT(text.size(), std::size_t{8'500'000});  // more than one of DuckDB's buffers, and many of ours
    const auto file = opened(folder.write("a.csv", text));
    const auto read = casesOf(*file);
    ASSERT_EQ(read.size(), cases);
    for (std::size_t id = 0; id < read.size(); ++id) {
      ASSERT_EQ(read[id][0], std::to_string(id));
      ASSERT_EQ(read[id][1], fmt::format("'{}'", note(id)));
    }
  }
}

TEST(CsvReading, LeavesSlotsBehindACaseAsTheyAre) {
  const TestFolder folder;
  const auto file = opened(folder.write("a.csv", "a\n1\n2\n"));
  CaseBlock block(2);
  for (std::size_t index = 0; index < block.capacity(); ++index) block.at(index)[1].number = 42;
  file->openReader()->fill(block);
  ASSERT_EQ(block.cases(), 2U);
  EXPECT_EQ(block.at(1)[0].number, 2);
  EXPECT_EQ(block.at(0)[1].number, 42);
  EXPECT_EQ(block.at(1)[1].number, 42);
}

TEST(CsvReading, FillsBlocksOfAnySizeWithoutAGap) {
  const TestFolder folder;
  std::string text = "id\n";
  for (int id = 0; id < 5000; ++id) text += fmt::format("{}\n", id);
  const auto file = opened(folder.write("a.csv", text));
  for (const std::size_t size : {std::size_t{1}, std::size_t{7}, std::size_t{2048}, std::size_t{4999}}) {
    const auto reader = file->openReader();
    CaseBlock block(1, size);
    double next = 0;
    for (reader->fill(block); block.cases() != 0; reader->fill(block)) {
      for (std::size_t index = 0; index < block.cases(); ++index) ASSERT_EQ(block.at(index)->number, next++);
    }
    EXPECT_EQ(next, 5000);
    reader->fill(block);
    EXPECT_EQ(block.cases(), 0U) << "after the end comes the end";
  }
}

TEST(CsvReading, LetsSeveralReadersGoAtOnce) {
  const TestFolder folder;
  std::string text = "id,name\n";
  for (int id = 0; id < 60'000; ++id) text += fmt::format("{},n{}\n", id, id);
  const auto file = opened(folder.write("a.csv", text));
  const auto expected = casesOf(*file);
  std::vector<std::vector<std::vector<std::string>>> read(3);
  std::vector<std::thread> threads;
  for (auto& cases : read) threads.emplace_back([&cases, &file] { cases = casesOf(*file); });
  for (std::thread& thread : threads) thread.join();
  for (const auto& cases : read) EXPECT_TRUE(cases == expected);
}

TEST(CsvReading, LetsAReaderOutliveItsFileAndStopAnywhere) {
  const TestFolder folder;
  std::string text = "id\n";
  for (int id = 0; id < 300'000; ++id) text += fmt::format("{}\n", id);
  auto file = opened(folder.write("a.csv", text));
  auto reader = file->openReader();
  file.reset();
  CaseBlock block(1, 10);
  reader->fill(block);
  EXPECT_EQ(block.at(9)->number, 9);
}

TEST(CsvReading, ReadsNamesThatLookLikePatterns) {
  const TestFolder folder;
  folder.write("ab.csv", "x\n1\n");
  EXPECT_EQ(shown(opened(folder.write("a*.csv", "x\n2\n"))), "2");
  EXPECT_EQ(shown(opened(folder.write("a[b].csv", "x\n3\n"))), "3");
  EXPECT_EQ(shown(opened(folder.write("it's ?.csv", "x\n4\n"))), "4");
}

TEST(CsvReading, RefusesAFileThatChangedSinceItWasOpened) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a\n1\n");
  const auto file = opened(path);
  folder.write("a.csv", "a\n1\n2\n");
  try {
    file->openReader();
    FAIL() << "it was read";
  } catch (const ErrorText& error) {
    EXPECT_EQ(error.GetText(), path + ": The file has changed since it was opened; open it again.");
  }
}

TEST(CsvReading, RefusesAFileThatChangesWhileItIsRead) {
  const TestFolder folder;
  std::string text = "a\n";
  for (int row = 0; row < 100'000; ++row) text += "1\n";
  const std::string path = folder.write("a.csv", text);
  const auto reader = opened(path)->openReader();
  CaseBlock block(1, 100);
  reader->fill(block);
  folder.write("a.csv", "a\n1\n");
  EXPECT_THROW(
      {
        do reader->fill(block);
        while (block.cases() != 0);
      },
      ErrorText);
}

TEST(CsvReading, SeesTheNewContentOfAFileThatWasWrittenAgain) {
  const TestFolder folder;
  EXPECT_EQ(shown(opened(folder.write("a.csv", "a\n1\n"))), "1");
  EXPECT_EQ(shown(opened(folder.write("a.csv", "a\n2\n"))), "2");
  EXPECT_EQ(shown(opened(folder.write("a.csv", "a\nx\n"))), "'x'");
}

}  // namespace
}  // namespace workbench::data
