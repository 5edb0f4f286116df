// The cases of tables in any dialect, by whichever reader is for it.

#include "workbench/data/files/case_readers.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "host/messages.h"
#include "tests/data/files/table_fixture.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

TEST(CaseReaders, ReadTablesInUnusualDialects) {
  const TestFolder folder;
  const auto cases = [&](const TableDialect& how, const std::string& text) {
    return casesOf(tableOf({folder.write("a.csv", text)}, how));
  };
  EXPECT_EQ(cases(dialect().delimiter("||"), "a||b\n1||x\n2||y\n"), "'1' 'x' / '2' 'y'");
  EXPECT_EQ(cases(dialect().comments("#"), "# made today\na,b\n#x\n1,2\n"), "'1' '2'");
  EXPECT_EQ(cases(dialect().header({1, 2}), "f\na,b\n1,2\n"), "'1' '2'");
  EXPECT_EQ(cases(dialect().skipInitialSpace(), "a, b\n1, \"x, y\"\n"), "'1' 'x, y'");
  EXPECT_EQ(cases(dialect().escape('\\').null("\\N"), "a,b\n\\N,x\\,y\n"), "'' 'x,y'");
  EXPECT_EQ(cases(dialect().encoding("utf-16"),
                  "\xFF\xFE"
                  "a\0\n\0\xAC\x20\n\0"s),
            "'€'");
  EXPECT_EQ(cases(dialect().encoding("windows-1252"), "a,b\nK\xF6ln,1\n"), "'Köln' '1'");
}

TEST(CaseReaders, ReadTablesInPlainDialects) {
  const TestFolder folder;
  const auto cases = [&](const TableDialect& how, const std::string& text) {
    const SharedTable table = tableOf({folder.write("a.csv", text)}, how);
    EXPECT_EQ(casesOfScanner(table), casesOfDuckDb(table)) << text;
    return casesOf(table);
  };
  EXPECT_EQ(cases(dialect().delimiter(";"), "a;b\n1,5;\"x;y\"\n"), "'1,5' 'x;y'");
  EXPECT_EQ(cases(dialect().quote('\''), "a,b\n'it''s',\"x\"\n"), "'it's' '\"x\"'");
  EXPECT_EQ(cases(dialect().noQuotes(), "a,b\n\"x,'y\n"), "'\"x' ''y'");
  EXPECT_EQ(cases(dialect().noHeader(), "1,2\n3,4\n"), "'1' '2' / '3' '4'");
  EXPECT_EQ(cases(dialect().null("\\N"), "a,b\n\\N,\"\\N\"\nx\\N,N\n"), "'' '' / 'x\\N' 'N'");
  EXPECT_EQ(cases(dialect().noHeader().null("-"), "-\n\n-x\n"), "'' / '' / '-x'");
}

TEST(CaseReaders, AreDuckDbWhereItCanBeToldTheDialect) {
  EXPECT_TRUE(isForDuckDb(dialect()));
  EXPECT_TRUE(isForDuckDb(dialect().delimiter(";").quote('\'').noHeader().null("\\N").encoding("UTF-8")));
  EXPECT_TRUE(isForDuckDb(dialect().noQuotes().noDoubledQuotes()));
  EXPECT_FALSE(isForDuckDb(dialect().delimiter("||")));
  EXPECT_FALSE(isForDuckDb(dialect().comments("#")));
  EXPECT_FALSE(isForDuckDb(dialect().commentRows({3})));
  EXPECT_FALSE(isForDuckDb(dialect().header({2})));
  EXPECT_FALSE(isForDuckDb(dialect().header({1, 2})));
  EXPECT_FALSE(isForDuckDb(dialect().escape('\\')));
  EXPECT_FALSE(isForDuckDb(dialect().noDoubledQuotes()));
  EXPECT_FALSE(isForDuckDb(dialect().skipInitialSpace()));
  EXPECT_FALSE(isForDuckDb(dialect().encoding("latin1")));
}

TEST(CaseReaders, ReadColumnsAsTheyAreDeclared) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "n,i,d,t,s,u\n\"1.234,5\",007,21.11.2026,ja,NA,NA\nNA,,,nein, x,9\n");
  const Declared declared = {
      {"n", as(data::declared(CellType::number).decimalChar(",").groupChar(".").noValue({"NA"}))},
      {"i", as(data::declared(CellType::integer))},
      {"d", as(data::declared(CellType::date).pattern("%d.%m.%Y"))},
      {"t", as(data::declared(CellType::boolean).trueTexts({"ja"}).falseTexts({"nein"}))},
      {"s", as(data::declared(CellType::text).noValue({"NA"}))},
  };
  const SharedTable table = tableOf({path}, dialect(), declared);
  EXPECT_EQ(casesOfDuckDb(table), "1234.5 7 20778 1 '' 'NA' / . . . 0 ' x' '9'");
  EXPECT_EQ(casesOfScanner(table), casesOfDuckDb(table));
}

