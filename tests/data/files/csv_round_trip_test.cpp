// What is written reads back as the same cases, whoever wrote it.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <cstring>

#include "tests/data/files/file_fixture.h"
#include "workbench/data/files/csv_case_reader.h"
#include "workbench/data/files/csv_case_writer.h"
#include "workbench/data/files/csv_file.h"

namespace workbench::data {
namespace {

constexpr std::int32_t textWidth = 24;
constexpr std::size_t textSlots = 3;
constexpr std::size_t caseSlots = 2 + textSlots;

Dictionary dictionaryOfThree() {
  Dictionary dictionary;
  Variable number;
  number.name = "number";
  dictionary.add(number);
  Variable text;
  text.name = "text, with a comma";
  text.width = textWidth;
  dictionary.add(text);
  Variable moment;
  moment.name = "moment";
  moment.format.type = FormatType::dateTime;
  dictionary.add(moment);
  return dictionary;
}

// Characters that CSV cares about, and others of one to four bytes.
std::string textOf(const std::vector<std::uint8_t>& picks) {
  static const std::vector<std::string> pieces{"a",  "1", ",", "\"", "\n", "\r", "\r\n",         " ",
                                               "\t", ".", "ä", "€",  "😀", "-",  "\xEF\xBB\xBF", "#"};
  std::string text;
  for (const std::uint8_t pick : picks) {
    const std::string& piece = pieces[pick % pieces.size()];
    if (text.size() + piece.size() <= textWidth) text += piece;
  }
  return text;
}

struct Row {
  std::uint64_t numberBits;
  std::vector<std::uint8_t> picks;
  std::int64_t milliseconds;
};

}  // namespace
}  // namespace workbench::data

namespace rc {
template <>
struct Arbitrary<workbench::data::Row> {
  static Gen<workbench::data::Row> arbitrary() {
    return gen::build<workbench::data::Row>(gen::set(&workbench::data::Row::numberBits),
                                            gen::set(&workbench::data::Row::picks),
                                            gen::set(&workbench::data::Row::milliseconds));
  }
};
}  // namespace rc

