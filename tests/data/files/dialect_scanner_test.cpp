// What texts in unusual dialects are read as, and what is refused in them.

#include "workbench/data/files/dialect_scanner.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/data/files/scanner_fixture.h"
#include "workbench/data/files/csv_scanner.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

TEST(DialectScanner, PartsFieldsByAnyText) {
  EXPECT_EQ(scanned(dialect().delimiter("||"), "a||b\n1||2\nx|y||\n"), "a|b // 1|2 / x|y|");
  EXPECT_EQ(scanned(dialect().delimiter("::"), "a::b\n1:::2\n"), "a|b // 1|:2");
  EXPECT_EQ(scanned(dialect().delimiter("\u00A6"), "a\u00A6b\n1\u00A62\n\u00E6\u00A9\u00A6z\n"),
            "a|b // 1|2 / \u00E6\u00A9|z")
      << "a byte of the delimiter is none";
  EXPECT_EQ(scanned(dialect().delimiter(" - "), "\"a - b\" - c\n1 - \"2\"\n"), "a - b|c // 1|2");
  EXPECT_EQ(scanned(dialect().delimiter(";"), "a;b\n1,5;\"x;y\"\n"), "a|b // 1,5|x;y");
  EXPECT_EQ(scanned(dialect().delimiter("||"), "a||b\r\n1||2\r\n"), "a|b // 1|2");
}

TEST(DialectScanner, HasAnyQuoteOrNone) {
  EXPECT_EQ(scanned(dialect().quote('\''), "a,b\n'x,y',\"z\"\n'it''s',\n"), "a|b // x,y|\"z\" / it's|");
  EXPECT_EQ(scanned(dialect().noQuotes(), "a,b\n\"x,y\"\n"), "a|b // \"x|y\"");
  EXPECT_EQ(scanned(dialect().noQuotes(), "a,b\n \"x,5\" nail\n"), "a|b //  \"x|5\" nail");
}

TEST(DialectScanner, DoublesQuotesOnlyWhereThatIsSo) {
  const TableDialect single = dialect().noDoubledQuotes().escape('\\');
  EXPECT_EQ(scanned(single, "a,b\n\"x\\\"y\",2\n"), "a|b // x\"y|2");
  EXPECT_EQ(scanned(single, "a,b\n\"x\"\"y\",2\n"),
            "a|b // ! t.csv, line 2: A quote is closed, and the field (which began in line 2) goes on.");
  EXPECT_EQ(scanned(dialect().escape('\\'), "a,b\n\"x\"\"y\\\"z\",2\n"), "a|b // x\"y\"z|2");
}

TEST(DialectScanner, TakesWhatIsEscapedAsItStands) {
  const TableDialect escaping = dialect().escape('\\').noQuotes();
  EXPECT_EQ(scanned(escaping, "a,b\nx\\,y,2\n"), "a|b // x,y|2");
  EXPECT_EQ(scanned(escaping, "a,b\nx\\\\,2\n"), "a|b // x\\|2");
  EXPECT_EQ(scanned(escaping, "a,b\nx\\\ny,2\n"), "a|b // x\ny|2");
  EXPECT_EQ(
      scanned(escaping, "a,b\r\nx\\\r\ny,2\r\n3\r\n"),
      "a|b // x\r\ny|2 ! t.csv, line 4: The number of fields in this line is 1; 2 are expected, as the first line has "
      "them.");
  EXPECT_EQ(scanned(escaping, "a,b\n\\n\\\",\\\u00E9\n"), "a|b // n\"|\u00E9");
  EXPECT_EQ(scanned(dialect().escape('\\'), "a,b\n\\\"x,\"p\\,\\\nq\"\n"), "a|b // \"x|p,\nq");
  EXPECT_EQ(scanned(dialect().escape('\\').delimiter("||"), "a||b\nx\\||y||2\n"), "a|b // x||y|2")
      << "an escaped character is no part of a delimiter";
}