TEST(CaseReaders, TakeANullForNoValueWhateverIsDeclared) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "n,s\n-,-\n1,x\n");
  const Declared declared = {{"n", as(data::declared(CellType::number).noValue({}))},
                             {"s", as(data::declared(CellType::text).noValue({}))}};
  const SharedTable table = tableOf({path}, dialect().null("-"), declared);
  EXPECT_EQ(casesOfDuckDb(table), ". '' / 1 'x'");
  EXPECT_EQ(casesOfScanner(table), ". '' / 1 'x'");
}

TEST(CaseReaders, LeaveOutColumnsThatFeedNoVariable) {
  const TestFolder folder;
  const SharedTable table = tableOf({folder.write("a.csv", "a,b,c\n1,long text,3\n4,,6\n")}, dialect(), {}, {"b"});
  EXPECT_EQ(casesOfDuckDb(table), "'1' '3' / '4' '6'");
  EXPECT_EQ(casesOfScanner(table), "'1' '3' / '4' '6'");
}

TEST(CaseReaders, LetColumnsFeedVariablesInAnyOrderAndLeaveOthersMissing) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n1,x\n2,y\n");
  const FileKind kind = *fileKind(path);
  Dictionary dictionary;
  for (const auto& [name, width] :
       {std::pair("none", 0), std::pair("b", 1), std::pair("empty", 9), std::pair("a", 0)}) {
    Variable variable;
    variable.name = name;
    variable.width = width;
    dictionary.add(variable);
  }
  const std::vector<CsvColumn> columns = {{3, std::nullopt}, {1, std::nullopt}};
  const auto table = std::make_shared<const CsvTable>(path, std::vector<CsvPart>{{path, *evidenceOf(path, kind)}}, kind,
                                                      columns, dictionary);
  EXPECT_EQ(casesOfDuckDb(table), ". 'x' '' 1 / . 'y' '' 2");
  EXPECT_EQ(casesOfScanner(table), ". 'x' '' 1 / . 'y' '' 2");
}

TEST(CaseReaders, LeaveTheSlotsOfVariablesThatAreNotWantedAsTheyAre) {
  const TestFolder folder;
  const SharedTable table = tableOf({folder.write("a.csv", "a,b,c\n1,long text,3\n4,,6\n")}, dialect(),
                                    {{"c", as(data::declared(CellType::number))}});
  ScannedCaseReader scanner(table, VariableSubset({2}));
  CsvCaseReader duckDb(table, VariableSubset({2}));
  for (CaseReader* const reader : {static_cast<CaseReader*>(&scanner), static_cast<CaseReader*>(&duckDb)}) {
    CaseBlock block(table->layout.caseSlots);
    std::fill_n(block.begin(), block.capacity() * block.caseSlots(), OBS{42});
    reader->fill(block);
    ASSERT_EQ(block.cases(), 2U);
    const std::size_t slot = table->layout.slotOfVariable[2];
    EXPECT_EQ(block.at(0)[slot].number, 3);
    EXPECT_EQ(block.at(1)[slot].number, 6);
    for (std::size_t other = 0; other < slot; ++other) EXPECT_EQ(block.at(1)[other].number, 42);
    reader->fill(block);
    EXPECT_EQ(block.cases(), 0U) << "the end is found to be where it was";
  }
}

TEST(CaseReaders, ReadPartsOneBelowTheOther) {
  const TestFolder folder;
  const std::vector<std::string> paths = {folder.write("a.csv", "a,b\n1,x\n2,y\n"), folder.write("b.csv", "a,b\n"),
                                          folder.write("c.csv", "a,b\r\n3,long\r\n")};
  const SharedTable table = tableOf(paths, dialect());
  EXPECT_EQ(table->cases(), 3);
  EXPECT_EQ(casesOfDuckDb(table), "'1' 'x' / '2' 'y' / '3' 'long'");
  EXPECT_EQ(casesOfScanner(table), "'1' 'x' / '2' 'y' / '3' 'long'");
  const std::vector<std::string> headless = {folder.write("d.csv", "1,2\n"), folder.write("e.csv", "3,4")};
  EXPECT_EQ(casesOf(tableOf(headless, dialect().noHeader())), "'1' '2' / '3' '4'");
  const std::vector<std::string> commented = {folder.write("f.csv", "# 1\na\nx\n"),
                                              folder.write("g.csv", "# 2\n# 3\na\ny\n")};
  EXPECT_EQ(casesOf(tableOf(commented, dialect().comments("#"))), "'x' / 'y'");
}

