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
    std::ostringstream out;
    format.write(out, document, TextOptions{.wording = english()});
    EXPECT_NE(out.str().find("Matched Summary"), std::string::npos) << format.name;
    EXPECT_NE(out.str().find("1200"), std::string::npos) << format.name;
    EXPECT_EQ(out.str().find("Gone"), std::string::npos) << format.name;
    EXPECT_EQ(out.str().find('\x1b'), std::string::npos) << format.name;
    EXPECT_EQ(out.str().back(), '\n') << format.name;
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