TEST(DialectScanner, RefusesAnEscapeBeforeNothing) {
  EXPECT_EQ(scanned(dialect().escape('\\'), "a,b\n1,x\\"),
            "a|b // 1 ! t.csv, line 2: The text ends with an escape character.");
  EXPECT_EQ(scanned(dialect().escape('\\'), "a,b\n1,\"x\\\""),
            "a|b // 1 ! t.csv, line 2: The quote that opens here is never closed.");
  EXPECT_EQ(scanned(dialect().escape('\\'), "a,b\n1,x\\\0y\n"s),
            "a|b // 1 ! t.csv, line 2: A NUL byte stands in the text.");
}

TEST(DialectScanner, LeavesOutBlanksBehindADelimiter) {
  const TableDialect spaced = dialect().skipInitialSpace();
  EXPECT_EQ(scanned(spaced, "a, b,  c\n1,   2 ,\" 3\"\n x, \"y, z\",\n"), "a|b|c // 1|2 | 3 /  x|y, z|");
  EXPECT_EQ(scanned(spaced, "a, b\n1,   \n"), "a|b // 1|");
  EXPECT_EQ(scanned(spaced, "a, b\n1,\t2\n"), "a|b // 1|\t2");
  EXPECT_EQ(scanned(dialect().skipInitialSpace().delimiter(" "), "a  b\n1    2\n"), "a|b // 1|2");
}

TEST(DialectScanner, LeavesOutRowsThatBeginAComment) {
  EXPECT_EQ(scanned(dialect().comments("#"), "a,b\n#1,2,3\n1,2\n# \"x\n3,4\n#"), "a|b // 1|2 / 3|4");
  EXPECT_EQ(scanned(dialect().comments("//"), "a,b\n/1,2\n// no\n"), "a|b // /1|2");
  EXPECT_EQ(scanned(dialect().comments("#"), "a,b\n 1,#2\n"), "a|b //  1|#2") << "only at the start of a row";
}

TEST(DialectScanner, TakesAQuotedMarkOfCommentsForData) {
  EXPECT_EQ(scanned(dialect().comments("#"), "a,b\n\"#1\",2\n"), "a|b // #1|2");
  EXPECT_EQ(scanned(dialect().comments("#"), "a,b\n\"x\n# y\",2\n3,4\n"), "a|b // x\n# y|2 / 3|4")
      << "a line inside a quoted field is no row";
}

TEST(DialectScanner, LeavesOutRowsByTheirNumber) {
  EXPECT_EQ(scanned(dialect().commentRows({2, 4}), "a,b\nunits,x,y\n1,2\n\n3,4\n"), "a|b // 1|2 / 3|4");
  EXPECT_EQ(scanned(dialect().commentRows({3}), "a,b\n\"x\ny\",1\nz,2\n3,4\n"), "a|b // x\ny|1 / 3|4")
      << "rows are counted, not lines";
  EXPECT_EQ(scanned(dialect().commentRows({4}).comments("#"), "a,b\n# c\n1,2\n3,4\n5,6\n"), "a|b // 1|2 / 5|6")
      << "comments are rows as well";
  EXPECT_EQ(scanned(dialect().commentRows({3}), "a,b\n\n1,2\n3,4\n"), "a|b // 3|4") << "blank rows are rows as well";
}

TEST(DialectScanner, FindsTheHeaderInTheRowThatIsTold) {
  EXPECT_EQ(scanned(dialect().header({3}), "made by hand\n\na,b\n1,2\n"), "a|b // 1|2");
  EXPECT_EQ(scanned(dialect().header({2}), "\"free, text\nof two lines\"\na,b\n1,2\n"), "a|b // 1|2");
  EXPECT_EQ(scanned(dialect().header({2}).comments("#"), "# free\na,b\n1,2\n"), "a|b // 1|2");
}

TEST(DialectScanner, FindsTheHeaderBelowTheCommentsAtTheTop) {
  EXPECT_EQ(scanned(dialect().comments("#"), "# one\n# two\na,b\n1,2\n"), "a|b // 1|2");
  EXPECT_EQ(scanned(dialect().commentRows({1}), "free text\na,b\n1,2\n"), "a|b // 1|2");
}

