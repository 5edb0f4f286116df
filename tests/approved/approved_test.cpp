// Two comparisons in every format and every language, held against files that were looked at and approved. What differs
// is accepted, after a look at it, by `./dev approve`.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "tests/approved/compared_results.h"
#include "workbench/output/formats.h"
#include "workbench/text/wording.h"

namespace workbench::tests {
namespace {

using output::OutputFormat;

struct Approved {
  Comparison comparison;
  const OutputFormat* format;
  std::string language;

  // "demo.de.md"
  std::string file() const {
    const std::string ending(format->fileEndings.front());
    return comparison.name + "." + language + ending + (format->isBinary ? ".txt" : "");
  }
};

std::string nameOf(const Approved& approved) {
  return approved.comparison.name + "_" + std::string(approved.format->name) + "_" + approved.language;
}

// For the names of tests.
void PrintTo(const Approved& approved, std::ostream* out) { *out << nameOf(approved); }

std::vector<Approved> allApproved() {
  std::vector<Approved> all;
  for (const Comparison& comparison : comparisons()) {
    for (const OutputFormat& format : output::outputFormats()) {
      for (const std::string& language : text::Wording::languages()) all.push_back({comparison, &format, language});
    }
  }
  return all;
}

std::filesystem::path pathOf(const std::string& file) { return std::filesystem::path(APPROVED_RESULTS) / file; }

class ApprovedResults : public testing::TestWithParam<Approved> {};

TEST_P(ApprovedResults, AreWhatIsWritten) {
  const Approved& approved = GetParam();
  const std::string written =
      readable(*approved.format, resultsOf(approved.comparison, *approved.format, approved.language));
  const std::filesystem::path path = pathOf(approved.file());
  if (HasFailure()) return;
  if (std::getenv("APPROVE") != nullptr) {
    std::ofstream(path, std::ios::binary) << written;
    return;
  }
  ASSERT_TRUE(std::filesystem::exists(path)) << "look at the output, then accept it by ./dev approve:\n" << written;
  std::ifstream file(path, std::ios::binary);
  const std::string before(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(written, before) << "if that is meant: ./dev approve, and look at what git diff says";
}

INSTANTIATE_TEST_SUITE_P(AllFormats, ApprovedResults, testing::ValuesIn(allApproved()),
                         [](const auto& test) { return nameOf(test.param); });

TEST(ApprovedFiles, AreOfFormatsThatThereAre) {
  std::set<std::string> wanted;
  for (const Approved& approved : allApproved()) wanted.insert(approved.file());
  for (const auto& entry : std::filesystem::directory_iterator(APPROVED_RESULTS)) {
    EXPECT_TRUE(wanted.contains(entry.path().filename())) << entry.path() << " belongs to no format: remove it";
  }
}

}  // namespace
}  // namespace workbench::tests
