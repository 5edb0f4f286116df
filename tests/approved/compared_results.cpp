#include "tests/approved/compared_results.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/program/program_run.h"

namespace workbench::tests {

std::vector<Comparison> comparisons() {
  return {
      {"demo",
       EXAMPLES,
       {"entry1.csv", "entry2.csv", "datapackage.json"},
       {"compare", "entry1.csv", "entry2.csv", "--id", "id", "--limit", "5"}},
      {"hostile", HOSTILE, {"a.csv", "b.csv"}, {"compare", "a.csv", "b.csv", "--id", "id"}},
  };
}

std::string resultsOf(const Comparison& comparison, const output::OutputFormat& format, const std::string& language) {
  const Environment noWindow("COLUMNS", nullptr);
  const char* const named = std::getenv("SOURCE_DATE_EPOCH");
  const Environment date("SOURCE_DATE_EPOCH", named != nullptr ? named : "1795305600");
  const ProgramFolder folder;
  for (const std::string& file : comparison.files) {
    std::filesystem::copy(std::filesystem::path(comparison.folder) / file, folder.path(file));
  }
  std::vector<std::string> arguments = comparison.arguments;
  arguments.insert(arguments.end(), {"--lang", language, "--format", std::string(format.name), "-o", "results"});
  if (format.holdsOneTable) arguments.insert(arguments.end(), {"--table", "CD_CaseByCaseComparisonTableName"});
  const ProgramResult result = folder.run(arguments);
  EXPECT_EQ(result.status, 1) << result.err;
  return folder.has("results") ? folder.read("results") : "";
}

std::string readable(const output::OutputFormat& format, const std::string& bytes) {
  if (!format.isBinary) return bytes;
  const ProgramFolder folder;
  folder.write("results", bytes);
  std::FILE* const pipe = popen(("python3 -B " XLSX_TEXT " " + folder.path("results").string()).c_str(), "r");
  std::string text;
  std::array<char, 4096> part;
  for (std::size_t taken; (taken = std::fread(part.data(), 1, part.size(), pipe)) > 0;) text.append(part.data(), taken);
  EXPECT_EQ(pclose(pipe), 0) << "the workbook cannot be read";
  return text;
}

Environment::Environment(const char* name, const char* value) : name_(name), wasSet_(std::getenv(name) != nullptr) {
  if (wasSet_) before_ = std::getenv(name);
  if (value != nullptr) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
}

Environment::~Environment() {
  if (wasSet_) {
    setenv(name_, before_.c_str(), 1);
  } else {
    unsetenv(name_);
  }
}

}  // namespace workbench::tests