TEST(DialectScanner, RefusesAHeaderThatIsNotThere) {
  EXPECT_EQ(scanned(dialect().header({2}).comments("#"), "x\n# y\na,b\n"),
            "! t.csv, line 2: Row 2 has to name the columns, and it is a comment.");
  EXPECT_EQ(scanned(dialect().header({3}), "a\nb\n"),
            "! t.csv, line 3: The text ends before row 3, which has to name the columns.");
  EXPECT_EQ(scanned(dialect().header({2}), "a\n\nb\n"),
            "! t.csv, line 2: The row is blank, and it has to name the columns.");
  EXPECT_EQ(scanned(dialect().comments("#"), "# a\n"),
            "! t.csv, line 2: The text ends before row 2, which has to name the columns.");
  EXPECT_EQ(scanned(dialect().comments("#"), ""), "empty");
  EXPECT_EQ(scanned(dialect().comments("#"), "\xEF\xBB\xBF"), "empty");
}

TEST(DialectScanner, JoinsTheNamesOfSeveralRows) {
  EXPECT_EQ(scanned(dialect().header({1, 2}), "fruit\nid,name\n1,apple\n"), "fruit id|fruit name // 1|apple");
  EXPECT_EQ(scanned(dialect().header({1, 2}).headerJoin("_"), "fruit,colour\nid,name,value\n1,2,3\n"),
            "fruit_id|colour_name|colour_value // 1|2|3");
  EXPECT_EQ(scanned(dialect().header({1, 2}), "id,name,\n,,kg\n1,2,3\n"), "id|name|kg // 1|2|3")
      << "empty names add nothing";
  EXPECT_EQ(scanned(dialect().header({1, 2}), "x,\na,b,c\n1,2,3\n"), "x a|b|x c // 1|2|3")
      << "beyond its end a row goes on with its last name that is not empty";
  EXPECT_EQ(scanned(dialect().header({1, 3}), "a,b\nleft,out\nc,d\n1,2\n"), "a c|b d // 1|2");
  EXPECT_EQ(scanned(dialect().header({1, 2, 3}), "p\nq,r\ns,t\n"), "p q s|p r t //");
  EXPECT_EQ(
      scanned(dialect().header({1, 2}), "a,b,c\nd,e\n1,2\n"),
      "! t.csv, line 2: The number of fields in this line is 2; 3 are expected, as a row of the header above it has "
      "them.");
}

TEST(DialectScanner, ReadsATextWithoutAHeader) {
  EXPECT_EQ(scanned(dialect().noHeader(), "1,2\n3,4\n"), "1|2 / 3|4");
  EXPECT_EQ(scanned(dialect().noHeader().comments("#"), "# x\n1,2\n3,4\n"), "1|2 / 3|4");
  EXPECT_EQ(scanned(dialect().noHeader().comments("#"), "# x\n1,2\n3\n"),
            "1|2 ! t.csv, line 3: The number of fields in this line is 1; 2 are expected, as the first row has them.");
  EXPECT_EQ(scanned(dialect().noHeader(), "\n1,2\n"),
            "! t.csv, line 1: The first line is blank, and it has to tell the number of columns.");
  EXPECT_EQ(scanned(dialect().noHeader().comments("#"), "\n1,2\n"),
            "! t.csv, line 1: The first line is blank, and it has to tell the number of columns.");
}

TEST(DialectScanner, TellsFieldsThatAreNull) {
  EXPECT_EQ(scanned(dialect().null("\\N"), "a,b\n\\N,\"\\N\"\n\\n,x\\N\n"), "a|b // <null>|<null> / \\n|x\\N");
  EXPECT_EQ(scanned(dialect().null(""), "a,b\n,\"\"\n"), "a|b // <null>|<null>");
  EXPECT_EQ(scanned(dialect().null("NULL").delimiter("||"), "a||b\nNULL||2\n"), "a|b // <null>|2");
}

