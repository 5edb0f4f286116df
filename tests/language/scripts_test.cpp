// Plain-text scripts: files of cases, each a name after "===", a job, "----", and the expected answer (what each
// command says) or message (line:column and the sentence).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/language/sample_grammar.h"

namespace workbench::language {
namespace {

struct ScriptCase {
  std::string name;
  std::string job;
  std::string expected;
};

std::vector<ScriptCase> casesOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::vector<ScriptCase> cases;
  bool isExpected = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with("=== ")) {
      cases.push_back({line.substr(4), "", ""});
      isExpected = false;
    } else if (line == "----") {
      isExpected = true;
    } else if (!cases.empty()) {
      (isExpected ? cases.back().expected : cases.back().job) += line + "\n";
    }
  }
  for (ScriptCase& one : cases) {
    while (one.expected.ends_with("\n\n")) one.expected.pop_back();
  }
  return cases;
}

class Scripts : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Scripts, GiveTheExpectedAnswersAndMessages) {
  const std::vector<ScriptCase> cases = casesOf(GetParam());
  ASSERT_FALSE(cases.empty());
  for (const ScriptCase& one : cases) EXPECT_EQ(answerTo(one.job), one.expected) << one.name;
}

std::vector<std::filesystem::path> scripts() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(SCRIPTS_FOLDER)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

INSTANTIATE_TEST_SUITE_P(Language, Scripts, testing::ValuesIn(scripts()),
                         [](const auto& script) { return script.param.stem().string(); });

}  // namespace
}  // namespace workbench::language
