// JSON lines that are not sound: each is a problem that says where it is, what it is and what to do.
#include <gtest/gtest.h>

#include "tests/data/files/file_fixture.h"
#include "workbench/data/files/cell_batch.h"

namespace workbench::data {
namespace {

constexpr const char* correct = " Correct the line, or write the file anew if it was cut off.";

std::string problem(std::string_view text) {
  const TestFolder folder;
  return problemOf(folder, folder.write("a.jsonl", text));
}

// Of a line behind a sound one.
std::string problemInLine(std::string_view line) { return problem(fmt::format("{{\"a\":1}}\n{}\n", line)); }

TEST(JsonLinesProblem, IsALineWithoutAnObject) {
  for (const char* const line : {"42", "\"x\"", "[1,2]", "null", "a,b", ",", "}"}) {
    EXPECT_EQ(
        problemInLine(line),
        "a.jsonl, line 2: The line is no JSON object. Write every case as an object like {\"id\": 1} in a line of "
        "its own.")
        << line;
  }
}

TEST(JsonLinesProblem, IsWhatIsNoJson) {
  const std::string noValue = std::string(
                                  "a.jsonl, line 2: The line is no sound JSON: what stands behind \"a\" is no "
                                  "value.") +
                              correct;
  for (const char* const value : {"01", "+1", ".5", "5.", "1e", "-", "1.e5", "0x1", "NaN", "Infinity", "tru", "nulL",
                                  "'x'", "[1,,2]", "[1,2", "{\"b\":tru}", "[01]", "[\"x\" 1]"}) {
    EXPECT_EQ(problemInLine(fmt::format("{{\"a\":{}}}", value)), noValue) << value;
  }
  const std::string structure = std::string(
                                    "a.jsonl, line 2: The line is no sound JSON: a comma, a colon, a quote or a "
                                    "bracket is missing or too much.") +
                                correct;
  for (const char* const line : {"{\"a\":1 \"b\":2}", "{\"a\":1,}", "{a:1}", "{\"a\" 1}", "{,}", "{\"a\":\"b\"c}"}) {
    EXPECT_EQ(problemInLine(line), structure) << line;
  }
}

TEST(JsonLinesProblem, IsAnObjectThatIsNotClosedOrThatSomethingFollows) {
  const std::string said = std::string(
                               "a.jsonl, line 2: The line is no sound JSON: the object is not closed, or "
                               "something follows it.") +
                           correct;
  for (const char* const line : {"{", "{\"a\":1", "{\"a\":1} x", "{\"a\":1}{\"a\":2}", "{\"a\":1}}"}) {
    EXPECT_EQ(problemInLine(line), said) << line;
  }
}

TEST(JsonLinesProblem, IsALastLineThatWasCutOff) {
  EXPECT_EQ(problem("{\"a\":1}\n{\"a\":\"x"),
            std::string("a.jsonl, line 2: The line is no sound JSON: a text in it is never closed.") + correct);
}

TEST(JsonLinesProblem, IsAKeyThatStandsTwice) {
  for (const char* const line :
       {"{\"a\":1,\"b\":2,\"a\":3}", "{\"a\":1,\"\\u0061\":null}", "{\"x\":1,\"a\":2,\"a\":2}"}) {
    EXPECT_EQ(problemInLine(line), "a.jsonl, line 2: The key \"a\" stands twice in the line. Leave one of them out.");
  }
}

TEST(JsonLinesProblem, IsAByteThatIsNoUtf8) {
  for (const char* const line : {"{\"a\":\"\xFF\"}", "{\"\xFF\":1}", "\xFF"}) {
    EXPECT_EQ(problemInLine(line), "a.jsonl, line 2: The byte 0xFF is no UTF-8. Save the file as UTF-8.");
  }
  EXPECT_EQ(problem(std::string_view("\xFF\xFE{\0", 4)), "a.jsonl, line 1: This is UTF-16. Save the file as UTF-8.");
}

TEST(JsonLinesProblem, IsAnEscapeThatStandsForNoCharacter) {
  for (const char* const text : {"\\q", "\\u12", "\\ud800", "\\udc00", "\\ud800\\u0041", "x\\u0000y"}) {
    EXPECT_EQ(
        problemInLine(fmt::format("{{\"a\":\"{}\"}}", text)),
        "a.jsonl, line 2: An escape in the text of \"a\" stands for no character, or for NUL. Write the characters "
        "themselves, and leave NUL out.")
        << text;
    EXPECT_EQ(
        problemInLine(fmt::format("{{\"{}\":1}}", text)),
        "a.jsonl, line 2: An escape in a key stands for no character, or for NUL. Write the characters themselves, "
        "and leave NUL out.")
        << text;
  }
}

TEST(JsonLinesProblem, IsAControlCharacterInAText) {
  const std::string said = std::string(
                               "a.jsonl, line 2: The line is no sound JSON: a control character or a NUL byte "
                               "stands in it as it is.") +
                           correct;
  EXPECT_EQ(problemInLine("{\"a\":\"x\ty\"}"), said);
  EXPECT_EQ(problemInLine(std::string_view("{\"a\":\"x\0y\"}", 11)), said);
}

TEST(JsonLinesProblem, IsNestingWithoutEnd) {
  const std::string open(1'000'000, '[');
  EXPECT_EQ(
      problemInLine(fmt::format("{{\"a\":{}{}}}", open, std::string(open.size(), ']'))),
      "a.jsonl, line 2: The value of \"a\" is nested deeper than 1000 levels. Write the data with fewer objects and "
      "lists inside each other.");
  EXPECT_NE(problemInLine("{\"a\":" + open), "opened");
}

TEST(JsonLinesProblem, IsALineThatIsLongerThanARecordMayBe) {
  std::string line = "{\"a\":\"";
  line.resize(CellBatch::mostBytes + (std::size_t{1} << 20), 'x');
  EXPECT_EQ(
      problemInLine(line),
      "a.jsonl, line 2: The line is longer than 256 MiB. Write every object in a line of its own; is this a file of "
      "JSON lines?");
}

TEST(JsonLinesProblem, IsAFileThatNamesNoColumn) {
  for (const char* const text : {"", "\n\n", "{}\n{}\n"}) {
    EXPECT_EQ(problem(text),
              "a.jsonl: No line of the file has a key, and these have to name the columns. Name another file.");
  }
}

TEST(JsonLinesProblem, IsToldOfADeclaredColumnWithItsLine) {
  const TestFolder folder;
  folder.write("a.schema.json", R"({"fields": [{"name": "a", "type": "integer"}]})");
  EXPECT_EQ(problemOf(folder, folder.write("a.jsonl", "{\"a\":1}\n\n{\"a\":1.5}\n")).substr(0, 60),
            "a.jsonl, line 3: Column \"a\" is declared as an integer, and \"");
}

}  // namespace
}  // namespace workbench::data
