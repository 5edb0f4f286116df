// Dialects of text tables: defaults, every property, and the traps.
#include "workbench/data/descriptors/dialect_reading.h"

#include <gtest/gtest.h>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

struct ReadDialect {
  TableDialect dialect;
  std::string problem;
  std::string warnings;
};

ReadDialect read(const std::string& text) {
  const Outcome<JsonDocument> document = jsonDocument(text, "d");
  if (!document) return {{}, document.problem().text(), ""};
  DescriptorFindings findings;
  ReadDialect result;
  result.dialect = tableDialect(*DescriptorValue(*document, findings).object());
  if (findings.problem()) result.problem = findings.problem()->text().substr(3);  // behind "d, " or "d: "
  result.warnings = fmt::format("{}", fmt::join(findings.warnings(), "\n"));
  return result;
}

TEST(TableDialect, HasDefaultsForAllThatIsNotSaid) {
  const ReadDialect result = read("{}");
  EXPECT_EQ(result.dialect, TableDialect{});
  EXPECT_EQ(result.problem, "");
  EXPECT_EQ(result.dialect.delimiter, std::nullopt);
  EXPECT_EQ(result.dialect.headerRows, std::vector<std::uint64_t>{1});
  EXPECT_EQ(result.dialect.commentRows, std::vector<std::uint64_t>{});
}

TEST(TableDialect, TakesEveryProperty) {
  const ReadDialect result = read(R"({
    "delimiter": "||", "lineTerminator": "\r\n", "quoteChar": "'", "doubleQuote": false, "header": true,
    "headerRows": [3, 2], "headerJoin": "-", "commentRows": [5, 1], "commentChar": "//", "nullSequence": "\\N",
    "skipInitialSpace": true})");
  EXPECT_EQ(result.problem, "");
  EXPECT_EQ(result.warnings, "");
  EXPECT_EQ(result.dialect.delimiter, "||");
  EXPECT_EQ(result.dialect.quote, '\'');
  EXPECT_FALSE(result.dialect.doubleQuote);
  EXPECT_EQ(result.dialect.headerRows, (std::vector<std::uint64_t>{2, 3}));
  EXPECT_EQ(result.dialect.headerJoin, "-");
  EXPECT_EQ(result.dialect.commentRows, (std::vector<std::uint64_t>{1, 5}));
  EXPECT_EQ(result.dialect.commentText, "//");
  EXPECT_EQ(result.dialect.nullSequence, "\\N");
  EXPECT_TRUE(result.dialect.skipInitialSpace);
}

TEST(TableDialect, HasNoQuotesWhereTheQuoteIsEmptyOrNull) {
  EXPECT_EQ(read(R"({"quoteChar": ""})").dialect.quote, std::nullopt);
  EXPECT_EQ(read(R"({"quoteChar": null})").dialect.quote, std::nullopt);
  EXPECT_EQ(read(R"({"quoteChar": null, "escapeChar": "\\"})").warnings, "");
}

TEST(TableDialect, KeepsTheQuoteBesideAnEscapeAndWarnsOnlyWhenBothAreGiven) {
  EXPECT_EQ(read(R"({"escapeChar": "\\"})").dialect.escape, '\\');
  EXPECT_EQ(read(R"({"escapeChar": "\\"})").dialect.quote, '"');
  EXPECT_EQ(read(R"({"escapeChar": "\\"})").warnings, "");
  EXPECT_EQ(read(R"({"escapeChar": "\\", "quoteChar": "\""})").warnings,
            "The dialect gives both \"quoteChar\" and \"escapeChar\", which exclude each other; the escape character "
            "is taken to work inside quotes as well.");
}

TEST(TableDialect, HasNoHeaderWhateverItsRows) {
  EXPECT_TRUE(read(R"({"header": false})").dialect.headerRows.empty());
  EXPECT_TRUE(read(R"({"header": false, "headerRows": [1, 2]})").dialect.headerRows.empty());
}

TEST(TableDialect, PassesOverWhatIsNoneOfATextFile) {
  const ReadDialect result = read(R"({"$schema": 1, "property": 2, "itemType": 3, "itemKeys": 4, "sheetNumber": "x",
    "sheetName": 5, "table": 6, "caseSensitiveHeader": 7, "csvddfVersion": 8, "skipRows": 9, "own:thing": {}})");
  EXPECT_EQ(result.problem, "");
  EXPECT_EQ(result.dialect, TableDialect{});
}

TEST(TableDialect, RefusesMarksThatCannotBeTold) {
  EXPECT_EQ(read(R"({"delimiter": ""})").problem,
            "/delimiter: \"delimiter\" is empty, and has to be a text of one character or more. Leave it out, or write "
            "the characters.");
  EXPECT_EQ(read(R"({"delimiter": ";\n"})").problem,
            "/delimiter: \"delimiter\" holds a line end, and has to stand within a line. Write other characters.");
  EXPECT_EQ(read(R"({"delimiter": "\u0000"})").problem, "/delimiter: \"delimiter\" holds a NUL character. Remove it.");
  EXPECT_EQ(read(R"({"delimiter": "\"a"})").problem,
            "The delimiter holds the quote or the escape character. Choose another character for one of them.");
  EXPECT_EQ(read(R"({"escapeChar": "\""})").problem,
            "\"escapeChar\" and \"quoteChar\" are the same character. Leave \"escapeChar\" out: quotes inside quotes "
            "are doubled.");
  EXPECT_EQ(read(R"({"quoteChar": "''"})").problem,
            "/quoteChar: \"quoteChar\" is \"''\", and has to be exactly one ASCII character. Write a single character "
            "such as \\\".");
  EXPECT_TRUE(beginsWith(read(R"({"quoteChar": "„"})").problem, "/quoteChar: \"quoteChar\" is \"„"));
  EXPECT_EQ(read(R"({"lineTerminator": "\u2028"})").problem,
            "/lineTerminator: \"lineTerminator\" is none of the line ends that are read. Write \"\\n\", \"\\r\\n\" or "
            "\"\\r\".");
  for (const char* const known : {"\\n", "\\r\\n", "\\r"}) {
    EXPECT_EQ(read(fmt::format("{{\"lineTerminator\": \"{}\"}}", known)).problem, "");
  }
}

TEST(TableDialect, RefusesRowsThatCannotBe) {
  EXPECT_EQ(read(R"({"headerRows": []})").problem,
            "/headerRows: \"headerRows\" names no row. Name the rows of the header, or write \"header\": false where "
            "there is none.");
  EXPECT_EQ(read(R"({"headerRows": [2, 1, 2]})").problem,
            "/headerRows: \"headerRows\" names row 2 twice. Name every row once.");
  EXPECT_EQ(read(R"({"commentRows": [0]})").problem,
            "/commentRows/0: An entry of \"commentRows\" is not a whole number of 1 or more. Write such a number "
            "without quotes.");
  EXPECT_EQ(read(R"({"headerRows": [1, 2], "commentRows": [2]})").problem,
            "Row 2 cannot be a header row and a comment row. Take it out of \"headerRows\" or of \"commentRows\".");
}

}  // namespace
}  // namespace workbench::data
