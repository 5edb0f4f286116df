// What people read of a comparison: the answer before all else, and the HTML report.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/program/program_run.h"

namespace workbench::tests::report_test {

struct TwoDeliveries {
  TwoDeliveries() {
    folder.write("a.csv", "id,name,x\n1,ann,1.5\n2,bob,2.5\n3,cy,3.5\n5,eve,5\n");
    folder.write("b.csv", "id,name,x\n1,ann,1.5\n2,bobby,2.5\n4,dan,4\n5,eve,5.25\n");
  }
  ProgramFolder folder;
};

// While it lives, the environment has that variable.
struct Variable {
  Variable(const char* variable, const char* value) : name(variable) { setenv(name, value, 1); }
  ~Variable() { unsetenv(name); }
  const char* name;
};

constexpr const char* answer =
    "2 of 3 compared cases differ, in 2 of 3 variables; 1 case only in the active dataset; 1 case only in the "
    "comparison";

TEST(Answer, IsTheFirstLine) {
  const TwoDeliveries deliveries;
  const ProgramResult result = deliveries.folder.run({"compare", "a.csv", "b.csv", "--id", "id"});
  EXPECT_TRUE(result.out.starts_with(answer)) << result.out;
}

TEST(Answer, CountsTheSameByTheFlagsWhereNoTableDoes) {
  const TwoDeliveries deliveries;
  deliveries.folder.write("job.txt",
                          "OPEN DATA FILE='a.csv' NAME=first TYPESWITH='b.csv'.\n"
                          "OPEN DATA FILE='b.csv' NAME=second TYPESWITH='a.csv'.\n"
                          "ACTIVATE DATASET NAME=first.\n"
                          "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id /OUTPUT CASETABLE=NO.\n");
  const ProgramResult result = deliveries.folder.run({"run", "job.txt"});
  EXPECT_TRUE(result.out.starts_with("2 of 3 compared cases differ; 1 case only in the active dataset; 1 case only in"))
      << result.out;
}

TEST(Answer, StandsBeforeNoSingleTableAndNoResultsForPrograms) {
  const TwoDeliveries deliveries;
  const std::vector<std::string> compare = {"compare", "a.csv", "b.csv", "--id", "id"};
  auto oneTable = compare;
  oneTable.insert(oneTable.end(), {"--table", "CD_MatchedSummaryTableName"});
  EXPECT_EQ(deliveries.folder.run(oneTable).out.find("compared cases"), std::string::npos);
  EXPECT_FALSE(deliveries.folder.results(compare)["commands"].back().contains("answer"));
}

TEST(Answer, SaysThatAComparisonWasRefused) {
  const TwoDeliveries deliveries;
  const ProgramResult result = deliveries.folder.run({"compare", "a.csv", "b.csv", "--id", "nothing"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "The comparison was refused; no case was compared\n");
}

TEST(HtmlReport, IsWrittenIntoAFileOfThatEnding) {
  const TwoDeliveries deliveries;
  EXPECT_EQ(deliveries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "-o", "r.html"}).out, "");
  const std::string report = deliveries.folder.read("r.html");
  EXPECT_TRUE(report.starts_with("<!DOCTYPE html>\n<html lang=\"en\">"));
  EXPECT_TRUE(report.ends_with("</html>\n"));
  EXPECT_NE(report.find("<strong>2 of 3 compared cases differ, in 2 of 3 variables</strong>"), std::string::npos);
  EXPECT_NE(report.find("<bdi>(1) bob</bdi>\n<bdi>(2) bobby</bdi>"), std::string::npos);
}

TEST(HtmlReport, IsTheSameInAnotherFolderTimeZoneAndLocale) {
  const Variable moment("SOURCE_DATE_EPOCH", "1000000000");
  const auto report = [] {
    const TwoDeliveries deliveries;
    deliveries.folder.run({"compare", "a.csv", "b.csv", "--id", "id", "--lang", "en", "-o", "r.html"});
    return deliveries.folder.read("r.html");
  };
  const std::string here = report();
  const Variable zone("TZ", "Asia/Kolkata");
  const Variable locale("LC_ALL", "de_DE.UTF-8");
  EXPECT_EQ(report(), here);
  EXPECT_NE(here.find("<time datetime=\"2001-09-09T01:46:40Z\">"), std::string::npos);
}

TEST(HtmlReport, ShowsHostileNamesAndValuesAsText) {
  const ProgramFolder folder;
  folder.write("a.csv", "id,<script>\n1,</td><img src=x>\n");
  folder.write("b.csv", "id,<script>\n1,&lt;\n");
  folder.run({"compare", "a.csv", "b.csv", "--id", "id", "-o", "r.htm"});
  const std::string report = folder.read("r.htm");
  EXPECT_EQ(report.find("<img"), std::string::npos);
  EXPECT_EQ(report.find("<script>"), report.rfind("<script>")) << "but the page's own";
  EXPECT_NE(report.find("(1) &lt;/td&gt;&lt;img src=x&gt;"), std::string::npos);
  EXPECT_NE(report.find("(2) &amp;lt;"), std::string::npos);
}

}  // namespace workbench::tests::report_test
