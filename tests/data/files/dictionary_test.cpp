#include "workbench/data/dictionary.h"

#include <gtest/gtest.h>

namespace workbench::data {
namespace {

Variable named(std::string name, std::int32_t width = 0) {
  Variable variable;
  variable.name = std::move(name);
  variable.width = width;
  return variable;
}

TEST(Dictionary, FindsVariablesWithoutRegardToCase) {
  Dictionary dictionary;
  EXPECT_EQ(dictionary.add(named("Alter")), 0);
  EXPECT_EQ(dictionary.add(named("größe")), 1);
  EXPECT_EQ(dictionary.find("ALTER"), 0);
  EXPECT_EQ(dictionary.find("GRÖßE"), 1);
  EXPECT_EQ(dictionary.find("groesse"), -1);
  EXPECT_EQ(dictionary.find(""), -1);
}

TEST(Dictionary, MakesGoodNamesOfNamesThatAreTaken) {
  Dictionary dictionary;
  EXPECT_EQ(dictionary.goodName("CasesCompare"), "CasesCompare");
  dictionary.add(named("casescompare"));
  EXPECT_EQ(dictionary.goodName("CasesCompare"), "CasesCompare_1");
  dictionary.add(named("CASESCOMPARE_1"));
  EXPECT_EQ(dictionary.goodName("CasesCompare"), "CasesCompare_2");
}

TEST(Dictionary, MakesGoodNamesOfCharactersThatNoNameHolds) {
  const Dictionary dictionary;
  EXPECT_EQ(dictionary.goodName("a\tb\nc"), "a_b_c");
  EXPECT_EQ(dictionary.goodName("größe in %"), "größe in %");
  EXPECT_EQ(dictionary.goodName("a\xFFz"), "a_z");
  EXPECT_EQ(dictionary.goodName("a\xE2\x80\xA8z"), "a_z") << "a line separator";
  EXPECT_EQ(dictionary.goodName(""), "_");
}

TEST(CaseLayout, GivesStringsTheSlotsThatTheirWidthNeeds) {
  Dictionary dictionary;
  dictionary.add(named("a"));
  dictionary.add(named("b", 8));
  dictionary.add(named("c", 9));
  dictionary.add(named("d"));
  const CaseLayout layout(dictionary);
  EXPECT_EQ(layout.slotOfVariable, (std::vector<std::uint32_t>{0, 1, 2, 4}));
  EXPECT_EQ(layout.caseSlots, 5U);
}

}  // namespace
}  // namespace workbench::data