TEST(DialectScanner, TellsANullFromWhatEscapesMakeOfIt) {
  const TableDialect escaping = dialect().null("\\N").escape('\\');
  EXPECT_EQ(scanned(escaping, "a,b\n\\N,N\n\\\\N,x\\N\n"), "a|b // <null>|N / \\N|xN");
  EXPECT_EQ(scanned(escaping, "a,b\n1,\\N"), "a|b // 1|<null>");
  EXPECT_EQ(scanned(escaping, "a,b\n\"\\N\",\\Nx\n"), "a|b // N|Nx");
  EXPECT_EQ(scanned(dialect().null("-").escape('\\'), "a,b\n\\-,-\n"), "a|b // -|<null>");
}

TEST(DialectScanner, KeepsTheRulesOfBlankRows) {
  TextSource source("a,b\n\n# x\n\n1,2\n\n3,4\n\n\n");
  DialectScanner scanner(source, dialect().comments("#"), "t.csv");
  EXPECT_EQ(scanned(scanner, true), "a|b // 1|2 / 3|4");
  EXPECT_EQ(scanner.skippedLines(), 3U) << "those at the end are nothing";
  EXPECT_EQ(scanner.firstSkippedLine(), 2U);
  EXPECT_EQ(scanned(dialect().comments("#"), "a\n1\n\n# x\n3\n"), "a // 1 /  / 3")
      << "a value, where there is one column";
}

TEST(DialectScanner, RefusesUnsoundTextsInEveryDialect) {
  const TableDialect unusual = dialect().delimiter("||").comments("#");
  EXPECT_EQ(scanned(unusual, "a||b\n# \n1||2||3\n"),
            "a|b // 1|2 ! t.csv, line 3: The number of fields in this line is 3; 2 are expected, as the first line has "
            "them.");
  EXPECT_EQ(scanned(unusual, "# x\na||b\n1\n"),
            "a|b // ! t.csv, line 3: The number of fields in this line is 1; 2 are expected, as the header has them.");
  EXPECT_EQ(scanned(unusual, "a||b\n1||\xF6\n"), "a|b // 1 ! t.csv, line 2: The byte 0xF6 is no UTF-8.");
  EXPECT_EQ(scanned(unusual, "a||b\n# \xF6\n"), "a|b // ! t.csv, line 2: The byte 0xF6 is no UTF-8.");
  EXPECT_EQ(scanned(unusual, "a||b\n# \0\n"s), "a|b // ! t.csv, line 2: A NUL byte stands in the text.");
  EXPECT_EQ(scanned(unusual, "a||b\n1||x\0y\n"s), "a|b // 1 ! t.csv, line 2: A NUL byte stands in the text.");
  EXPECT_EQ(scanned(unusual, "a||b\n1||\"x\n"), "a|b // 1 ! t.csv, line 2: The quote that opens here is never closed.");
  EXPECT_EQ(scanned(unusual, "a||b\n1|| \"x\"\n"), "a|b // 1 ! t.csv, line 2: A blank stands before an opening quote.");
  EXPECT_EQ(scanned(unusual, "a||b\n\"1\" ||2\n"),
            "a|b // ! t.csv, line 2: A quote is closed, and the field (which began in line 2) goes on.");
  EXPECT_EQ(scanned(unusual, "a||b\n1||2\r\n"),
            "a|b // 1 ! t.csv, line 2: The line ends with CR LF, the lines before it with LF.");
  EXPECT_EQ(scanned(unusual, "\xFF\xFE"), "! t.csv, line 1: This is UTF-16.");
}

