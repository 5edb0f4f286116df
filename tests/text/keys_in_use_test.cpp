// Reads the sources for the texts that are to be translated, and holds every one of them against every language.
#include <gtest/gtest.h>

#include <set>

#include "tests/text/source_literals.h"
#include "workbench/text/wording.h"

namespace workbench::text {
namespace {

// A text that only makes sense when it is translated: a label key, an abbreviated key, or a whole sentence.
bool isKey(const std::string& literal) {
  if ((literal.starts_with("CD_") || literal.starts_with("PD_")) && literal.size() > 3) return true;
  if (literal.ends_with("...") || literal.find("...[") != std::string::npos) return literal.size() > 3;
  const bool isSentence = literal.ends_with('.') && literal.find(' ') != std::string::npos;
  return isSentence && literal.front() >= 'A' && literal.front() <= 'Z';
}

void expectWordingOf(const std::set<std::string>& keys) {
  for (const std::string& language : Wording::languages()) {
    const auto wording = Wording::load(language);
    ASSERT_TRUE(static_cast<bool>(wording));
    for (const std::string& key : keys) EXPECT_TRUE((*wording)->has(key)) << language << ": " << key;
  }
}

const std::vector<std::string> procedureFolders = {"driver", "syntax", "engine", "tables", "procedures"};

TEST(KeysInUse, OfTheProcedureHaveWordingInEveryLanguage) {
  std::set<std::string> keys;
  for (const SourceLiteral& literal : sourceLiterals(procedureFolders)) {
    if (isKey(literal.text)) keys.insert(literal.text);
  }
  ASSERT_GT(keys.size(), 50U);
  expectWordingOf(keys);
}

TEST(KeysInUse, ThatAreMadeIntoTranslatedTextsHaveWordingInEveryLanguage) {
  std::set<std::string> keys;
  for (const SourceLiteral& literal : sourceLiterals(procedureFolders)) {
    if (literal.after.starts_with(",true") && !literal.text.empty()) keys.insert(literal.text);
  }
  // Names of keywords stand before a truth value in the grammar, and are not shown.
  std::erase_if(keys, [](const std::string& key) {
    return key != "ID" && key.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  });
  ASSERT_FALSE(keys.empty());
  expectWordingOf(keys);
}

TEST(KeysInUse, OfTheWorkbenchsOwnSentencesHaveWordingInEveryLanguage) {
  std::set<std::string> keys;
  for (const SourceLiteral& literal : sourceLiterals({"workbench"})) {
    // What is refused, or told as a problem, is a sentence too when it ends like one.
    const bool isRefusal = literal.before.ends_with("refuse(") || literal.before.ends_with("problem(");
    const bool isSentence = literal.before.ends_with("sentence(") || (isRefusal && literal.text.ends_with('.'));
    if (isSentence) keys.insert(literal.text);
  }
  ASSERT_GT(keys.size(), 50U);
  expectWordingOf(keys);
}

// Where whatever reads as language is said to people; what is not stands among the exceptions.
const std::vector<std::string> dataFolders = {"workbench/data", "workbench/runtime"};
const std::vector<std::string> speakingFolders = {"workbench/app", "workbench/language", "workbench/output",
                                                  "workbench/text", "workbench/datasets"};
const std::set<std::string> saidToNobody = {
    "; last read: '",       // of the parser's own messages, where they are cut
    "Could not convert: ",  // and of those about the command line
    " is required",
    "--format csv",  // what is written so in every language
    " ...",
    "^1",
    "^1 ^2",
    "^1 (^2)",
    "^1 - ^2",
    "^1 - ^2, ^3",
    "[%1:, ^1:]1",
    "^1-^2-^3",
    "^1T^2",
    "the package",  // of the wording, which cannot be told of before it is there
    "The number forms of {} cannot be loaded.",
    "compare-datasets password key",  // what a key is made for
    "n zero",                         // names of styles
    "table wide",
    "table wide widest",
};

// A sentence, a clause or a phrase; a pattern at least.
bool readsAsLanguage(const std::string& literal) {
  const auto isSmall = [](char character) { return character >= 'a' && character <= 'z'; };
  for (std::size_t at = 1; at + 1 < literal.size(); ++at) {
    if (literal[at] == ' ' && isSmall(literal[at - 1]) && isSmall(literal[at + 1])) return true;
  }
  return isKey(literal) || literal.find("^1") != std::string::npos;
}

// Tags of a page are none, nor are faults of our own that are thrown as such.
bool isSaid(const SourceLiteral& literal) {
  const bool isOwnFault =
      literal.before.ends_with("logic_error(") || literal.before.ends_with("logic_error(fmt::format(");
  const bool isTag = literal.text.starts_with("<meta ");
  return readsAsLanguage(literal.text) && !isOwnFault && !isTag && !saidToNobody.contains(literal.text);
}

std::set<std::string> saidIn(const std::vector<std::string>& folders) {
  std::set<std::string> keys;
  for (const SourceLiteral& literal : sourceLiterals(folders)) {
    if (isSaid(literal)) keys.insert(literal.text);
  }
  return keys;
}

TEST(KeysInUse, OfAllThatTheDataRoomsSayHaveWordingInEveryLanguage) {
  const std::set<std::string> keys = saidIn(dataFolders);
  ASSERT_GT(keys.size(), 300U);
  expectWordingOf(keys);
}

TEST(KeysInUse, OfAllThatTheOtherRoomsSayHaveWordingInEveryLanguage) {
  const std::set<std::string> keys = saidIn(speakingFolders);
  ASSERT_GT(keys.size(), 150U);
  expectWordingOf(keys);
}

// What stands for a value may be a single letter.
TEST(KeysInUse, OfTheHelpOnOptionsHaveWordingInEveryLanguage) {
  std::set<std::string> keys;
  for (const SourceLiteral& literal : sourceLiterals({"workbench/app"})) {
    if (literal.before.ends_with("type_name(") || literal.before.ends_with("sentence(")) keys.insert(literal.text);
  }
  ASSERT_TRUE(keys.contains("OLD=NEW") && keys.contains("Usage"));
  expectWordingOf(keys);
}

TEST(KeysInUse, AreLookedUpWhereProblemsAreTold) {
  std::size_t lookedUp = 0;
  std::vector<std::string> folders = dataFolders;
  folders.insert(folders.end(), speakingFolders.begin(), speakingFolders.end());
  for (const SourceLiteral& literal : sourceLiterals(folders)) {
    for (const char* const unlooked : {"Problem{", "ErrorText(", "Problem{fmt::format(", "Text(fmt::format(", "cerr<<",
                                       "runtime_error(", "runtime_error(fmt::format("}) {
      EXPECT_FALSE(literal.before.ends_with(unlooked) && isSaid(literal)) << literal.text;
    }
    if (literal.before.ends_with("{text::sentence(")) ++lookedUp;
  }
  EXPECT_GT(lookedUp, 40U);
}

TEST(KeysInUse, AreFoundInSourcesAsTheCompilerReadsThem) {
  const std::vector<SourceLiteral> found = literalsOf(
      "case '\"': say('\"', \"a\" // \"no\"\n  \"b\\n\", true); /* \"no\" */ const int n = 1'000; f(R\"x(raw "
      "\"\\)x\");");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].text, "ab\n");
  EXPECT_TRUE(found[0].after.starts_with(",true);")) << found[0].after;
  EXPECT_EQ(found[1].text, "raw \"\\");
  EXPECT_TRUE(found[1].before.ends_with("f(")) << found[1].before;
}

}  // namespace
}  // namespace workbench::text
