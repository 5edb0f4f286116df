#include "workbench/output/csv_writer.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <sstream>

#include "tests/output/samples.h"

namespace workbench::output {
namespace {

std::string csvOf(const Document& document, std::optional<std::string> table = {}) {
  std::ostringstream out;
  const auto written = writeCsv(out, document, TextOptions{.wording = english(), .onlyTable = std::move(table)});
  return written ? out.str() : "problem: " + written.problem().text();
}

Document documentOf(const std::vector<void (*)(BpProcedure&)>& tables) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    for (const auto open : tables) open(procedure);
  }
  return command.intoDocument();
}

TEST(CsvWriter, FlattensHeadersAndRepeatsRowLabels) {
  EXPECT_EQ(csvOf(documentOf({&openMatchedSummary})),
            "Results,Statistics,Datasets / Active,Datasets / Comparison\r\n"
            "Cases,Count,1200,1000\r\n"
            "Cases Compared,Count,999,999\r\n"
            "Cases Compared,Percent,83.25,99.9\r\n"
            "Cases Not Compared,Count,201,1\r\n"
            "Cases Not Compared,Percent,16.75,0.1\r\n");
}

TEST(CsvWriter, WritesNumbersInFullWhateverTheWordingsLocale) {
  const auto german = std::move(*text::Wording::load("de"));
  std::ostringstream out;
  ASSERT_TRUE(writeCsv(out, documentOf({&openMismatchesByVariable}), TextOptions{.wording = *german}));
  EXPECT_NE(out.str().find("age (Age in years),12,1.2012012012012012\r\n"), std::string::npos) << out.str();
}

TEST(CsvWriter, PutsLayersInColumnsOfTheirOwn) {
  EXPECT_EQ(csvOf(documentOf({&openLayers})),
            "Sex,Town,\r\nFemale,Ghent,10\r\nFemale,Delft,20\r\nMale,Ghent,10\r\nMale,Delft,20\r\n");
}

TEST(CsvWriter, KeepsTextsAsTheyAre) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    BpPivotTable table = procedure.PivotTable(key("Texts"), plain(""), true);
    BpDimension rows = table.Dimension(plain("Kind, of"), BpSort::asMade);
    FakeVariable number("number");
    number.formatted(FormatType::dot, 8, 2);
    FakeVariable day("day");
    day.formatted(FormatType::date, 10, 0);
    rows.Category(plain("formula")).Cell(plain("=1+1"));
    rows.Category(plain("minus")).Cell(plain("-1 at @"));
    rows.Category(plain("quote")).Cell(plain("say \"yes\""));
    rows.Category(plain("lines")).Cell(plain("two\nlines"));
    rows.Category(plain("blanks")).Cell(plain(" a "));
    rows.Category(plain("not UTF-8")).Cell(plain("Gr\xFC\xDF"));
    rows.Category(plain("number")).Cell(BpDataValue(number, 1234.567, BpValueShow::inPrintFormat));
    rows.Category(plain("day")).Cell(BpDataValue(day, 20778, BpValueShow::inPrintFormat));
    rows.Category(plain("missing")).Cell(BpDataValue(number, -DBL_MAX, BpValueShow::inPrintFormat));
    rows.Category(plain("empty")).Cell(plain(""));
  }
  EXPECT_EQ(
      csvOf(command.intoDocument()),
      "\"Kind, of\",\r\nformula,=1+1\r\nminus,-1 at @\r\nquote,\"say \"\"yes\"\"\"\r\nlines,\"two\nlines\"\r\n"
      "blanks,\" a \"\r\nnot UTF-8,Gr\uFFFD\uFFFD\r\nnumber,1234.567\r\nday,2026-11-21\r\nmissing,.\r\nempty,\r\n");
}

TEST(CsvWriter, AsksForAKeyWhereThereAreSeveralTables) {
  const Document document = documentOf({&openMatchedSummary, &openMismatchesByVariable, &openValueLabels});
  EXPECT_EQ(csvOf(document),
            "problem: --format csv: CSV holds one table, and the results have several. Name one by --table; their keys "
            "are: CD_MatchedSummaryTableName, CD_MismatchedByVarsTableName, CD_ValueLabelsCompTableName.");
  EXPECT_TRUE(csvOf(document, "CD_MismatchedByVarsTableName").starts_with("Variables,Mismatched / Count,"));
}

TEST(CsvWriter, WritesNothingForAKeyWithoutATable) {
  EXPECT_EQ(csvOf(documentOf({&openMatchedSummary}), "CD_NoSuchTable"), "");
}

TEST(CsvWriter, CannotChooseBetweenTablesOfOneKey) {
  EXPECT_EQ(csvOf(documentOf({&openMatchedSummary, &openMatchedSummary}), "CD_MatchedSummaryTableName"),
            "problem: --table: CSV holds one table, and several commands made a table CD_MatchedSummaryTableName. Run "
            "one of these commands alone, or take another format.");
  EXPECT_EQ(csvOf(Document{}), "problem: There is no table among the results.");
}

}  // namespace
}  // namespace workbench::output