TEST(CaseReaders, FillBlocksOfAnySizeAcrossParts) {
  const TestFolder folder;
  std::vector<std::string> paths;
  for (int part = 0; part < 3; ++part) {
    std::string text = "# a part\nid\n";
    for (int row = 0; row < 1000; ++row) text += fmt::format("{}\n", part * 1000 + row);
    paths.push_back(folder.write(fmt::format("{}.csv", part), text));
  }
  const Declared declared = {{"id", as(data::declared(CellType::integer))}};
  const SharedTable table = tableOf(paths, dialect().comments("#"), declared);
  for (const std::size_t size : {1U, 7U, 1000U, 2999U}) {
    ScannedCaseReader reader(table);
    EXPECT_EQ(reader.caseCount(), 3000);
    CaseBlock block(1, size);
    double next = 0;
    for (reader.fill(block); block.cases() != 0; reader.fill(block)) {
      for (std::size_t index = 0; index < block.cases(); ++index) ASSERT_EQ(block.at(index)->number, next++);
    }
    EXPECT_EQ(next, 3000);
    reader.fill(block);
    EXPECT_EQ(block.cases(), 0U) << "after the end comes the end";
  }
}

// What reading the table is refused with, without the folder's name.
std::string refusalOf(const TestFolder& folder, const SharedTable& table, bool byDuckDb) {
  try {
    byDuckDb ? casesOfDuckDb(table) : casesOfScanner(table);
  } catch (const ErrorText& error) {
    const std::string text = error.what();
    return text.starts_with(folder.path("")) ? text.substr(folder.path("").size()) : text;
  }
  return "read";
}

TEST(CaseReaders, RefuseCellsThatDoNotReadWithTheirPlace) {
  const TestFolder folder;
  const std::string path = folder.write("a.csv", "a,b\n1,x\n2,long\nz,w\n");
  const FileKind kind = *fileKind(path);
  const SharedEvidence evidence = *evidenceOf(path, kind);
  const auto tableAs = [&](const std::optional<CellReading>& reading, std::int32_t width) {
    Dictionary dictionary;
    Variable a;
    a.name = "first";
    dictionary.add(a);
    Variable b;
    b.name = "second";
    b.width = width;
    dictionary.add(b);
    return std::make_shared<const CsvTable>(path, std::vector<CsvPart>{{path, evidence}}, kind,
                                            std::vector<CsvColumn>{{0, reading}, {1, std::nullopt}}, dictionary);
  };
  const std::string why =
      "Column \"first\" is declared as an integer, and \"z\" is no integer. Correct the cell or what is declared, or "
      "list "
      "its text among the missing values.";
  EXPECT_EQ(refusalOf(folder, tableAs(data::declared(CellType::integer), 4), true), "a.csv, case 3: " + why);
  EXPECT_EQ(refusalOf(folder, tableAs(data::declared(CellType::integer), 4), false), "a.csv, line 4: " + why);
  const std::string untyped =
      "In column \"first\" the value \"z\" is not of the type that its column has. Correct the value or the type.";
  EXPECT_EQ(refusalOf(folder, tableAs(std::nullopt, 4), true), "a.csv, case 3: " + untyped);
  EXPECT_EQ(refusalOf(folder, tableAs(std::nullopt, 4), false), "a.csv, line 4: " + untyped);
  const SharedEvidence shorter = *evidenceOf(folder.write("b.csv", "a,b\n1,x\n2,long\n"), kind);
  const auto narrow = [&](std::int32_t width) {
    Dictionary dictionary = tableAs(std::nullopt, width)->dictionary;
    return std::make_shared<const CsvTable>(folder.path("b.csv"), kind, shorter, std::move(dictionary));
  };
  const std::string wide =
      "In column \"second\" the value \"long\" is longer than its column is wide. Correct the value or the type.";
  EXPECT_EQ(refusalOf(folder, narrow(3), true), "b.csv, case 2: " + wide);
  EXPECT_EQ(refusalOf(folder, narrow(3), false), "b.csv, line 3: " + wide);
}

