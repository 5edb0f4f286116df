#include "workbench/output/display_text.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/text/any_text.h"

namespace workbench::output {
namespace {

using Lines = std::vector<std::string>;

TEST(DisplayText, CountsTheColumnsThatATextTakes) {
  EXPECT_EQ(displayWidth(""), 0);
  EXPECT_EQ(displayWidth("abc"), 3);
  EXPECT_EQ(displayWidth("Zoë"), 3);
  EXPECT_EQ(displayWidth("Zoe\u0308"), 3);
  EXPECT_EQ(displayWidth("日本"), 4);
  EXPECT_EQ(displayWidth("한"), 2);
  EXPECT_EQ(displayWidth("ﾊﾟ"), 2);
  EXPECT_EQ(displayWidth("👨‍👩‍👧"), 2);
  EXPECT_EQ(displayWidth("❤️"), 2);
  EXPECT_EQ(displayWidth("🇧🇪"), 2);
  EXPECT_EQ(displayWidth("\xFF"), 1);
}

TEST(DisplayText, MakesVisibleWhatCouldActOnATerminal) {
  EXPECT_EQ(visible("plain"), "plain");
  EXPECT_EQ(visible("\x1b[31mred"), "\u241B[31mred");
  EXPECT_EQ(visible(std::string_view("a\tb\0c\x7f", 6)), "a\u2409b\u2400c\u2421");
  EXPECT_EQ(visible("two\nlines"), "two\nlines");
  EXPECT_EQ(visible("\u0085\u202E\u2028"), "<U+0085><U+202E><U+2028>");
  EXPECT_EQ(visible("Gr\xFC\xDF"), "Gr\uFFFD\uFFFD");
}

TEST(DisplayText, ShortensALineWithoutTakingACharacterApart) {
  EXPECT_EQ(shortened("short", 5), "short");
  EXPECT_EQ(shortened("a longer line", 9), "a longer…");
  EXPECT_EQ(shortened("日本語", 4), "日…");
  EXPECT_EQ(shortened("e\u0301e\u0301e\u0301", 2), "e\u0301…");
}

TEST(DisplayText, WrapsAtBlanksAndWithinWordsThatAreTooLong) {
  EXPECT_EQ(wrapped("the quick brown fox", 10), (Lines{"the quick", "brown fox"}));
  EXPECT_EQ(wrapped("one\n\ntwo", 10), (Lines{"one", "", "two"}));
  EXPECT_EQ(wrapped("abcdefghij", 4), (Lines{"abcd", "efgh", "ij"}));
  EXPECT_EQ(wrapped("日本語日本語", 4), (Lines{"日本", "語日", "本語"}));
  EXPECT_EQ(wrapped("", 4), (Lines{""}));
}

TEST(DisplayText, NeverBreaksANumber) {
  EXPECT_EQ(wrapped("(1) -1234567.25", 6), (Lines{"(1)", "-1234567.25"}));
  EXPECT_EQ(wrapped("1,234,567.50", 5), (Lines{"1,234,567.50"}));
  EXPECT_EQ(wrapped("2026-11-21T15:59:55", 8), (Lines{"2026-11-21T15:59:55"}));
  EXPECT_EQ(wrapped("1e+300 5%", 4), (Lines{"1e+300", "5%"}));
  EXPECT_EQ(widestNumber("(1) 12\n(2) -1234.5"), 7);
  EXPECT_EQ(widestNumber("no number"), 0);
}

RC_GTEST_PROP(DisplayText, WrappedKeepsEverythingButBlanks, ()) {
  const std::string text = visible(*text::anyText());
  const int width = *rc::gen::inRange(1, 20);
  const auto withoutBlanks = [](std::string all) {
    std::erase_if(all, [](char character) { return character == ' ' || character == '\n'; });
    return all;
  };
  std::string joined;
  for (const std::string& line : wrapped(text, width)) joined += line;
  RC_ASSERT(withoutBlanks(joined) == withoutBlanks(text));
}

RC_GTEST_PROP(DisplayText, VisibleHoldsNoControlCharacter, ()) {
  for (const char character : visible(*text::anyText())) {
    RC_ASSERT(static_cast<unsigned char>(character) >= 0x20 || character == '\n');
    RC_ASSERT(character != 0x7f);
  }
}

}  // namespace
}  // namespace workbench::output
