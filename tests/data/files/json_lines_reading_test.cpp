// JSON lines: what the values of an object are as the values of a case.
#include <gtest/gtest.h>

#include "tests/data/files/file_fixture.h"
#include "tests/data/files/scanner_fixture.h"

namespace workbench::data {
namespace {

struct JsonLinesFile {
  explicit JsonLinesFile(std::string_view text, std::string_view schema = "") : path(folder.write("a.jsonl", text)) {
    if (!schema.empty()) folder.write("a.schema.json", schema);
  }
  SharedFile open() const { return opened(path); }
  std::string warnings() const { return fmt::format("{}", fmt::join(open()->warnings(), " ")); }

  TestFolder folder;
  std::string path;
};

std::string read(std::string_view text) { return shown(JsonLinesFile(text).open()); }
std::string readAs(std::string_view fields, std::string_view text) {
  return shown(JsonLinesFile(text, fmt::format(R"({{"fields": [{}]}})", fields)).open());
}

TEST(JsonLines, AreCasesWhoseKeysAreVariables) {
  const JsonLinesFile file("{\"id\":1,\"name\":\"Ann\"}\n{\"id\":2,\"name\":\"Bob\"}\n");
  EXPECT_EQ(types(file.open()), "id F1.0, name A3");
  EXPECT_EQ(shown(file.open()), "1 'Ann' / 2 'Bob'");
  EXPECT_EQ(file.warnings(), "");
}

TEST(JsonLines, HaveAVariableForEveryKeyInTheOrderInWhichTheyFirstAppear) {
  const JsonLinesFile file("{\"b\":1}\n{\"a\":2,\"b\":3}\n{\"c\":\"x\",\"a\":4}\n");
  EXPECT_EQ(types(file.open()), "b F1.0, a F1.0, c A1");
  EXPECT_EQ(shown(file.open()), "1 . '' / 3 2 '' / . 4 'x'");
}

TEST(JsonLines, TakeNullAndALackingKeyForNoValue) {
  EXPECT_EQ(read("{\"a\":1,\"b\":\"x\"}\n{\"a\":null,\"b\":null}\n{}\n{\"b\":\"\",\"a\":2}\n"),
            "1 'x' / . '' / . '' / 2 ''");
}

TEST(JsonLines, KeepEveryDigitOfANumber) {
  EXPECT_EQ(read("{\"a\":0.1}\n{\"a\":-0}\n{\"a\":1e3}\n{\"a\":1.5E-7}\n"), "0.1 / -0 / 1000 / 1.5e-07");
  EXPECT_EQ(read("{\"a\":12345678901234567890123}\n{\"a\":1}\n"), "'12345678901234567890123' / '1'");
  EXPECT_EQ(read("{\"a\":1e999}\n"), "'1e999'");
}

TEST(JsonLines, TakeATextThatLooksLikeANumberForAText) {
  EXPECT_EQ(read("{\"zip\":\"02134\",\"n\":\"12\"}\n{\"zip\":\"10001\",\"n\":\"-1.5\"}\n"),
            "'02134' '12' / '10001' '-1.5'");
}

TEST(JsonLines, AreTextsThroughoutWhereOneNumberStandsInQuotesAndSaySo) {
  const JsonLinesFile file("{\"n\":1}\n{\"n\":2}\n{\"n\":\"3\"}\n{\"n\":4}\n");
  EXPECT_EQ(shown(file.open()), "'1' / '2' / '3' / '4'");
  EXPECT_EQ(file.warnings(),
            fmt::format("Column \"n\" is read as text: in {}, line 3, \"3\" is stored as something else.", file.path));
}

TEST(JsonLines, MakeTheColumnOfAPartnerTextWhereTheyHoldTexts) {
  const TestFolder folder;
  const std::string lines = folder.write("a.jsonl", "{\"n\":\"1\"}\n");
  const std::string table = folder.write("b.csv", "n\n1\n");
  EXPECT_EQ(shown(opened(lines, table)), "'1'");
  const SharedFile partner = opened(table, lines);
  EXPECT_EQ(shown(partner), "'1'");
  ASSERT_EQ(partner->warnings().size(), 1U);
  EXPECT_NE(partner->warnings()[0].find("\"1\" is stored as something else; this file alone would have been read as a "
                                        "number"),
            std::string::npos)
      << partner->warnings()[0];
}

TEST(JsonLines, TakeIsoDatesAndTimesForWhatTheyAre) {
  const JsonLinesFile file("{\"d\":\"2024-01-31\",\"t\":\"10:30:00\",\"m\":\"2024-01-31T10:30:00\"}\n");
  EXPECT_EQ(types(file.open()), "d DATE10.0, t TIME8.0, m DATETIME19.0");
}

TEST(JsonLines, TakeTrueAndFalseForTextsUnlessABooleanIsDeclared) {
  constexpr const char* text = "{\"a\":true}\n{\"a\":false}\n";
  EXPECT_EQ(read(text), "'true' / 'false'");
  EXPECT_EQ(readAs(R"({"name": "a", "type": "boolean"})", text), "1 / 0");
}

TEST(JsonLines, ResolveEscapesInTextsAndKeys) {
  const JsonLinesFile file("{\"\\u00e9\\\"\":\"\\ud83d\\ude00 \\/ \\\\ \\n\",\"b\":\"ä\"}\n{\"é\\u0022\":\"\"}\n");
  EXPECT_EQ(file.open()->dictionary().at(0).name, "é\"");
  EXPECT_EQ(file.open()->dictionary().size(), 2);
  EXPECT_EQ(shown(file.open()), "'😀 / \\ \n' 'ä' / '' ''");
}

TEST(JsonLines, HoldObjectsAndListsAsTheTextOfTheirJsonAndSaySoOnce) {
  const JsonLinesFile file("{\"a\":1}\n{\"o\": { \"x\" : [ 1.50, \"a b\" ] } , \"a\":[ ]}\n{\"o\":{}}\n");
  EXPECT_EQ(shown(file.open()), "'1' '' / '[]' '{\"x\":[1.50,\"a b\"]}' / '' '{}'");
  const std::string warnings = file.warnings();
  EXPECT_NE(
      warnings.find("Column \"o\" holds objects or lists, the first of them in line 2; each is read as the text of "
                    "its JSON."),
      std::string::npos)
      << warnings;
  EXPECT_NE(warnings.find("Column \"a\" holds objects or lists, the first of them in line 2"), std::string::npos);
}

TEST(JsonLines, MayBeginWithAByteOrderMarkAndEndWithOrWithoutALineEnd) {
  EXPECT_EQ(read("\xEF\xBB\xBF{\"a\":1}\r\n{\"a\":2}"), "1 / 2");
}

TEST(JsonLines, SkipLinesOfBlanksAndSaySo) {
  const JsonLinesFile file("{\"a\":1}\n\n  \t\n{\"a\":2}\n\n");
  EXPECT_EQ(shown(file.open()), "1 / 2");
  EXPECT_EQ(file.warnings(), "2 blank lines stand between others, the first in line 2; they were skipped.");
}

TEST(JsonLines, AreReadPacked) {
  const TestFolder folder;
  const SharedFile plain = opened(folder.write("a.jsonl", "{\"a\":1}\n{\"a\":\"x\"}\n"));
  for (const char* const name : {"b.jsonl.gz", "b.ndjson.zst", "b.ndjson"}) {
    auto writer = createDataFile(folder.path(name), plain->dictionary(), "");
    ASSERT_TRUE(writer) << writer.problem().text();
    CaseBlock block(1);
    const auto reader = plain->openReader();
    for (reader->fill(block); block.cases() != 0; reader->fill(block)) (*writer)->append(block.begin(), 2, 1);
    (*writer)->complete();
    (*writer)->commit();
    EXPECT_EQ(shown(opened(folder.path(name))), "'1' / 'x'") << name;
    EXPECT_EQ(unpackedText(folder.path(name)), "{\"a\":\"1\"}\n{\"a\":\"x\"}\n") << name;
  }
}

TEST(JsonLines, ReadANumberAsTheTextAndATextAsTheNumberThatIsDeclared) {
  EXPECT_EQ(readAs(R"({"name": "a", "type": "string"}, {"name": "b", "type": "number"})",
                   "{\"a\":1.50,\"b\":\"2.5\"}\n{\"b\":null}\n"),
            "'1.50' 2.5 / '' .");
}

TEST(JsonLines, AreDescribedByNameWhateverTheOrderOfTheirKeys) {
  const JsonLinesFile file("{\"b\":\"x\",\"a\":1}\n{\"a\":2}\n",
                           R"({"fields": [{"name": "a", "type": "integer", "title": "First"}, {"name": "b"}]})");
  EXPECT_EQ(types(file.open()), "a F1.0, b A1");
  EXPECT_EQ(shown(file.open()), "1 'x' / 2 ''");
}

TEST(JsonLines, HaveNoValuesInADeclaredColumnThatNoLineHasAndSaySo) {
  const JsonLinesFile file("{\"a\":1}\n", R"({"fields": [{"name": "a", "type": "integer"}, {"name": "c"}]})");
  EXPECT_EQ(shown(file.open()), "1 ''");
  EXPECT_EQ(file.warnings(), fmt::format("No line has the key \"c\", which {} declares; all its values are missing.",
                                         file.folder.path("a.schema.json")));
}

TEST(JsonLines, WithoutACaseHaveTheColumnsThatAreDeclared) {
  const JsonLinesFile file("", R"({"fields": [{"name": "a", "type": "integer"}, {"name": "c"}]})");
  EXPECT_EQ(file.open()->dictionary().size(), 2);
  EXPECT_EQ(file.open()->caseCount(), 0);
  EXPECT_EQ(file.warnings(), "");
}

TEST(JsonLines, MayHaveFurtherKeysWhereTheSchemaSaysSo) {
  constexpr const char* text = "{\"a\":1}\n{\"z\":\"x\",\"a\":2}\n";
  EXPECT_EQ(shown(JsonLinesFile(text, R"({"fields": [{"name": "a"}], "fieldsMatch": "subset"})").open()),
            "'1' '' / '2' 'x'");
  const JsonLinesFile strict(text, R"({"fields": [{"name": "a"}]})");
  EXPECT_EQ(problemOf(strict.folder, strict.path).substr(0, 72),
            "a.jsonl: The file has 2 columns, and 1 field is declared for it. Correct");
}

TEST(JsonLines, AreWhatAPackageSaysWhateverTheNameOfTheFile) {
  for (const char* const format : {"jsonl", "ndjson"}) {
    const TestFolder folder;
    folder.write("people.txt", "{\"a\":\"1\"}\n");
    folder.write("datapackage.json",
                 fmt::format(R"({{"resources": [{{"name": "people", "path": "people.txt", "format": "{}",
                     "dialect": {{"header": false, "delimiter": ";"}}, "schema": {{"fields": [{{"name": "a"}}]}}}}]}})",
                             format));
    EXPECT_EQ(shown(opened(folder.path("datapackage.json"))), "'1'");
  }
}

