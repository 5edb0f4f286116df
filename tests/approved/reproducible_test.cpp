// The same input gives the same bytes, wherever and whenever it is compared.
#include <gtest/gtest.h>
#include <sched.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "tests/approved/compared_results.h"
#include "tests/program/program_run.h"
#include "workbench/output/formats.h"

namespace workbench::tests {
namespace {

// While it lives, this process and those that it starts run on one processor only.
class OneProcessor {
 public:
  OneProcessor() {
    sched_getaffinity(0, sizeof before_, &before_);
    cpu_set_t one;
    CPU_ZERO(&one);
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
      if (!CPU_ISSET(processor, &before_)) continue;
      CPU_SET(processor, &one);
      break;
    }
    EXPECT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  }
  OneProcessor(const OneProcessor&) = delete;
  OneProcessor& operator=(const OneProcessor&) = delete;
  ~OneProcessor() { sched_setaffinity(0, sizeof before_, &before_); }

 private:
  cpu_set_t before_;
};

struct Format {
  const output::OutputFormat* row;
};

// For the names of tests.
void PrintTo(const Format& format, std::ostream* out) { *out << format.row->name; }

std::vector<Format> allFormats() {
  std::vector<Format> formats;
  for (const output::OutputFormat& format : output::outputFormats()) formats.push_back({&format});
  return formats;
}

class ReproducibleResults : public testing::TestWithParam<Format> {};

TEST_P(ReproducibleResults, DoNotDependOnTimeZoneLocaleFolderOrThreads) {
  // A locale with decimal commas: made here, since a machine need not have one.
  const ProgramFolder locales;
  const std::string made = locales.path("de_DE.UTF-8").string();
  const bool isMade = std::system(("localedef -i de_DE -f UTF-8 " + made + " >/dev/null 2>&1").c_str()) == 0;
  if (!isMade) GTEST_LOG_(INFO) << "no localedef here: the locale is named, but not installed";
  for (const Comparison& comparison : comparisons()) {
    std::string here;
    {
      const Environment zone("TZ", "UTC");
      const Environment locale("LC_ALL", "C");
      here = resultsOf(comparison, *GetParam().row, "en");
    }
    const Environment zone("TZ", "Asia/Kolkata");
    const Environment locale("LC_ALL", "de_DE.UTF-8");
    const Environment places("LOCPATH", locales.path("").c_str());
    const OneProcessor processor;
    const std::string elsewhere = resultsOf(comparison, *GetParam().row, "en");
    EXPECT_FALSE(here.empty());
    EXPECT_TRUE(here == elsewhere) << comparison.name;
  }
}

TEST_P(ReproducibleResults, NameTheDateOfTheEnvironmentInOnePlaceAtMost) {
  const Comparison demo = comparisons().front();
  const auto dated = [&](const char* seconds) {
    const Environment date("SOURCE_DATE_EPOCH", seconds);
    return readable(*GetParam().row, resultsOf(demo, *GetParam().row, "en"));
  };
  const std::string first = dated("1795305600");
  const std::string second = dated("1795392000");
  // What differs lies together: it is no longer than a date in the longest of words, twice.
  const auto [inFirst, inSecond] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
  const auto behind = std::mismatch(first.rbegin(), std::make_reverse_iterator(inFirst), second.rbegin(),
                                    std::make_reverse_iterator(inSecond));
  EXPECT_LE(behind.first.base() - inFirst, 100) << std::string(inFirst, behind.first.base());
}

INSTANTIATE_TEST_SUITE_P(AllFormats, ReproducibleResults, testing::ValuesIn(allFormats()),
                         [](const auto& test) { return std::string(test.param.row->name); });

}  // namespace
}  // namespace workbench::tests