TEST(CaseReaders, RefuseAFileThatChangedSinceItWasScanned) {
  const TestFolder folder;
  const SharedTable table = tableOf({folder.write("a.csv", "# x\na\n1\n")}, dialect().comments("#"));
  folder.write("a.csv", "# x\na\n1\n2\n");
  EXPECT_EQ(refusalOf(folder, table, false), "a.csv: The file has changed since it was opened; open it again.");
  std::string text = "# x\na\n";
  for (int row = 0; row < 300'000; ++row) text += "1\n";
  const SharedTable longTable = tableOf({folder.write("b.csv", text)}, dialect().comments("#"));
  ScannedCaseReader reader(longTable);
  CaseBlock block(longTable->layout.caseSlots, 100);
  reader.fill(block);
  folder.write("b.csv", "# x\na\n1\n");
  EXPECT_THROW(
      {
        do reader.fill(block);
        while (block.cases() != 0);
      },
      ErrorText);
}

// Every text that the scan accepts is the same cases for both readers, whatever the plain dialect.
TEST(CaseReaders, AgreeOnEveryTextInPlainDialects) {
  static const std::vector<std::string> delimiters{",", ";", "\t", "|", " ", ":", "-", "a"};
  static const std::vector<std::string> lineEnds{"\n", "\r\n", "\r"};
  const TestFolder folder;
  int accepted = 0;
  std::int64_t rows = 0;
  for (int round = 0; round < 4; ++round) {
    EXPECT_TRUE(rc::check([&](const std::vector<std::uint8_t>& picks, std::uint32_t way, bool endsLast) {
      const std::string& delimiter = delimiters[way % 8U];
      const std::string& lineEnd = lineEnds[way / 8U % 3];
      DialectBuilder how = dialect().delimiter(delimiter);
      const char quote = way / 24U % 2 == 0 ? '\'' : '"';
      how.quote(quote);
      if (way / 48U % 4 == 0) how.noQuotes();
      const bool hasHeader = way / 192U % 2 == 0;
      if (!hasHeader) how.noHeader();
      if (way / 384U % 3 == 0) how.null("-");
      if (way / 384U % 3 == 1) how.null("\\N");
      const std::size_t columns = 1 + way / 1152U % 4;
      const std::string raw = rawTable(picks, columns, hasHeader, endsLast);
      const std::string path = folder.write("a.csv", writtenOut(raw, quote, delimiter, lineEnd));
      if (!evidenceOf(path, *fileKind(path), how)) return;
      const SharedTable table = tableOf({path}, how);
      RC_ASSERT(table != nullptr);
      RC_ASSERT(casesOfDuckDb(table) == casesOfScanner(table));
      ++accepted;
      rows += table->cases();
    }));
  }
  EXPECT_GT(accepted, 100);
  EXPECT_GT(rows, 300);
}

// A table as one writes it: cells in quotes where that is needed.
TEST(CaseReaders, AgreeOnTablesThatAreWrittenInPlainDialects) {
  static const std::vector<std::string> cells{"x",   "",           "a,b;c",   "say \"so\"", "it's", "NA",
                                              "\\N", "two\nlines", " blank ", "é€😀",       "-1.5", "007",
                                              "#",   "|\t:",       "\\\"",    "''",         "\"\""};
  const TestFolder folder;
  EXPECT_TRUE(rc::check([&](const std::vector<std::uint8_t>& picks, std::uint16_t way, std::uint8_t width) {
    static const std::vector<std::string> delimiters{",", ";", "\t", "|", " ", ":"};
    const std::string& delimiter = delimiters[way % 6U];
    const char quote = way / 6U % 2 == 0 ? '"' : '\'';
    DialectBuilder how = dialect().delimiter(delimiter).quote(quote);
    if (way / 12U % 2 == 0) how.null("NA");
    const bool hasHeader = way / 24U % 2 == 0;
    if (!hasHeader) how.noHeader();
    const std::size_t columns = 1 + width % 4U;
    std::string text;
    std::string expected;
    for (std::size_t column = 0; hasHeader && column < columns; ++column) {
      text += fmt::format("{}h{}", column == 0 ? "" : delimiter, column);
    }
    if (hasHeader) text += "\n";
    const std::size_t rows = 1 + picks.size() / columns;
    for (std::size_t index = 0; index < rows * columns; ++index) {
      const std::string& cell = index < picks.size() ? cells[picks[index] % cells.size()] : cells.front();
      if (index % columns != 0) text += delimiter;
      text += quote;
      for (const char character : cell) text += std::string(character == quote ? 2 : 1, character);
      text += quote;
      if ((index + 1) % columns == 0) text += "\n";
      const bool isNull = cell == "NA" && way / 12U % 2 == 0;
      if (index != 0) expected += index % columns == 0 ? " / " : " ";
      expected += isNull ? "''" : "'" + cell.substr(0, cell.find_last_not_of(' ') + 1) + "'";
    }
    const SharedTable table = tableOf({folder.write("a.csv", text)}, how);
    RC_ASSERT(table != nullptr);
    RC_ASSERT(casesOfScanner(table) == expected);
    RC_ASSERT(casesOfDuckDb(table) == expected);
  }));
}

}  // namespace
}  // namespace workbench::data
