#include <gtest/gtest.h>

#include "host/parser.h"

namespace {

using Kind = TokenInfoObj::Kind;

TokenInfoObj word(std::string text) { return {Kind::word, std::move(text), 1, 1}; }
TokenInfoObj quoted(std::string text) { return {Kind::quotedString, std::move(text), 1, 1}; }
TokenInfoObj number(std::string text) { return {Kind::number, std::move(text), 1, 1}; }

TEST(Values, AreComparedWithoutRegardToCase) {
  EXPECT_TRUE(ParamObj("K", {word("yes")}).isStringValueCase("YES"));
  EXPECT_TRUE(ParamObj("K", {quoted("Yes")}).isStringValueCase("YES"));
  EXPECT_FALSE(ParamObj("K", {word("yes"), word("yes")}).isStringValueCase("YES"));
  EXPECT_FALSE(ParamObj("K", {}).isStringValueCase(""));
}

TEST(Values, GiveTheOneValueAndWhetherItWasQuoted) {
  std::string value = "before";
  bool isQuoted = true;
  EXPECT_TRUE(ParamObj("K", {word("a")}).getStringOrLiteral(value, isQuoted));
  EXPECT_EQ(value, "a");
  EXPECT_FALSE(isQuoted);
  EXPECT_TRUE(ParamObj("K", {quoted("")}).getStringOrLiteral(value, isQuoted));
  EXPECT_EQ(value, "");
  EXPECT_TRUE(isQuoted);
}

TEST(Values, ChangeNothingWhenThereIsNotExactlyOne) {
  std::string value = "before";
  bool isQuoted = true;
  EXPECT_FALSE(ParamObj("K", {}).getStringOrLiteral(value, isQuoted));
  EXPECT_FALSE(ParamObj("K", {word("a"), word("b")}).getStringOrLiteral(value, isQuoted));
  EXPECT_EQ(value, "before");
  EXPECT_TRUE(isQuoted);
}

TEST(Values, AreALiteralOnlyWhenTheyAreQuoted) {
  std::string value = "before";
  EXPECT_FALSE(ParamObj("K", {word("NONE")}).getLiteral(value));
  EXPECT_EQ(value, "before");
  EXPECT_TRUE(ParamObj("K", {quoted("secret")}).getLiteral(value));
  EXPECT_EQ(value, "secret");
}

TEST(Values, GiveAStringTokenOrNothing) {
  EXPECT_EQ(ParamObj("K", {word("a")}).getStringToken(), "a");
  EXPECT_EQ(ParamObj("K", {}).getStringToken(), "");
}

TEST(Values, GiveUpperCaseWords) {
  std::vector<std::string> words = {"before"};
  EXPECT_FALSE(ParamObj("K", {}).getUpStringList(words));
  EXPECT_FALSE(ParamObj("K", {word("a"), number("5")}).getUpStringList(words));
  EXPECT_EQ(words, std::vector<std::string>{"before"});
  EXPECT_TRUE(ParamObj("K", {word("label"), word("größe")}).getUpStringList(words));
  EXPECT_EQ(words, (std::vector<std::string>{"LABEL", "GRÖSSE"}));
}

TEST(Values, GiveAWholeNumber) {
  std::int32_t value = 7;
  EXPECT_FALSE(ParamObj("K", {number("1.5")}).getIntegerValue(value));
  EXPECT_FALSE(ParamObj("K", {number("2147483648")}).getIntegerValue(value));
  EXPECT_FALSE(ParamObj("K", {word("NONE")}).getIntegerValue(value));
  EXPECT_FALSE(ParamObj("K", {quoted("5")}).getIntegerValue(value));
  EXPECT_EQ(value, 7);
  EXPECT_TRUE(ParamObj("K", {number("+50")}).getIntegerValue(value));
  EXPECT_EQ(value, 50);
  EXPECT_TRUE(ParamObj("K", {number("-2147483648")}).getIntegerValue(value));
  EXPECT_EQ(value, -2147483647 - 1);
}

}  // namespace
