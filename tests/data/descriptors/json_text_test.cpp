// JSON files are read strictly: what is refused, and at which place.
#include "workbench/data/descriptors/json_text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/data/descriptors/descriptor_fixture.h"

namespace workbench::data {
namespace {

using namespace std::string_literals;

std::string read(std::string_view text) {
  const Outcome<JsonDocument> document = jsonDocument(text, "a.json");
  return document ? document->root->dump() : document.problem().text();
}

TEST(JsonText, KeepsKeysInTheirOrder) {
  EXPECT_EQ(read(R"( {"z": 1, "a": [true, null, "x"], "m": {}} )"), R"({"z":1,"a":[true,null,"x"],"m":{}})");
}

TEST(JsonText, DropsOneByteOrderMark) {
  EXPECT_EQ(read("\xEF\xBB\xBF{}"), "{}");
  EXPECT_EQ(read("\xEF\xBB\xBF\xEF\xBB\xBF{}"),
            "a.json, line 1, column 2: This is no valid JSON: invalid literal. Correct it there.");
}

TEST(JsonText, RefusesAKeyThatStandsTwice) {
  EXPECT_EQ(read(R"({"a": 1, "b": 2, "a": 3})"),
            "a.json, /a: The key \"a\" stands twice in the same object. Remove one of the two.");
  EXPECT_EQ(read(R"({"list": [0, {"x/y": 1, "x\u002fy": 2}]})"),
            "a.json, /list/1/x~1y: The key \"x/y\" stands twice in the same object. Remove one of the two.");
  EXPECT_EQ(read(R"([{"a": 1}, {"a": 1}, {"A": 1, "a": 2}])"), R"([{"a":1},{"a":1},{"A":1,"a":2}])");
}

TEST(JsonText, SaysWhatIsNoJsonAndWhere) {
  EXPECT_EQ(read("{\n  \"a\": 1,\n  \"b\" 2\n}"),
            "a.json, line 3, column 7: This is no valid JSON: unexpected number literal. Correct it there.");
  EXPECT_EQ(read(""), "a.json, line 1, column 1: This is no valid JSON: unexpected end of input. Correct it there.");
  EXPECT_EQ(read("{\"größe\": x}"),
            "a.json, line 1, column 11: This is no valid JSON: invalid literal. Correct it there.");
  EXPECT_EQ(read("[1,]"), "a.json, line 1, column 4: This is no valid JSON: unexpected ']'. Correct it there.");
  EXPECT_EQ(read("// no\n{}"), "a.json, line 1, column 1: This is no valid JSON: invalid literal. Correct it there.");
}

TEST(JsonText, RefusesTextBehindItsEnd) {
  EXPECT_EQ(read("{} {}"), "a.json, line 1, column 4: This is no valid JSON: unexpected '{'. Correct it there.");
  EXPECT_EQ(read("{}\0{}"s), "a.json, line 1, column 3: A NUL byte stands in the text. Remove it.");
}

TEST(JsonText, RefusesBytesThatAreNoUtf8) {
  EXPECT_EQ(read("{\n\"K\xF6ln\": 1}"), "a.json, line 2, column 3: The byte 0xF6 is no UTF-8. Save the file as UTF-8.");
  EXPECT_EQ(read("\xFF\xFE{\0}\0"s), "a.json: This is UTF-16. Save the file as UTF-8.");
  EXPECT_TRUE(beginsWith(read(R"(["\ud800"])"), "a.json, line 1, column 9: This is no valid JSON: in"));
}

TEST(JsonText, RefusesNumbersBeyondTheRangeOfDoubles) {
  EXPECT_EQ(read("[\n1e400]"),
            "a.json, line 2, column 5: The number is beyond the range of double numbers. Correct it there.");
  EXPECT_TRUE(beginsWith(read("[-1e400]"), "a.json, line 1, column 7: "));
}

TEST(JsonText, RemembersNumbersThatNoDoubleHolds) {
  const auto rounded = [](std::string_view text) {
    const Outcome<JsonDocument> document = jsonDocument(text, "");
    return document ? document->roundedNumbers.size() : 99;
  };
  EXPECT_EQ(rounded("[0.1, 0.10000000000000001, 1e5, 5e-324, 1.7976931348623157e308, -0.0, 0e9]"), 0U);
  EXPECT_EQ(rounded("[123456789012345678901234567890]"), 1U);
  EXPECT_EQ(rounded("[0.1000000000000000055511151231257827]"), 1U);
  EXPECT_EQ(rounded("[9007199254740993.0]"), 1U);
  EXPECT_EQ(rounded("[1e-400]"), 1U);
}

TEST(JsonText, LimitsNesting) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_EQ(read(nested(deepestJson)), nested(deepestJson));
  std::string pointer;
  for (std::size_t depth = 0; depth < deepestJson; ++depth) pointer += "/0";
  EXPECT_EQ(read(nested(deepestJson + 1)),
            "a.json, " + pointer +
                ": More than 64 objects and lists stand inside each other. No descriptor is so deep; correct it.");
}

TEST(JsonText, EscapesPointers) {
  EXPECT_EQ(pointerTo("/a", "b/c~d"), "/a/b~1c~0d");
  EXPECT_EQ(pointerTo("/a", 3), "/a/3");
}

}  // namespace
}  // namespace workbench::data
