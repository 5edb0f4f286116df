#include "workbench/text/nearest_word.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace workbench::text {
namespace {

const std::vector<std::string> words = {"VARPROPERTIES", "CASETABLE", "TABLELIMIT"};

TEST(NearestWord, IsTheOneWithTheFewestEdits) {
  EXPECT_EQ(nearestWord("TABELLIMIT", words), "TABLELIMIT");
  EXPECT_EQ(nearestWord("castable", words), "CASETABLE");
  EXPECT_EQ(nearestWord("VARPROPRTIES", words), "VARPROPERTIES");
}

TEST(NearestWord, MayBeOneThatWasCutShort) { EXPECT_EQ(nearestWord("varprop", words), "VARPROPERTIES"); }

TEST(NearestWord, IsNoneWhenNothingIsNear) {
  EXPECT_EQ(nearestWord("FOO", words), std::nullopt);
  EXPECT_EQ(nearestWord("", words), std::nullopt);
  EXPECT_EQ(nearestWord("X", {"Y"}), std::nullopt);
}

TEST(EditDistance, CountsAnExchangeOfNeighboursOnce) {
  EXPECT_EQ(editDistance("LABLE", "LABEL", 3), 1U);
  EXPECT_EQ(editDistance("größe", "GROSSE", 9), 3U);
  EXPECT_EQ(editDistance("abc", "xyz", 1), 2U);
}

RC_GTEST_PROP(EditDistance, IsSymmetricAndZeroOnlyForTheSameWord, (const std::string& left, const std::string& right)) {
  RC_ASSERT(editDistance(left, right, 50) == editDistance(right, left, 50));
  RC_ASSERT(editDistance(left, left, 50) == 0U);
}

}  // namespace
}  // namespace workbench::text