TEST(DialectScanner, ReadsFarBeyondItsWindow) {
  std::string text = "a||b\n# c\n";
  std::string expected = "a|b //";
  for (int row = 0; row < 40'000; ++row) {
    text += fmt::format("{}||\"x\"\"{}\ny\"\n# between\n", row, row);
    expected += fmt::format("{}{}|x\"{}\ny", row == 0 ? " " : " / ", row, row);
  }
  TextSource source(text, 1 << 16);
  const auto scanner = openScanner(source, dialect().delimiter("||").comments("#"), "t.csv");
  EXPECT_TRUE(scanned(*scanner, true) == expected);
  const std::string longText(std::size_t{1} << 20, 'z');
  EXPECT_TRUE(scanned(dialect().comments("#"), "a,b\n#" + longText + "\n1," + longText + "\n") ==
              "a|b // 1|" + longText);
}

// What a scanner found, and the lines that its fields begin in.
std::string fieldsAndLines(TableScanner& scanner) {
  std::string all;
  CsvField field;
  TableScanner::Step step = scanner.next(field);
  for (; step == TableScanner::Step::taken; step = scanner.next(field)) {
    all += fmt::format("{}:{}{}{}", field.line, field.isNull ? "<null>" : field.text, field.endsRecord ? "/" : "|", "");
  }
  if (step == TableScanner::Step::problem) all += scanner.problem().text();
  return all + fmt::format(" {} {}", scanner.skippedLines(), scanner.firstSkippedLine());
}

// Whether both scanners find the same; `isSound` when no problem stood in the way.
bool findTheSame(const TableDialect& plain, const std::string& text, std::size_t pieceBytes, bool& isSound) {
  TextSource source(text, pieceBytes);
  TextSource same(text, pieceBytes);
  CsvScanner fast(source, plain, "t.csv");
  DialectScanner other(same, plain, "t.csv");
  isSound = false;
  if (!plain.headerRows.empty()) {
    std::vector<std::string> names;
    std::vector<std::string> otherNames;
    const TableScanner::Step step = fast.readHeader(names);
    if (other.readHeader(otherNames) != step) return false;
    if (step == TableScanner::Step::problem) return other.problem().text() == fast.problem().text();
    if (step == TableScanner::Step::end) return true;
    if (otherNames != names) return false;
  }
  const std::string found = fieldsAndLines(fast);
  isSound = found.find("t.csv") == std::string::npos;
  return fieldsAndLines(other) == found;
}

TEST(DialectScanner, ReadsPlainDialectsJustAsTheFastScannerDoes) {
  int sound = 0;
  for (int round = 0; round < 5; ++round) {
    EXPECT_TRUE(rc::check([&](const std::vector<std::uint8_t>& picks, std::uint32_t way, bool endsLast) {
      const std::string delimiter = way % 2 == 0 ? "," : ";";
      const char quote = way / 2 % 2 == 0 ? '\'' : '"';
      DialectBuilder plain = dialect().delimiter(delimiter).quote(quote);
      if (way / 4 % 3 == 0) plain.noQuotes();
      if (way / 12 % 3 == 0) plain.null("-");
      const bool hasHeader = way / 36 % 2 == 0;
      if (!hasHeader) plain.noHeader();
      const std::string lineEnd = way / 72 % 3 == 0 ? "\r\n" : way / 72 % 3 == 1 ? "\r" : "\n";
      const std::string raw = rawTable(picks, 1 + way / 216 % 4, hasHeader, endsLast);
      bool isSound = false;
      RC_ASSERT(findTheSame(plain, writtenOut(raw, quote, delimiter, lineEnd), 1 + way / 864 % 5, isSound));
      if (isSound && !picks.empty()) ++sound;
    }));
  }
  EXPECT_GT(sound, 100);
}