TEST(JsonLines, OfSeveralFilesHaveTheColumnsOfAll) {
  const TestFolder folder;
  folder.write("a.jsonl", "{\"id\":1,\"x\":2}\n");
  folder.write("b.jsonl", "{\"y\":\"z\",\"id\":3}\n");
  folder.write("datapackage.json",
               R"({"resources": [{"name": "all", "type": "table", "path": ["a.jsonl", "b.jsonl"]}]})");
  const SharedFile file = opened(folder.path("datapackage.json"));
  EXPECT_EQ(types(file), "id F1.0, x F1.0, y A1");
  EXPECT_EQ(shown(file), "1 2 '' / 3 . 'z'");
}

TEST(JsonLines, KnowWhetherAColumnRises) {
  const JsonLinesFile file("{\"a\":1,\"b\":\"x\",\"c\":1}\n{\"a\":2,\"b\":\"x\"}\n{\"a\":3,\"b\":\"y\",\"c\":3}\n");
  EXPECT_TRUE(file.open()->isKnownIncreasing(0));
  EXPECT_FALSE(file.open()->isKnownIncreasing(1));
  EXPECT_FALSE(file.open()->isKnownIncreasing(2));
}

TEST(JsonLines, AreTheSameInWhateverPiecesTheyCome) {
  std::string text;
  for (int line = 0; line < 3000; ++line) {
    text += fmt::format("{{\"id\":{},\"name\":\"n\\u00e9{}\",\"key{}\":[{}, 2]}}\n{}", line, line, line % 500, line,
                        line % 97 == 0 ? " \n" : "");
  }
  const auto records = [&](std::size_t piece) {
    TextSource source(text, piece);
    const auto scanner = openScanner(source, jsonLinesDialect("", {}), "t.jsonl");
    std::vector<std::string> all;
    CellBatch batch;
    while (scanner->nextRecords(batch) == TableScanner::Step::taken) {
      for (std::size_t record = 0; record < batch.records(); ++record) {
        std::string& cells = all.emplace_back(fmt::format("{}", batch.lineOf(record, 0)));
        for (std::size_t column = 0; column < batch.columns(); ++column) {
          const ColumnCells own = batch.column(column);
          if (!own.isNull(record)) cells += fmt::format("|{}={}", column, own.text(record));
        }
      }
    }
    return all;
  };
  const std::vector<std::string> whole = records(text.size());
  ASSERT_EQ(whole.size(), 3000U);
  EXPECT_EQ(whole[501], "508|0=501|1=né501|3=[501,2]");
  EXPECT_EQ(records(1), whole);
  EXPECT_EQ(records(4099), whole);
}

}  // namespace
}  // namespace workbench::data
