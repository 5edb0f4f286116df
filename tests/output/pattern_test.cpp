#include "workbench/output/pattern.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace workbench::output {
namespace {

using List = std::vector<std::string>;

struct PatternCase {
  std::string pattern;
  std::vector<PatternItem> items;
  std::string shown;
};

TEST(Pattern, ShowsItemsAndListsAndLeavesTheRestAsItStands) {
  const std::vector<PatternCase> cases = {
      {"(1) ^1\n(2) ^2", {"5", "7"}, "(1) 5\n(2) 7"},
      {"^2 before ^1", {"a", "b"}, "b before a"},
      {"^1^1", {"ab"}, "abab"},
      {"^1 - HI, ^2", {"5", "9"}, "5 - HI, 9"},
      {"LO - HI", {}, "LO - HI"},
      {"", {"unused"}, ""},
      {"[%1:, ^1:]1", {List{"A", "B", "C"}}, "A, B, C"},
      {"[%1:, ^1:]1", {List{"A"}}, "A"},
      {"[%1:, ^1:]1", {List{}}, ""},
      {"Not compared: [%1:, ^1:]1.", {List{"A", "B"}}, "Not compared: A, B."},
      {"[<%1>:|^1|:]2", {"x", List{"A", "B", "C"}}, "<A>|B||C|"},
      {"[%1%1:^1^1:]1", {List{"A", "B"}}, "AABB"},
      {"[%1::^1:]1", {List{"A", "B"}}, "A:B"},
      {"^12", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "twelve"}, "twelve"},
      // An item is never read as a pattern.
      {"^1 ^2", {"^2", "[%1:, ^1:]1"}, "^2 [%1:, ^1:]1"},
      {"[%1:, ^1:]1", {List{"^1", "%1"}}, "^1, %1"},
      // What cannot be filled stands as it is.
      {"^3 and ^1", {"a", "b"}, "^3 and a"},
      {"^0", {"a"}, "^0"},
      {"^", {"a"}, "^"},
      {"2^x", {"a"}, "2^x"},
      {"100%1", {"a"}, "100%1"},
      {"^99999999999999999999", {"a"}, "^99999999999999999999"},
      {"[%1:, ^1:]", {List{"A"}}, "[%1:, ^1:]"},
      {"[%1:, ^1:]2", {List{"A"}}, "[%1:, ^1:]2"},
      {"[%1, ^1]1", {"a"}, "[%1, a]1"},
      {"[%1:, ^1", {List{"A"}}, "[%1:, ^1"},
      {"[%1:, ^1:]1", {"no list"}, "[%1:, no list:]1"},
      {"^1", {List{"A", "B"}}, "^1"},
  };
  for (const PatternCase& one : cases) EXPECT_EQ(filledPattern(one.pattern, one.items), one.shown) << one.pattern;
}

RC_GTEST_PROP(Pattern, WithoutMarksIsShownAsItStands, (const std::string& pattern)) {
  RC_PRE(pattern.find_first_of("^[") == std::string::npos);
  RC_ASSERT(filledPattern(pattern, {PatternItem("x")}) == pattern);
}

RC_GTEST_PROP(Pattern, TakesAnyText, ()) {
  const auto pieces = *rc::gen::container<std::vector<std::string>>(
      rc::gen::element<std::string>("^", "[", "]", ":", "%", "1", "2", "0", ":]", "^1", "%1", "a", "\xFF"));
  std::string pattern;
  for (const std::string& piece : pieces) pattern += piece;
  filledPattern(pattern, {PatternItem("x"), PatternItem(List{"A", "B"})});
}

}  // namespace
}  // namespace workbench::output
