// The page for users tells the truth: its examples are read, and it names every word that there is.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/data/descriptors/package_fixture.h"
#include "workbench/data/descriptors/statistics_words.h"

namespace workbench::data {
namespace {

std::string page() {
  std::ifstream file(std::string(SOURCE_FOLDER) + "/docs/dictionary-files.md");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<std::string> examplesOf(const std::string& text) {
  constexpr std::string_view opening = "```json\n";
  std::vector<std::string> examples;
  for (std::size_t at = text.find(opening); at != std::string::npos; at = text.find(opening, at)) {
    at += opening.size();
    examples.push_back(text.substr(at, text.find("```", at) - at));
  }
  return examples;
}

TEST(DictionaryPage, HasExamplesThatAreReadWithoutAWarning) {
  int packages = 0, schemas = 0, fields = 0;
  for (const std::string& example : examplesOf(page())) {
    const Json json = Json::parse(example);
    if (json.contains("resources")) {
      ++packages;
      for (const Json& resource : json["resources"]) {
        EXPECT_EQ(PackageFolder(example).table(resource["name"]).warnings.size(), 0U) << example;
      }
    } else {
      ++(json.contains("fields") ? schemas : fields);
      const DescribedTable table = tableOf(json.contains("fields") ? example : schemaOfField(example));
      EXPECT_FALSE(table.fields.empty()) << example;
      EXPECT_EQ(shownWarnings(table), "") << example;
    }
  }
  EXPECT_EQ(packages, 1);
  EXPECT_EQ(schemas, 1);
  EXPECT_EQ(fields, 2);
}

TEST(DictionaryPage, NamesEveryWord) {
  const std::string text = page();
  const auto expectWord = [&text](std::string_view word) {
    EXPECT_NE(text.find(fmt::format("`{}`", word)), std::string::npos) << word;
  };
  for (const auto& row : alignmentWords) expectWord(row.word);
  for (const auto& row : levelWords) expectWord(row.word);
  for (const auto& row : roleWords) expectWord(row.word);
  for (const FormatTypeRow& row : formatTypeRows) expectWord(row.name);
}

}  // namespace
}  // namespace workbench::data
