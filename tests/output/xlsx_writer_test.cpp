// What stands in a workbook, read from the files within it by tests/support/xlsx_text.py.
#include "workbench/output/xlsx_writer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/messages.h"
#include "tests/output/samples.h"

namespace workbench::output {
namespace {

std::string bytesOf(const Document& document, TextOptions options, const XlsxLimits& limits = {}) {
  std::ostringstream out;
  const auto written = writeXlsx(out, document, options, limits);
  return written ? out.str() : "problem: " + written.problem().text();
}

// The workbook as text; fails the test when it is not sound.
std::string textOfWorkbook(const std::string& bytes) {
  const std::string path = testing::TempDir() + "/workbook-" + std::to_string(getpid()) + ".xlsx";
  std::ofstream(path, std::ios::binary) << bytes;
  std::FILE* const pipe = popen(("python3 -B " XLSX_TEXT " " + path).c_str(), "r");
  std::string text;
  std::array<char, 4096> part;
  for (std::size_t taken; (taken = std::fread(part.data(), 1, part.size(), pipe)) > 0;) text.append(part.data(), taken);
  EXPECT_EQ(pclose(pipe), 0) << path;
  std::filesystem::remove(path);
  return text;
}

std::string workbookOf(RunningCommand& command, const XlsxLimits& limits = {}) {
  return textOfWorkbook(bytesOf(command.intoDocument(), TextOptions{.wording = english()}, limits));
}

std::string workbookOfTable(void (*open)(BpProcedure&), const XlsxLimits& limits = {}) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    open(procedure);
  }
  return workbookOf(command, limits);
}

// The part of one sheet, its first line left out.
std::string sheetOf(const std::string& workbook, const std::string& name) {
  const std::string start = "\nsheet \"" + name + "\"\n";
  const std::size_t found = workbook.find(start);
  if (found == std::string::npos) return "no such sheet in:\n" + workbook;
  const std::size_t first = found + start.size();
  const std::size_t end = workbook.find("\n\nsheet ", first);
  return workbook.substr(first, (end == std::string::npos ? workbook.size() - 1 : end) - first);
}

bool has(const std::string& sheet, const std::string& line) {
  return ("\n" + sheet + "\n").find("\n" + line + "\n") != std::string::npos;
}

TEST(XlsxWriter, DrawsNestedRowsAndGroupsOfColumnsAsMergedCells) {
  EXPECT_EQ(sheetOf(workbookOfTable(&openMatchedSummary), "Matched Summary"),
            "frozen above and left of C4\n"
            "merged A2:A3 B2:B3 C2:D2 A5:A6 A7:A8\n"
            "widths 1-1: 20.7109375, 2-2: 12.7109375, 3-3: 8.7109375, 4-4: 12.7109375\n"
            "A1 \"Matched Summary\"\nA2 \"Results\"\nB2 \"Statistics\"\nC2 \"Datasets\"\n"
            "C3 \"Active\"\nD3 \"Comparison\"\n"
            "A4 \"Cases\"\nB4 \"Count\"\nC4 1200 as #,##0\nD4 1000 as #,##0\n"
            "A5 \"Cases Compared\"\nB5 \"Count\"\nC5 999 as #,##0\nD5 999 as #,##0\n"
            "B6 \"Percent\"\nC6 0.8325 as 0.0%\nD6 0.999 as 0.0%\n"
            "A7 \"Cases Not Compared\"\nB7 \"Count\"\nC7 201 as #,##0\nD7 1 as #,##0\n"
            "B8 \"Percent\"\nC8 0.1675 as 0.0%\nD8 0.001 as 0.0%");
}

TEST(XlsxWriter, LetsRowsBeFilteredThatHaveTheirLabelsToThemselves) {
  const std::string sheet = sheetOf(workbookOfTable([](BpProcedure& procedure) { openCaseTable(procedure, 2, 3); }),
                                    "Case By Case Comparison");
  EXPECT_TRUE(has(sheet, "filter over A3:F6")) << sheet;
  EXPECT_TRUE(has(sheet, "frozen above and left of B4")) << sheet;
  EXPECT_TRUE(has(sheet, "merged C2:D2")) << sheet;  // and none that covers a row of the filter
  EXPECT_TRUE(has(sheet, "A4 0 as #,##0")) << sheet;
  EXPECT_TRUE(has(sheet, "B4 1000 as 0")) << sheet;
  EXPECT_TRUE(has(sheet, "E3 \"income1 (Income of the household)\"")) << sheet;
  EXPECT_TRUE(has(sheet, "E5 \"(1) 1,234.50\\n(2) 1.00\"")) << sheet;
}

TEST(XlsxWriter, PutsMessagesNotesAndLinksToTheTablesOnTheFirstSheet) {
  RunningCommand command;
  BpError(plain("=cmd()"), BpErrorShow::results, BpErrorLevel::note);
  AddNotesWithGroup(BpNoteKind::addedVariable, plain(""), plain(""), plain("https://example.org"));
  {
    BpProcedure procedure("Test", 1);
    openLayers(procedure);
    openMismatchesByVariable(procedure);
  }
  const std::string overview = sheetOf(workbookOf(command), "Overview");
  EXPECT_EQ(overview,
            "widths 1-1: 100.7109375\n"
            "link A6 to 'Towns by sex'!A1\n"
            "link A7 to 'Towns by sex (2)'!A1\n"
            "link A8 to 'Mismatched By Variables'!A1\n"
            "A1 \"Overview\"\n"
            "A3 \"Note: =cmd()\"\n"
            "A4 \"The variable https://example.org was added to the active dataset.\"\n"
            "A5 \"Tables\"\n"
            "A6 \"Towns by sex, Sex: Female\"\n"
            "A7 \"Towns by sex, Sex: Male\"\n"
            "A8 \"Mismatched By Variables\"");
}

