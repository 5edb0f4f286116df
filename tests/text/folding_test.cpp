#include "workbench/text/folding.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/text/any_text.h"

namespace workbench::text {
namespace {

TEST(FoldedName, LosesTheDifferenceBetweenUpperAndLowerCase) {
  EXPECT_EQ(foldedName("Income_2020"), "income_2020");
  EXPECT_EQ(foldedName("ÄRGER"), foldedName("ärger"));
  EXPECT_EQ(foldedName("ΣΙΓΜΑΣ"), foldedName("σιγμας"));
}

TEST(FoldedName, FoldsAKelvinSignToAnAsciiLetter) { EXPECT_EQ(foldedName("\u212A"), "k"); }

TEST(FoldedName, MakesNoCharacterTwo) {
  EXPECT_EQ(foldedName("straße"), "straße");
  EXPECT_FALSE(sameName("straße", "STRASSE"));
}

TEST(FoldedName, KeepsBytesThatAreNoCharacters) {
  EXPECT_EQ(foldedName("A\xFF"), "a\xFF");
  EXPECT_FALSE(sameName("a\x80", "a\x81"));
}

RC_GTEST_PROP(FoldedName, OfAFoldedNameIsThatName, ()) {
  const std::string folded = foldedName(*anyText());
  RC_ASSERT(foldedName(folded) == folded);
}

}  // namespace
}  // namespace workbench::text
