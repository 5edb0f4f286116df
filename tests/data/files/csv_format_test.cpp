// The scanner and DuckDB read every text that the scanner accepts in the same way, and in the right one.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/data/files/file_fixture.h"
#include "workbench/data/files/csv_case_reader.h"
#include "workbench/data/files/csv_file.h"

namespace workbench::data {
namespace {

using Rows = std::vector<std::vector<std::string>>;

// The cells of a file by DuckDB, every column a text.
Rows rowsByDuckDb(const std::string& path) {
  const FileKind kind = *fileKind(path);
  const auto evidence = evidenceOf(path, kind);
  Dictionary dictionary;
  for (std::size_t column = 0; column < (*evidence)->columns.size(); ++column) {
    Variable variable;
    variable.name = fmt::format("c{}", column);
    variable.width = static_cast<std::int32_t>((*evidence)->columns[column].longestText()) + 1;
    dictionary.add(std::move(variable));
  }
  const auto table = std::make_shared<const CsvTable>(path, kind, *evidence, std::move(dictionary));
  CsvCaseReader reader(table);
  CaseBlock block(table->layout.caseSlots);
  Rows rows;
  for (reader.fill(block); block.cases() != 0; reader.fill(block)) {
    for (std::size_t index = 0; index < block.cases(); ++index) {
      std::vector<std::string>& row = rows.emplace_back();
      for (std::int32_t column = 0; column < table->dictionary.size(); ++column) {
        const OBS* value = block.at(index) + table->layout.slotOfVariable[static_cast<std::size_t>(column)];
        std::string text(value->text, static_cast<std::size_t>(table->dictionary.at(column).width));
        row.push_back(text.erase(text.find_last_not_of(' ') + 1));
      }
    }
  }
  return rows;
}

// A reader of its own, as plain as can be. Requires: the text is sound.
Rows rowsByReference(std::string_view text) {
  Rows rows;
  std::vector<std::string> row;
  std::string field;
  bool isQuoted = false;
  bool isTouched = false;  // something of the record has been seen
  const auto endField = [&] {
    row.push_back(field.erase(field.find_last_not_of(' ') + 1));
    field.clear();
  };
  const auto endRecord = [&] {
    endField();
    rows.push_back(std::exchange(row, {}));
    isTouched = false;
  };
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char character = text[at];
    if (isQuoted) {
      if (character != '"') {
        field += character;
      } else if (at + 1 < text.size() && text[at + 1] == '"') {
        field += text[at++];
      } else {
        isQuoted = false;
      }
    } else if (character == '"' && field.empty() &&
               (at == 0 || text[at - 1] == ',' || text[at - 1] == '\n' || text[at - 1] == '\r')) {
      isQuoted = isTouched = true;
    } else if (character == ',') {
      endField();
      isTouched = true;
    } else if (character == '\n' || character == '\r') {
      if (character == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
      const bool isBlank = !isTouched && field.empty();
      const bool hasOneColumn = !rows.empty() && rows.front().size() == 1;
      if (!isBlank || hasOneColumn) endRecord();
    } else {
      field += character;
      isTouched = true;
    }
  }
  if (isTouched) endRecord();
  rows.erase(rows.begin());  // the header
  return rows;
}

constexpr std::string_view lineEnds[] = {"\n", "\r\n", "\r"};

// Whether both readers agree about the text, when it is accepted at all.
enum class Reading { refused, same, different };

Reading readingOf(const TestFolder& folder, const std::string& text) {
  const std::string path = folder.write("a.csv", text);
  if (!openDataFile(path, {})) return Reading::refused;
  return rowsByDuckDb(path) == rowsByReference(text) ? Reading::same : Reading::different;
}

// All texts of so many pieces; how many were accepted.
int readAllTexts(const TestFolder& folder, const std::string& header, const std::vector<std::string>& pieces,
                 std::size_t length) {
  int accepted = 0;
  std::vector<std::size_t> picks(length, 0);
  for (bool isDone = false; !isDone;) {
    std::string text = header;
    for (const std::size_t pick : picks) text += pieces[pick];
    const Reading reading = readingOf(folder, text);
    EXPECT_NE(reading, Reading::different) << text;
    if (reading == Reading::same) ++accepted;
    isDone = true;
    for (std::size_t& pick : picks) {
      pick = (pick + 1) % pieces.size();
      if (pick == 0) continue;
      isDone = false;
      break;
    }
  }
  return accepted;
}

TEST(CsvFormat, IsReadAlikeForEveryTextOfFewCharacters) {
  const TestFolder folder;
  int accepted = 0;
  for (const std::string_view lineEnd : lineEnds) {
    const std::string end(lineEnd);
    for (const std::string_view names : {"a", "a,b", "\"a\nb\",c", "\"a\rb\"", "a,\"\r\n\""}) {
      const std::string header = std::string(names) + end;
      for (const std::size_t length : {0U, 1U, 2U, 3U}) {
        accepted += readAllTexts(folder, header, {"x", ",", "\"", " ", end}, length);
      }
    }
  }
  EXPECT_GT(accepted, 600);
}

TEST(CsvFormat, IsReadAlikeForRandomTables) {
  static const std::vector<std::string> fields{
      "x",     "",       "\"\"",   "\"a,b\"",  "\"q\"\"q\"", "\" x \"", " x",    "x ",       "5\" nail",
      "x\"\"", "\"\n\"", "\"\r\"", "\"\r\n\"", "\"\n\n,\"",  "é",       "\"é\"", "\"\"\"\"", "\"\"\"\n\"\"\"",
      "12",    "\t",     "'",      "\\",       "#"};
  static const std::vector<std::string> firstNames{"h", "\"h\nx\"", "\"h\rx\"", "\"h\r\nx\""};
  const TestFolder folder;
  int accepted = 0;
  EXPECT_TRUE(
      rc::check([&](std::uint8_t ending, std::uint8_t width, const std::vector<std::uint8_t>& picks, bool endsLast) {
        const std::string end(lineEnds[ending % std::size(lineEnds)]);
        const std::size_t columns = 1U + width % 4U;
        std::string text = firstNames[width / 4U % firstNames.size()];
        for (std::size_t column = 1; column < columns; ++column) text += fmt::format(",h{}", column);
        std::size_t column = 0;
        for (const std::uint8_t pick : picks) {
          text += column == 0 ? end : ",";
          text += fields[pick % fields.size()];
          column = (column + 1) % columns;
        }
        for (; column != 0; column = (column + 1) % columns) text += ",";
        if (endsLast) text += end;
        const Reading reading = readingOf(folder, text);
        RC_ASSERT(reading != Reading::different);
        if (reading == Reading::same) ++accepted;
      }));
  EXPECT_GT(accepted, 90);
}

}  // namespace
}  // namespace workbench::data