TEST(XlsxWriter, PutsCaptionsAndFootnotesBelowTheTable) {
  const std::string sheet = sheetOf(workbookOfTable(&openMismatchesByVariable), "Mismatched By Variables");
  EXPECT_TRUE(has(sheet, "C3 \"Percent [a]\"")) << sheet;
  EXPECT_TRUE(sheet.ends_with("\nA6 \"[a] Based on 999 cases compared.\"")) << sheet;
}

TEST(XlsxWriter, MakesNoFormulaAndNoLinkOfWhatCameFromData) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    BpPivotTable table = procedure.PivotTable(plain("=HYPERLINK(\"https://example.org\")"), plain(""), true);
    BpDimension rows = table.Dimension(plain("@Kind"), BpSort::asMade);
    for (const char* const text : {"=1+1", "+1", "-1", "@SUM(A1)", "https://example.org", "mailto:a@b.org",
                                   "internal:'Overview'!A1", "_x0041_", "_x000D_", "<b>&amp;", "12", "{=1}"}) {
      rows.Category(plain(text)).Cell(plain(text));
    }
  }
  // The reader refuses formulas and links that lead out of the workbook.
  const std::string sheet = sheetOf(workbookOf(command), "=HYPERLINK(\\\"https---example.org");
  for (const char* const line : {"A3 \"=1+1\"", "B4 \"+1\"", "B5 \"-1\"", "B6 \"@SUM(A1)\"",
                                 "B7 \"https://example.org\"", "B8 \"mailto:a@b.org\"", "B10 \"_x0041_\"",
                                 "B11 \"_x000D_\"", "B12 \"<b>&amp;\"", "B13 \"12\"", "B14 \"{=1}\""}) {
    EXPECT_TRUE(has(sheet, line)) << line << " in\n" << sheet;
  }
}

TEST(XlsxWriter, SaysBelowATableWhatItsCellsCouldNotHold) {
  const std::string hostile = workbookOfTable(&openHostileTexts);
  const std::string sheet = sheetOf(hostile, "Title \u241B(31mred");
  EXPECT_NE(sheet.find("\"Numbers and dates that a cell cannot hold to the last digit stand as texts.\""),
            std::string::npos)
      << sheet;
  EXPECT_NE(sheet.find("Characters that are not readable are shown by signs"), std::string::npos) << sheet;
  EXPECT_NE(sheet.find("\"123456789012345680\""), std::string::npos) << sheet;
  const std::string cut = sheetOf(workbookOfTable(&openMatchedSummary, {.textUnits = 10}), "Matched Summary");
  EXPECT_NE(cut.find("A5 \"Cases Com\u2026\""), std::string::npos) << cut;
}

TEST(XlsxWriter, SaysAboveATableWhatASheetHasNoRoomFor) {
  const auto open = [](BpProcedure& procedure) { openCaseTable(procedure, 9, 30); };
  const std::string sheet = sheetOf(workbookOfTable(open, {.rows = 24, .columns = 6}), "Case By Case Comparison");
  EXPECT_TRUE(has(sheet, "A2 \"Only the first 5 of 12 columns are shown; a sheet has no room for more.\"")) << sheet;
  EXPECT_TRUE(has(sheet, "A3 \"Only the first 13 of 30 rows are shown; a sheet has no room for more.\"")) << sheet;
  EXPECT_TRUE(has(sheet, "A18 12 as #,##0")) << sheet;
  EXPECT_FALSE(has(sheet, "A19 13 as #,##0")) << sheet;
  EXPECT_EQ(sheet.find("\nG"), std::string::npos) << sheet;
}

TEST(XlsxWriter, SaysThatThereIsNothingToShow) {
  const std::string workbook = textOfWorkbook(bytesOf(Document{}, TextOptions{.wording = english()}));
  EXPECT_TRUE(has(sheetOf(workbook, "Overview"), "A3 \"There are no results to show.\"")) << workbook;
}

TEST(XlsxWriter, NamesTheDateThatItIsGivenElseTheFirstThatAnArchiveCanName) {
  const auto dated = [](std::optional<MomentOfResults> moment) {
    return textOfWorkbook(bytesOf(Document{}, TextOptions{.wording = english(), .moment = moment}));
  };
  EXPECT_TRUE(dated({}).starts_with("created 1980-01-01T00:00:00Z\n")) << dated({});
  const auto given = [&](std::int64_t seconds) { return dated(MomentOfResults{seconds, true}); };
  EXPECT_TRUE(given(1795305600).starts_with("created 2026-11-22T00:00:00Z\n")) << given(1795305600);
  EXPECT_TRUE(given(0).starts_with("created 1970-01-01T00:00:01Z\n")) << given(0);
  EXPECT_TRUE(dated(MomentOfResults{1795305600, false}).starts_with("created 1980-01-01T00:00:00Z\n"))
      << "what is only now is no part of a workbook that is to be the same every time";
}

TEST(XlsxWriter, TellsAnErrorOfTheLibrary) {
  const std::string before = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "";
  setenv("TMPDIR", "/no/such/folder", 1);
  const std::string problem = bytesOf(Document{}, TextOptions{.wording = english()});
  if (before.empty()) {
    unsetenv("TMPDIR");
  } else {
    setenv("TMPDIR", before.c_str(), 1);
  }
  EXPECT_TRUE(problem.starts_with("problem: The workbook cannot be written (")) << problem.substr(0, 200);
  EXPECT_NE(problem.find("/no/such/folder"), std::string::npos) << problem.substr(0, 200);
}

}  // namespace
}  // namespace workbench::output
