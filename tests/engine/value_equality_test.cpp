// Value equality, value by value.
#include "engine/value_equality.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string_view>

namespace compdatas {
namespace {

bool textsAgree(std::string_view left, std::string_view right) {
  const bool agree = textsEqual(left.data(), left.size(), right.data(), right.size());
  EXPECT_EQ(agree, textsEqual(right.data(), right.size(), left.data(), left.size())) << left << "|" << right;
  return agree;
}

TEST(TextEquality, ComparesTheShorterWidthAndWantsTheRestBlank) {
  EXPECT_TRUE(textsAgree("AB", "AB"));
  EXPECT_TRUE(textsAgree("AB", "AB  "));
  EXPECT_FALSE(textsAgree("AB", "ABC "));
  EXPECT_FALSE(textsAgree("AB", "AB C"));
  EXPECT_FALSE(textsAgree("AB", "AC  "));
}

TEST(TextEquality, IgnoresBlanksAtTheEndOfTheSharedPart) {
  EXPECT_TRUE(textsAgree("A  ", "A  "));
  EXPECT_TRUE(textsAgree("   ", " "));
  EXPECT_FALSE(textsAgree(" A ", "A  "));
  EXPECT_FALSE(textsAgree("A  ", "A  B"));  // blank in the shared part, and not beyond it
}

TEST(TextEquality, TakesNoOtherByteForABlank) {
  EXPECT_FALSE(textsAgree("AB", std::string_view("AB\0\0", 4)));
  EXPECT_FALSE(textsAgree("AB", "AB\t "));
  EXPECT_FALSE(textsAgree(std::string_view("A\0", 2), "A "));
}

TEST(NumberEquality, IsEqualityOfBitsUnlessFuzzy) {
  EXPECT_TRUE(numbersEqual(1.5, 1.5, false));
  EXPECT_FALSE(numbersEqual(0.0, -0.0, false));
  EXPECT_TRUE(numbersEqual(0.0, -0.0, true));
  EXPECT_FALSE(numbersEqual(0.3, 0.1 + 0.2, false));
  EXPECT_TRUE(numbersEqual(0.3, 0.1 + 0.2, true));
  EXPECT_FALSE(numbersEqual(1, 2, true));
}

TEST(NumberEquality, NeverTakesSystemMissingForNear) {
  const double beside = std::nextafter(-DBL_MAX, 0);
  EXPECT_TRUE(numbersEqual(-DBL_MAX, -DBL_MAX, false));
  EXPECT_FALSE(numbersEqual(-DBL_MAX, beside, true));
  EXPECT_FALSE(numbersEqual(beside, -DBL_MAX, true));
  EXPECT_TRUE(numbersEqual(beside, std::nextafter(beside, 0), true));
}

}  // namespace
}  // namespace compdatas
