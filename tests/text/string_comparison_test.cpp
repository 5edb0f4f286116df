#include "workbench/text/string_comparison.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "host/messages.h"
#include "host/runtime.h"
#include "tests/text/any_text.h"
#include "workbench/runtime/current_run.h"
#include "workbench/text/folding.h"

namespace workbench::text {
namespace {

using Comparison = int (*)(std::string_view, std::string_view);

int sign(int number) { return (number > 0) - (number < 0); }

// Sets the collation for one test.
class Collation {
 public:
  explicit Collation(std::string locale) { currentRun().settings.collation = std::move(locale); }
  Collation(const Collation&) = delete;
  Collation& operator=(const Collation&) = delete;
  ~Collation() { currentRun().settings.collation.clear(); }
};

TEST(ExactComparison, OrdersByUnsignedBytesAndThenByLength) {
  EXPECT_EQ(VRIXMBstrcmp_A("abc", "abc"), 0);
  EXPECT_LT(VRIXMBstrcmp_A("abc", "abd"), 0);
  EXPECT_LT(VRIXMBstrcmp_A("z", "é"), 0);
  EXPECT_LT(VRIXMBstrcmp_A("ab", "abc"), 0);
  EXPECT_NE(VRIXMBstrcmp_A("abc", "ABC"), 0);
}

TEST(ExactComparison, TakesANulForAByteLikeAnyOther) {
  EXPECT_NE(VRIXMBstrcmp_A(std::string_view("a\0b", 3), std::string_view("a\0c", 3)), 0);
}

TEST(CaselessComparison, LeavesOutCaseOfEveryScript) {
  EXPECT_EQ(VRIXMBstricmp_A("ALL", "all"), 0);
  EXPECT_EQ(VRIXMBstricmp_A("Größe", "GRÖßE"), 0);
  EXPECT_EQ(VRIXMBstricmp_A("kelvin", "\u212Aelvin"), 0);
  EXPECT_NE(VRIXMBstricmp_A("all", "al"), 0);
  EXPECT_LT(VRIXMBstricmp_A("abc", "ABD"), 0);
}

TEST(TrailingBlanks, AreLeftOutHoweverManyThereAre) {
  for (std::size_t blanks = 0; blanks < 40; ++blanks) {
    const std::string padding(blanks, ' ');
    EXPECT_EQ(withoutTrailingBlanks(padding), "") << blanks;
    EXPECT_EQ(withoutTrailingBlanks("x" + padding), "x") << blanks;
    EXPECT_EQ(withoutTrailingBlanks(padding + "long text" + padding), padding + "long text") << blanks;
    EXPECT_EQ(VRIXMBstrcoll_A("a" + padding, "a"), 0) << blanks;
    EXPECT_LT(VRIXMBstrcoll_A("a" + padding, "a!"), 0) << blanks;
    EXPECT_GT(VRIXMBstrcoll_A("a\t" + padding, "a "), 0) << "a tab lies below a blank, but no text ends in one";
  }
}

TEST(CaseValueComparison, IgnoresBlanksAtTheEndAndNowhereElse) {
  EXPECT_EQ(VRIXMBstrnbcmp_A("Ghent   ", "Ghent"), 0);
  EXPECT_EQ(VRIXMBstrnbcmp_A("    ", ""), 0);
  EXPECT_NE(VRIXMBstrnbcmp_A(" Ghent", "Ghent"), 0);
  EXPECT_NE(VRIXMBstrnbcmp_A("Ghent\t", "Ghent"), 0);
}

TEST(CollatedComparison, IsTheOrderOfTheBytesUnlessALocaleIsSet) {
  EXPECT_LT(VRIXMBstrcoll_A("Z", "a"), 0);
  EXPECT_LT(VRIXMBstrcoll_A("z", "ä"), 0);
  EXPECT_EQ(VRIXMBstrcoll_A("id  ", "id"), 0);
}

TEST(CollatedComparison, FollowsTheLocaleThatIsSet) {
  {
    const Collation german("de");
    EXPECT_LT(VRIXMBstrcoll_A("ä", "z"), 0);
    EXPECT_LT(VRIXMBstrcoll_A("a", "Z"), 0);
  }
  const Collation swedish("sv_SE");
  EXPECT_GT(VRIXMBstrcoll_A("ä", "z"), 0);
}

TEST(CollatedComparison, NeverTakesDifferentTextsForEqual) {
  const Collation german("de");
  EXPECT_NE(VRIXMBstrcoll_A("é", "e\u0301"), 0);
  EXPECT_NE(VRIXMBstrcoll_A(std::string_view("a\0", 2), "a"), 0);
  EXPECT_EQ(VRIXMBstrcoll_A("é  ", "é"), 0);
}

TEST(CollatedComparison, ThrowsWhenTheCollationIsNone) {
  const Collation unknown("nosuchlocale");
  EXPECT_THROW(VRIXMBstrcoll_A("a", "b"), ErrorText);
}

TEST(Collation, OfALanguageWithAnOrderIsAccepted) {
  for (const char* locale : {"", "de", "sv_SE", "de-u-co-phonebk", "en-GB"}) {
    EXPECT_TRUE(static_cast<bool>(checkCollation(locale))) << locale;
  }
  for (const char* locale : {"nosuchlocale", "binary?", "q"}) {
    EXPECT_FALSE(static_cast<bool>(checkCollation(locale))) << locale;
  }
}

void assertTotalOrder(Comparison compare) {
  const std::string first = *anyText();
  const std::string second = *anyText();
  const std::string third = *anyText();
  RC_ASSERT(compare(first, first) == 0);
  RC_ASSERT(sign(compare(first, second)) == -sign(compare(second, first)));
  if (compare(first, second) <= 0 && compare(second, third) <= 0) RC_ASSERT(compare(first, third) <= 0);
  if (compare(first, second) == 0) RC_ASSERT(sign(compare(first, third)) == sign(compare(second, third)));
}

RC_GTEST_PROP(ExactComparison, IsATotalOrder, ()) { assertTotalOrder(VRIXMBstrcmp_A); }
RC_GTEST_PROP(CaselessComparison, IsATotalOrder, ()) { assertTotalOrder(VRIXMBstricmp_A); }
RC_GTEST_PROP(CaseValueComparison, IsATotalOrder, ()) { assertTotalOrder(VRIXMBstrnbcmp_A); }
RC_GTEST_PROP(CollatedComparison, IsATotalOrderWithoutALocale, ()) { assertTotalOrder(VRIXMBstrcoll_A); }
RC_GTEST_PROP(CollatedComparison, IsATotalOrderInALocale, ()) {
  const Collation locale(*rc::gen::element<std::string>("de", "sv", "ja", "cs", "th"));
  assertTotalOrder(VRIXMBstrcoll_A);
}

RC_GTEST_PROP(CaselessComparison, EqualsComparingFoldedNames, ()) {
  const std::string left = *anyText();
  const std::string right = *anyText();
  RC_ASSERT(sign(VRIXMBstricmp_A(left, right)) == sign(VRIXMBstrcmp_A(foldedName(left), foldedName(right))));
}

RC_GTEST_PROP(CollationKey, HasTheOrderOfTheCollatedComparison, ()) {
  const Collation locale(*rc::gen::element<std::string>("", "de", "sv", "ja", "cs", "th"));
  const std::string left = *anyText();
  const std::string right = *anyText();
  RC_ASSERT(sign(collationKey(left).compare(collationKey(right))) == sign(VRIXMBstrcoll_A(left, right)));
}

}  // namespace
}  // namespace workbench::text
