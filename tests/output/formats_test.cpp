#include "workbench/output/formats.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "tests/output/samples.h"

namespace workbench::output {
namespace {

TEST(OutputFormats, AllShowTheSameResults) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openMatchedSummary(procedure);
    openHostileTexts(procedure);
    procedure.PivotTable(key("Gone"), plain("Gone"), true).Destroy();
  }
  const Document document = command.intoDocument();
  for (const OutputFormat& format : outputFormats()) {
    SCOPED_TRACE(format.name);
    TextOptions options{.wording = english()};
    if (format.holdsOneTable) options.onlyTable = "CD_MatchedSummaryTableName";
    std::ostringstream out;
    ASSERT_TRUE(format.write(out, document, options));
    if (format.isBinary) continue;  // what is in it is seen by tests of its own
    EXPECT_NE(out.str().find("Cases Not Compared"), std::string::npos);
    EXPECT_NE(out.str().find("201"), std::string::npos);
    EXPECT_EQ(out.str().find("Gone"), std::string::npos);
    EXPECT_EQ(out.str().find('\x1b'), std::string::npos);
    EXPECT_EQ(out.str().back(), '\n');
  }
}

TEST(OutputFormats, WriteTheSameBytesForTheSameResults) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openMatchedSummary(procedure);
  }
  const Document document = command.intoDocument();
  for (const OutputFormat& format : outputFormats()) {
    std::ostringstream first;
    std::ostringstream second;
    ASSERT_TRUE(format.write(first, document, TextOptions{.wording = english()}));
    ASSERT_TRUE(format.write(second, document, TextOptions{.wording = english()}));
    EXPECT_TRUE(first.str() == second.str() && !first.str().empty()) << format.name;
  }
}

TEST(OutputFormats, AreFoundByTheirNamesAndTheEndingsOfFiles) {
  std::set<std::string_view> names;
  for (const OutputFormat& format : outputFormats()) {
    EXPECT_TRUE(names.insert(format.name).second) << format.name;
    EXPECT_EQ(findOutputFormat(format.name), &format);
    for (const std::string_view ending : format.fileEndings) {
      EXPECT_EQ(outputFormatOfFile("results" + std::string(ending)), &format) << ending;
    }
  }
  EXPECT_EQ(findOutputFormat("no such format"), nullptr);
  EXPECT_EQ(outputFormatOfFile("results"), nullptr);
}

}  // namespace
}  // namespace workbench::output
