#include "workbench/text/wording.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "host/messages.h"
#include "workbench/runtime/current_run.h"

namespace workbench::text {
namespace {

std::unique_ptr<Wording> loaded(std::string_view language) {
  Outcome<std::unique_ptr<Wording>> wording = Wording::load(language);
  EXPECT_TRUE(static_cast<bool>(wording)) << language;
  return std::move(*wording);
}

// The items that a pattern shows: ^1, ^2, ... and the numbers of its lists.
std::set<std::string> itemsOf(const std::string& pattern) {
  std::set<std::string> items;
  bool isInList = false;
  for (std::size_t at = 0; at + 1 < pattern.size(); ++at) {
    if (pattern[at] == '[') isInList = true;
    if (pattern[at] == ']' && isInList) {
      items.insert(std::string("list ") + pattern[at + 1]);
      isInList = false;
    }
    const bool isDigit = pattern[at + 1] >= '1' && pattern[at + 1] <= '9';
    if (pattern[at] == '^' && isDigit && !isInList) items.insert(pattern.substr(at, 2));
  }
  return items;
}

TEST(Wording, GivesTheTextBehindAKey) {
  EXPECT_EQ(loaded("en")->resolve("CD_MatchedSummaryTableName"), "Matched Summary");
  EXPECT_EQ(loaded("en")->resolve("The active dataset is not sort..."),
            "The active dataset is not sorted in ascending order of the case ID variables.");
  EXPECT_EQ(loaded("de")->resolve("CD_Cases"), "Fälle");
}

TEST(Wording, ReturnsAKeyWithoutWordingAsItIs) {
  EXPECT_EQ(loaded("en")->resolve("CD_NoSuchKey"), "CD_NoSuchKey");
  EXPECT_FALSE(loaded("en")->has("CD_NoSuchKey"));
}

TEST(Wording, IsFoundForALanguageTagAndForTheNameOfALocale) {
  EXPECT_EQ(loaded("de-AT")->language(), "de");
  EXPECT_EQ(loaded("de_DE.UTF-8")->language(), "de");
  EXPECT_EQ(loaded("C")->language(), "en");
  EXPECT_EQ(loaded("C.UTF-8")->language(), "en");
  EXPECT_EQ(loaded("")->language(), "en");
}

TEST(Wording, OfAnUnknownLanguageIsAProblemThatListsTheKnownOnes) {
  const auto wording = Wording::load("tlh");
  ASSERT_FALSE(static_cast<bool>(wording));
  EXPECT_EQ(wording.problem().text(), "There is no wording for the language \"tlh\". Choose one of these: de, en.");
}

TEST(Wording, HasTheTextsOfTheFlagVariable) {
  const auto english = loaded("en");
  EXPECT_EQ(english->catalogText("vrix.err", 8020), "Mismatched");
  EXPECT_EQ(english->catalogText("vrix.err", 8021), "Matched");
  for (const int number : {8020, 8021, 8022, 8023}) {
    for (const std::string& language : Wording::languages()) {
      EXPECT_TRUE(loaded(language)->catalogText("vrix.err", number)) << language << number;
    }
  }
  EXPECT_FALSE(english->catalogText("vrix.err", 8019));
  EXPECT_FALSE(english->catalogText("other.err", 8020));
}

TEST(Wording, HasTheTextOfTheErrorForAMissingSubcommand) {
  EXPECT_EQ(loaded("en")->errorText(7414), "The VARIABLES subcommand is required.");
  EXPECT_TRUE(loaded("de")->errorText(7414));
  EXPECT_FALSE(loaded("en")->errorText(1));
}

TEST(Wording, HasTheSameKeysInEveryLanguage) {
  const std::vector<std::string> keys = loaded("en")->keys();
  ASSERT_GT(keys.size(), 60U);
  for (const std::string& language : Wording::languages()) EXPECT_EQ(loaded(language)->keys(), keys) << language;
}

TEST(Wording, ShowsTheSameItemsInEveryLanguage) {
  const auto english = loaded("en");
  for (const std::string& language : Wording::languages()) {
    const auto wording = loaded(language);
    for (const std::string& key : english->keys()) {
      EXPECT_EQ(itemsOf(wording->resolve(key)), itemsOf(english->resolve(key))) << language << ": " << key;
      EXPECT_FALSE(wording->resolve(key).empty()) << language << ": " << key;
    }
  }
}

// The dictionary's display and the comparison of two, say, name the same properties.
TEST(Wording, HasOneWordForOneThingInEveryLanguage) {
  const auto english = loaded("en");
  for (const std::string& language : Wording::languages()) {
    const auto wording = loaded(language);
    std::map<std::string, std::string> shown;
    for (const std::string& key : english->keys()) {
      if (key == "PD_MissingInBoth") continue;  // two datasets; elsewhere a role
      const auto [there, isFirst] = shown.emplace(english->resolve(key), wording->resolve(key));
      EXPECT_EQ(wording->resolve(key), there->second) << language << ": " << key;
    }
  }
}

TEST(Wording, OfAPatternShowsEveryItemOfItsKey) {
  const auto english = loaded("en");
  for (const std::string& key : english->keys()) {
    for (const std::string& item : itemsOf(key)) {
      EXPECT_TRUE(itemsOf(english->resolve(key)).contains(item)) << key << ": " << item;
    }
  }
  EXPECT_EQ(itemsOf(english->resolve("Displaying the first ...")), (std::set<std::string>{"^1", "^2"}));
}

TEST(Wording, OfAnAbbreviatedKeyBeginsAsTheKeyDoes) {
  const auto english = loaded("en");
  for (const std::string& key : english->keys()) {
    const std::size_t points = key.find("...");
    // One key is misspelled; its wording is not. In quotes points stand for what somebody writes there.
    if (points == std::string::npos || key.starts_with("(1)") || key.find("'...'") != std::string::npos) continue;
    EXPECT_TRUE(english->resolve(key).starts_with(key.substr(0, points))) << key;
    EXPECT_EQ(english->resolve(key).find("..."), std::string::npos) << key;
  }
}

TEST(Sentence, PutsItsItemsWhereTheWordingSays) {
  EXPECT_EQ(sentence("^2 before ^1, not ^3", {"a", "b"}), "b before a, not ^3");
  EXPECT_EQ(sentence("^1", {"^1"}), "^1");
  EXPECT_EQ(sentence("^1 {0} ^2", {"^2{}", "{1}"}), "^2{} {0} {1}");
}

TEST(Sentence, IsInTheLanguageOfTheRun) {
  const auto german = loaded("de");
  currentRun().wording = german.get();
  EXPECT_EQ(sentence("Did you mean ^1?", {"LABEL"}), "Meinten Sie LABEL?");
  currentRun().wording = nullptr;
  EXPECT_EQ(sentence("Did you mean ^1?", {"LABEL"}), "Did you mean LABEL?");
}

TEST(CatalogText, OfAnUnknownNumberNamesBoth) {
  EXPECT_EQ(VrixServerErrorText("vrix.err", 8021).GetText(), "Matched");
  EXPECT_EQ(VrixServerErrorText("vrix.err", 12).GetText(),
            "The message catalog vrix.err has no text with the number 12.");
}

}  // namespace
}  // namespace workbench::text