namespace workbench::data {
namespace {

std::vector<OBS> slotsOf(const std::vector<Row>& rows) {
  std::vector<OBS> slots(rows.size() * caseSlots);
  OBS* next = slots.data();
  for (const Row& row : rows) {
    const auto number = std::bit_cast<double>(row.numberBits);
    next[0].number = std::isfinite(number) ? number : systemMissing;
    std::memset(next + 1, ' ', textSlots * sizeof(OBS));
    const std::string text = textOf(row.picks);
    std::memcpy(next + 1, text.data(), text.size());
    next[1 + textSlots].number = static_cast<double>(row.milliseconds % 60'000'000'000'000) / 1000;
    next += caseSlots;
  }
  return slots;
}

// The cases of a file, read with types that are declared.
std::vector<OBS> slotsRead(const std::string& path, const Dictionary& dictionary) {
  const FileKind kind = *fileKind(path);
  const auto evidence = evidenceOf(path, kind);
  if (!evidence) throw std::runtime_error(evidence.problem().text());
  CsvCaseReader reader(std::make_shared<const CsvTable>(path, kind, *evidence, dictionary));
  CaseBlock block(CaseLayout(dictionary).caseSlots);
  std::vector<OBS> slots;
  for (reader.fill(block); block.cases() != 0; reader.fill(block)) {
    slots.insert(slots.end(), block.begin(), block.begin() + block.cases() * block.caseSlots());
  }
  return slots;
}

void write(const std::string& path, const Dictionary& dictionary, const std::vector<OBS>& slots) {
  const auto writer = createCsvFile(path, *fileKind(path), dictionary);
  if (!writer) throw std::runtime_error(writer.problem().text());
  const std::size_t slotsOfCase = CaseLayout(dictionary).caseSlots;
  (*writer)->append(slots.data(), slots.size() / slotsOfCase, slotsOfCase);
  (*writer)->complete();
  (*writer)->commit();
}

bool sameBytes(const std::vector<OBS>& left, const std::vector<OBS>& right) {
  return left.size() == right.size() &&
         (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(OBS)) == 0);
}

TEST(CsvRoundTrip, GivesTheSameCasesForEveryKindOfFile) {
  const TestFolder folder;
  const Dictionary dictionary = dictionaryOfThree();
  EXPECT_TRUE(rc::check([&](const std::vector<Row>& rows, std::uint8_t pick) {
    constexpr const char* names[] = {"a.csv", "a.tsv", "a.csv.gz", "a.csv.zst"};
    const std::string path = folder.path(names[pick % std::size(names)]);
    const std::vector<OBS> slots = slotsOf(rows);
    write(path, dictionary, slots);
    RC_ASSERT(sameBytes(slotsRead(path, dictionary), slots));
  }));
}

Variable textVariable(std::string name, std::int32_t width) {
  Variable variable;
  variable.name = std::move(name);
  variable.width = width;
  return variable;
}

// Cases of one text of that width.
std::vector<OBS> slotsOf(const std::vector<std::string>& texts, std::size_t width) {
  const std::size_t slotsOfText = (width + sizeof(OBS) - 1) / sizeof(OBS);
  std::vector<OBS> slots(texts.size() * slotsOfText);
  if (slots.empty()) return slots;
  std::memset(slots.data(), ' ', slots.size() * sizeof(OBS));
  for (std::size_t index = 0; index < texts.size(); ++index) {
    std::memcpy(slots[index * slotsOfText].text, texts[index].data(), texts[index].size());
  }
  return slots;
}

TEST(CsvRoundTrip, GivesTheSameCasesForOneText) {
  const TestFolder folder;
  Dictionary dictionary;
  dictionary.add(textVariable("only", textWidth));
  EXPECT_TRUE(rc::check([&](const std::vector<std::vector<std::uint8_t>>& rows, bool hasTabs) {
    std::vector<std::string> texts;
    for (const std::vector<std::uint8_t>& picks : rows) texts.push_back(textOf(picks));
    const std::string path = folder.path(hasTabs ? "a.tsv" : "a.csv");
    const std::vector<OBS> slots = slotsOf(texts, textWidth);
    write(path, dictionary, slots);
    RC_ASSERT(sameBytes(slotsRead(path, dictionary), slots));
  }));
}

TEST(CsvRoundTrip, KeepsTextsThatMeanSomethingElsewhere) {
  const TestFolder folder;
  Dictionary dictionary;
  dictionary.add(textVariable("only", textWidth));
  const std::vector<OBS> slots = slotsOf({"",           "\xEF\xBB\xBFmark",
                                          "# comment",  " blank before",
                                          "\t",         "\r",
                                          "\r\n",       "\"",
                                          "\"\"",       "\"in quotes\"",
                                          "'",          ",",
                                          ";",          "\\",
                                          "\\N",        "NULL",
                                          "12",         "007",
                                          "2026-11-21", "true",
                                          "=1+1",       ""},
                                         textWidth);
  for (const char* name : {"a.csv", "a.tsv", "a.csv.gz", "a.csv.zst"}) {
    write(folder.path(name), dictionary, slots);
    EXPECT_TRUE(sameBytes(slotsRead(folder.path(name), dictionary), slots)) << name;
  }
}

TEST(CsvRoundTrip, KeepsTheNamesOfVariables) {
  const TestFolder folder;
  const std::vector<std::string> names{
      "\xEF\xBB\xBFmark", "with, comma", "\"quotes\"", "two\nlines", "\r", "tab\t", " blanks ",
      "# comment",        "*",           "rowid",      "select",     "c1", "C0",    "straße",
      "strasse",          "ı",           "i",          "filename"};
  Dictionary dictionary;
  for (const std::string& name : names) {
    Variable variable;
    variable.name = name;
    dictionary.add(variable);
  }
  for (const char* file : {"a.csv", "a.tsv"}) {
    write(folder.path(file), dictionary, std::vector<OBS>(names.size()));
    const auto evidence = evidenceOf(folder.path(file), *fileKind(file));
    ASSERT_TRUE(evidence) << evidence.problem().text();
    EXPECT_EQ((*evidence)->header, names);
    EXPECT_TRUE(sameBytes(slotsRead(folder.path(file), dictionary), std::vector<OBS>(names.size())));
  }
}

TEST(CsvRoundTrip, KeepsVeryLongTexts) {
  const TestFolder folder;
  constexpr std::size_t width = std::size_t{1} << 20;
  Dictionary dictionary;
  dictionary.add(textVariable("long", width));
  std::vector<std::string> texts;
  for (std::size_t index = 0; index < 9; ++index) {
    std::string text(width - index, static_cast<char>('a' + index));
    text[width / 2] = index % 2 == 0 ? '"' : '\n';
    texts.push_back(text);
  }
  const std::vector<OBS> slots = slotsOf(texts, width);
  write(folder.path("a.csv"), dictionary, slots);
  EXPECT_TRUE(sameBytes(slotsRead(folder.path("a.csv"), dictionary), slots));
}

TEST(CsvRoundTrip, KeepsTwoThousandVariables) {
  const TestFolder folder;
  constexpr std::size_t variables = 2000;
  Dictionary dictionary;
  for (std::size_t index = 0; index < variables; ++index) {
    Variable variable;
    variable.name = fmt::format("variable{}", index);
    dictionary.add(variable);
  }
  std::vector<OBS> slots(variables * 500);
  for (std::size_t index = 0; index < slots.size(); ++index) {
    slots[index].number = index % 7 == 0 ? systemMissing : static_cast<double>(index) / 8;
  }
  write(folder.path("a.csv"), dictionary, slots);
  EXPECT_TRUE(sameBytes(slotsRead(folder.path("a.csv"), dictionary), slots));
}

// Quotes as others do: every field, or where an odd number says so.
std::string quotedByOthers(const std::string& text, bool always) {
  if (!always && text.find_first_of(",\"\r\n\t ") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char character : text) quoted += character == '"' ? "\"\"" : std::string(1, character);
  return quoted + "\"";
}

TEST(CsvRoundTrip, ReadsWhatAnotherProgramQuotes) {
  const TestFolder folder;
  EXPECT_TRUE(rc::check([&](const std::vector<std::pair<std::vector<std::uint8_t>, std::vector<std::uint8_t>>>& rows,
                            bool always, bool endsLast) {
    std::string text = "\"first\",second";
    for (const auto& [first, second] : rows) {
      text += "\n" + quotedByOthers(textOf(first), always) + "," + quotedByOthers(textOf(second), always);
    }
    if (endsLast) text += "\n";
    const auto file = openDataFile(folder.write("a.csv", text), {});
    RC_ASSERT(static_cast<bool>(file));
    const auto cases = casesOf(**file);
    RC_ASSERT(cases.size() == rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (const std::size_t column : {std::size_t{0}, std::size_t{1}}) {
        std::string expected = textOf(column == 0 ? rows[row].first : rows[row].second);
        const Variable& variable = (*file)->dictionary().at(static_cast<std::int32_t>(column));
        if (variable.isNumeric()) {
          RC_ASSERT(cases[row][column] == (expected.empty() ? "." : fmt::format("{}", std::stod(expected))));
        } else {
          RC_ASSERT(cases[row][column] == "'" + expected.erase(expected.find_last_not_of(' ') + 1) + "'");
        }
      }
    }
  }));
}

}  // namespace
}  // namespace workbench::data
