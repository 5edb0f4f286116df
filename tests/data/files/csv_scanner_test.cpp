// Whole records from the window against the fields one by one: the same cells, lines and problems.
#include "workbench/data/files/csv_scanner.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstring>
#include <limits>

#include "tests/data/files/scanner_fixture.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

constexpr std::size_t allAtOnce = std::numeric_limits<std::size_t>::max();

std::string byField(const TableDialect& dialect, const std::string& text, Lines lines) {
  TextSource source(text, allAtOnce);
  return recordsByField(*openScanner(source, dialect, "t.csv"), !dialect.headerRows.empty(), lines);
}

std::string byBatch(const TableDialect& dialect, const std::string& text, std::size_t pieceBytes, Lines lines) {
  TextSource source(text, pieceBytes);
  return recordsByBatch(*openScanner(source, dialect, "t.csv"), !dialect.headerRows.empty(), lines);
}

// Lines of a table with something odd now and then, many windows long.
std::string longTable(const std::string& lineEnd, const std::vector<std::string>& oddLines, std::size_t lines) {
  std::string text = "a,b,c" + lineEnd;
  for (std::size_t line = 0; line < lines; ++line) {
    const bool isOdd = !oddLines.empty() && line % 1000 == 999;
    text += isOdd ? oddLines[line / 1000 % oddLines.size()] : fmt::format("{},{}.5,\"text {}\"", line, line, line);
    text += lineEnd;
  }
  return text;
}

TEST(CsvScanner, GivesTheSameRecordsInBatchesAsFieldByField) {
  for (const std::string& lineEnd : {"\n"s, "\r\n"s, "\r"s}) {
    const std::vector<std::string> oddLines{"\"say \"\"so\"\"\",2,3",
                                            "\"two" + lineEnd + "lines\",5,6",
                                            "",
                                            "é,ü,\"€\"",
                                            "\"\",\"\",\"\"",
                                            "it\"s,5\",x\"y",
                                            ",,",
                                            "1," + std::string(300'000, 'x') + ",2"};
    const std::string text = longTable(lineEnd, oddLines, 20'000);
    ASSERT_GT(text.size(), std::size_t{700'000});
    const std::string expected = byField(dialect(), text, Lines::left);
    EXPECT_TRUE(byBatch(dialect(), text, allAtOnce, Lines::left) == expected) << "all at once";
    EXPECT_TRUE(byBatch(dialect(), text, 100'003, Lines::left) == expected) << "in pieces";
    EXPECT_TRUE(byBatch(dialect(), text.substr(0, text.size() - lineEnd.size()), allAtOnce, Lines::left) == expected)
        << "the last line open";
  }
}

TEST(CsvScanner, GivesAllRecordsBeforeAProblemFarFromTheStart) {
  const std::vector<std::string> wrongLines{
      "1,2",        "1,2,3,4",          "1,\xF6,3",        "\"x\"y,2,3",     "1,2,\0"s,
      "1, \"x\",3", "1,\"\xE2\x82\",3", "1,\"\r\n\",\x80", "1,2,3\r\n4,5,6", "1,\"never closed"};
  for (const std::string& wrong : wrongLines) {
    const std::string text = longTable("\n", {}, 9'000) + wrong + "\n" + longTable("\n", {}, 9'000);
    const std::string expected = byField(dialect(), text, Lines::left);
    ASSERT_NE(expected.find("! t.csv, line "), std::string::npos) << wrong;
    EXPECT_TRUE(byBatch(dialect(), text, allAtOnce, Lines::left) == expected) << wrong;
    EXPECT_TRUE(byBatch(dialect(), text, 50'001, Lines::left) == expected) << wrong;
  }
}

TEST(CsvScanner, KnowsTheLineOfEveryRecord) {
  const std::string text =
      longTable("\n", {"\"two\nlines\",5,6", "", "\"three\r\nlines\n\",\"\n\",\"a \"\"word\"\"\""}, 9'000);
  TextSource bySource(text, allAtOnce);
  TextSource source(text, allAtOnce);
  const std::unique_ptr<TableScanner> byFields = openScanner(bySource, dialect(), "t.csv");
  const std::unique_ptr<TableScanner> byBatches = openScanner(source, dialect(), "t.csv");
  std::vector<std::string> names;
  ASSERT_EQ(byFields->readHeader(names), TableScanner::Step::taken);
  ASSERT_EQ(byBatches->readHeader(names), TableScanner::Step::taken);
  std::vector<std::uint64_t> lines;
  for (CsvField field; byFields->next(field) == TableScanner::Step::taken;) lines.push_back(field.line);
  std::size_t first = 0;
  for (CellBatch batch; byBatches->nextRecords(batch) == TableScanner::Step::taken; first += batch.records() * 3) {
    for (const std::size_t record : {std::size_t{0}, batch.records() / 2, batch.records() - 1}) {
      for (std::size_t column = 0; column < 3; ++column) {
        ASSERT_EQ(batch.lineOf(record, column), lines.at(first + record * 3 + column)) << first << " " << record;
      }
    }
  }
  EXPECT_EQ(first, lines.size());
}

TEST(CsvScanner, AgreesWithItselfOnEveryTextInPlainDialects) {
  static const std::vector<std::string> delimiters{",", ";", "\t", "|", " ", "a"};
  static const std::vector<std::string> lineEnds{"\n", "\r\n", "\r"};
  std::size_t records = 0;
  EXPECT_TRUE(rc::check([&](const std::vector<std::uint8_t>& picks, std::uint32_t way, bool endsLast) {
    const std::string& delimiter = delimiters[way % 6U];
    const char quote = way / 6U % 2 == 0 ? '"' : '\'';
    DialectBuilder how = dialect().delimiter(delimiter).quote(quote);
    if (way / 12U % 4 == 0) how.noQuotes();
    const bool hasHeader = way / 48U % 2 == 0;
    if (!hasHeader) how.noHeader();
    if (way / 96U % 3 == 0) how.null("-");
    const std::string raw = rawTable(picks, 1 + way / 288U % 4, hasHeader, endsLast);
    const std::string text = writtenOut(raw, quote, delimiter, lineEnds[way / 1152U % 3]);
    const std::string expected = byField(how, text, Lines::shown);
    RC_ASSERT(byBatch(how, text, allAtOnce, Lines::shown) == expected);
    RC_ASSERT(byBatch(how, text, 1 + way / 3456U % 9, Lines::shown) == expected);
    records += static_cast<std::size_t>(std::count(expected.begin(), expected.end(), '/'));
  }));
  EXPECT_GT(records, 100U);
}

// Gives a beginning, then the same character without end.
class EndlessSource final : public ByteSource {
 public:
  explicit EndlessSource(std::string beginning) : beginning_(std::move(beginning)) {}

  Outcome<std::size_t> read(char* into, std::size_t room) override {
    const std::size_t bytes = beginning_.empty() ? room : std::min(room, beginning_.size());
    if (beginning_.empty()) {
      std::memset(into, 'x', bytes);
    } else {
      std::memcpy(into, beginning_.data(), bytes);
      beginning_.erase(0, bytes);
    }
    return bytes;
  }

 private:
  std::string beginning_;
};

TEST(CsvScanner, RefusesARecordThatDoesNotEnd) {
  EndlessSource source("a,b\n1,2\n3,\"");
  EXPECT_EQ(recordsByBatch(*openScanner(source, dialect(), "t.csv"), true),
            "1:2|2:2 / ! t.csv, line 3: The record that begins here is longer than 256 MiB.");
}

}  // namespace
}  // namespace workbench::data