// What is wrong with a text is found in the same place, too.
TEST(DialectScanner, RefusesPlainTextsJustAsTheFastScannerDoes) {
  static const std::vector<std::string> pieces{"x",    ",", "\"", "\"\"",   " ",  "\n",  "\n",        "\r\n",
                                               "1",    "'", "\t", "é",      "\\", "#",   "x,y",       ";",
                                               "\xF6", "",  "-",  "\"\n\"", "\r", "\0"s, "a,b\n1,2\n"};
  EXPECT_TRUE(rc::check([&](const std::vector<std::uint8_t>& picks, std::uint8_t way) {
    DialectBuilder plain = dialect();
    if (way % 2 == 0) plain.noHeader();
    if (way / 2 % 2 == 0) plain.noQuotes();
    std::string text = way / 4 % 2 == 0 ? "a,b\n" : "";
    for (const std::uint8_t pick : picks) text += pieces[pick % pieces.size()];
    bool isSound = false;
    RC_ASSERT(findTheSame(plain, text, 1 + way / 8U % 5U, isSound));
  }));
}

// A dialect with any of the unusual parts.
TableDialect anyDialect(std::uint32_t way) {
  static const std::vector<std::vector<std::uint64_t>> headers{{1}, {}, {2}, {1, 2}, {1, 3}};
  DialectBuilder any = dialect().header(headers[way % 5]);
  way /= 5;
  any.delimiter(way % 3 == 0 ? "," : way % 3 == 1 ? "||" : " ,");
  way /= 3;
  if (way % 2 == 0) any.escape('\\');
  if (way / 2 % 2 == 0) any.comments("#");
  if (way / 4 % 2 == 0) any.commentRows({2, 3});
  if (way / 8 % 2 == 0) any.null("\\N");
  if (way / 16 % 2 == 0) any.skipInitialSpace();
  if (way / 32 % 2 == 0) any.noDoubledQuotes();
  if (way / 64 % 4 == 0) any.noQuotes();
  return any;
}

TEST(DialectScanner, ReadsTheSameInWhateverPiecesATextComes) {
  static const std::vector<std::string> pieces{"x",    ",",    "|",   "||",    "\"", "\"\"",  " ",  "\n",
                                               "\n",   "\r\n", "\\",  "\\N",   "#",  "# c",   " ,", "é",
                                               "\xF6", "\r",   "\0"s, "\"y\"", "N",  "a,b\n", ",,", "\n#x\n"};
  EXPECT_TRUE(rc::check([&](const std::vector<std::uint8_t>& picks, std::uint32_t way) {
    const TableDialect any = anyDialect(way);
    std::string text;
    for (const std::uint8_t pick : picks) text += pieces[pick % pieces.size()];
    const std::string byBytes = scanned(any, text);
    for (const std::size_t pieceBytes : {std::size_t{2}, std::size_t{3}, std::size_t{100'000}}) {
      TextSource source(text, pieceBytes);
      DialectScanner scanner(source, any, "t.csv");
      RC_ASSERT(scanned(scanner, !any.headerRows.empty()) == byBytes);
    }
  }));
}

std::string contradiction(const TableDialect& wrong) { return contradictionIn(wrong).value_or(""); }

TEST(TableDialects, MayNotContradictThemselves) {
  EXPECT_EQ(contradiction(dialect()), "");
  EXPECT_EQ(contradiction(TableDialect()), "");
  EXPECT_EQ(contradiction(dialect().delimiter("")), "The dialect has nothing between fields.");
  EXPECT_EQ(contradiction(dialect().delimiter(",\n")), "The dialect has a line break between fields.");
  EXPECT_EQ(contradiction(dialect().delimiter("\"")), "The dialect has the quote character between fields.");
  EXPECT_EQ(contradiction(dialect().delimiter("\"").noQuotes()), "");
  EXPECT_EQ(contradiction(dialect().delimiter("\\t").escape('\\')),
            "The dialect has the escape character between fields.");
  EXPECT_EQ(contradiction(dialect().escape('"')), "The dialect has one character for quotes and for escapes.");
  EXPECT_EQ(contradiction(dialect().quote('\n')), "The dialect has a quote character that is no plain character.");
  EXPECT_EQ(contradiction(dialect().escape('\xC3')), "The dialect has an escape character that is no plain character.");
  EXPECT_EQ(contradiction(dialect().comments("#\n")), "The dialect has a line break in what comments begin with.");
}

}  // namespace
}  // namespace workbench::data
