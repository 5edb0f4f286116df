// What a terminal shows, held against files that were looked at and approved. APPROVE=1 in the environment writes what
// is shown now into these files.
#include "workbench/output/terminal_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "host/messages.h"
#include "tests/output/samples.h"
#include "workbench/output/display_text.h"

namespace workbench::output {
namespace {

std::string textOfDocument(const Document& document, TextOptions options) {
  std::ostringstream out;
  writeText(out, document, options);
  return out.str();
}

std::string textOfCommand(RunningCommand& command, int width = 80) {
  return textOfDocument(command.intoDocument(), TextOptions{.wording = english(), .width = width});
}

void expectApproved(const std::string& name, const std::string& shown) {
  const std::string path = std::string(APPROVED_FOLDER) + "/" + name + ".txt";
  if (std::getenv("APPROVE") != nullptr) {
    std::ofstream(path, std::ios::binary) << shown;
    return;
  }
  std::ifstream file(path, std::ios::binary);
  ASSERT_TRUE(file) << path << " is missing: look at the output and approve it with APPROVE=1.\n" << shown;
  std::ostringstream approved;
  approved << file.rdbuf();
  EXPECT_EQ(shown, approved.str());
}

void expectApprovedTable(const std::string& name, void (*open)(BpProcedure&), int width = 80) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    open(procedure);
  }
  expectApproved(name, textOfCommand(command, width));
}

TEST(TerminalWriter, DrawsNestedRowsUnderAGroupOfColumns) { expectApprovedTable("nested_rows", &openMatchedSummary); }

TEST(TerminalWriter, DrawsAFootnoteOfAColumn) { expectApprovedTable("column_footnote", &openMismatchesByVariable); }

TEST(TerminalWriter, DrawsEachCaseAsARow) {
  expectApprovedTable("case_table", [](BpProcedure& procedure) { openCaseTable(procedure, 2, 3); });
}

TEST(TerminalWriter, BreaksAWideTableIntoPanelsUnderRepeatedRowLabels) {
  expectApprovedTable("panels", [](BpProcedure& procedure) { openCaseTable(procedure, 9, 2); }, 60);
}

TEST(TerminalWriter, DrawsADimensionThatWasNeverPlaced) { expectApprovedTable("value_labels", &openValueLabels); }

TEST(TerminalWriter, WrapsLongTextsAndKeepsColumnsWithoutACell) {
  expectApprovedTable("long_texts", &openDictionary, 100);
}

TEST(TerminalWriter, DrawsOneTablePerLayer) { expectApprovedTable("layers", &openLayers); }

TEST(TerminalWriter, MakesVisibleWhatTriesToActOnTheTerminal) {
  expectApprovedTable("hostile_texts", &openHostileTexts);
}

TEST(TerminalWriter, NeverBreaksANumberHoweverNarrowTheTerminal) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openHostileTexts(procedure);
  }
  const std::string shown = textOfCommand(command, 10);
  EXPECT_NE(shown.find("123456789012345680.00"), std::string::npos) << shown;
}

TEST(TerminalWriter, ShowsAllColumnsInOnePanelWhenTheWidthIsUnlimited) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openCaseTable(procedure, 40, 1);
  }
  const std::string shown = textOfCommand(command, 0);
  EXPECT_EQ(shown.find("\n\n"), std::string::npos);
}

TEST(TerminalWriter, ShowsMessagesAndNotesOfTheResultsAsSentences) {
  RunningCommand command;
  BpError(key("All values in the tw..."), BpErrorShow::results, BpErrorLevel::note);
  BpError(plain("kept for standard error"), BpErrorShow::diagnostics, BpErrorLevel::error);
  AddNotesWithGroup(BpNoteKind::addedVariable, plain(""), plain(""), plain("CasesCompare"));
  AddNotesWithGroup(BpNoteKind::savedFile, key("CD_Matched"), plain(""), plain("agreed.csv"));
  EXPECT_EQ(textOfCommand(command),
            "Note: All values in the two datasets match.\n"
            "\n"
            "The variable CasesCompare was added to the active dataset.\n"
            "\n"
            "Matched cases were saved in agreed.csv.\n");
}

TEST(TerminalWriter, ShowsTheOtherMessagesAsDiagnostics) {
  RunningCommand command;
  BpError(key("All values in the tw..."), BpErrorShow::results, BpErrorLevel::note);
  BpError(plain("first \x1b[2J"), BpErrorShow::diagnostics, BpErrorLevel::severeError);
  BpError(plain("second"), BpErrorShow::log, BpErrorLevel::warning);
  command->items.emplace_back(parserMessage("\"YEP\" is no value of CASETABLE.", 3, 14));
  Message numbered;
  numbered.number = 7414;
  numbered.show = 2;
  numbered.level = 2;
  numbered.text = Text{StringText{"The VARIABLES subcommand is required.", false}};
  command->items.emplace_back(numbered);
  std::ostringstream out;
  writeDiagnostics(out, *command, TextOptions{.wording = english()});
  EXPECT_EQ(out.str(),
            "Severe error: first \u241B[2J\n"
            "Warning: second\n"
            "Error (line 3, column 14): \"YEP\" is no value of CASETABLE.\n"
            "Warning 7414: The VARIABLES subcommand is required.\n");
}

TEST(TerminalWriter, PutsHeadingsOnlyOverSeveralCommandsThatShowSomething) {
  Document document;
  for (const char* name : {"FIRST", "SILENT", "SECOND"}) {
    RunningCommand command(name);
    if (std::string_view(name) != "SILENT") BpError(plain(name), BpErrorShow::results, BpErrorLevel::note);
    document.commands.push_back(std::move(command.intoDocument().commands[0]));
  }
  EXPECT_EQ(textOfDocument(document, TextOptions{.wording = english()}),
            "FIRST\n═════\n\nNote: FIRST\n\nSECOND\n══════\n\nNote: SECOND\n");
  document.commands.pop_back();
  EXPECT_EQ(textOfDocument(document, TextOptions{.wording = english()}), "Note: FIRST\n");
}

TEST(TerminalWriter, LeavesOutTablesWithoutACellAndAllButTheOneAskedFor) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    procedure.PivotTable(key("Empty"), plain("Empty"), true);
    openMatchedSummary(procedure);
    openMismatchesByVariable(procedure);
  }
  const Document document = command.intoDocument();
  const std::string all = textOfDocument(document, TextOptions{.wording = english()});
  EXPECT_EQ(all.find("Empty"), std::string::npos);
  EXPECT_NE(all.find("Matched Summary"), std::string::npos);
  const TextOptions one{.wording = english(), .onlyTable = "CD_MismatchedByVarsTableName"};
  EXPECT_EQ(textOfDocument(document, one).find("Matched Summary"), std::string::npos);
  EXPECT_NE(textOfDocument(document, one).find("Mismatched By Variables"), std::string::npos);
}

TEST(TerminalWriter, KeepsTheWidthOfTheTerminal) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openCaseTable(procedure, 9, 2);
    openValueLabels(procedure);
    openDictionary(procedure);
  }
  std::istringstream lines(textOfCommand(command, 72));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(displayWidth(line), 72) << line;
}

// What is shown of a sample on a terminal of that width, as lines.
std::vector<std::string> linesOf(void (*open)(BpProcedure&), int width) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    open(procedure);
  }
  std::istringstream shown(textOfCommand(command, width));
  std::vector<std::string> lines;
  for (std::string line; std::getline(shown, line);) lines.push_back(line);
  return lines;
}

TEST(TerminalWriter, FitsWideCharactersIntoTerminalsOfEveryWidth) {
  for (const int width : {40, 80, 120, 200}) {
    expectApprovedTable("east_asian_" + std::to_string(width), &openEastAsianCases, width);
    for (const std::string& line : linesOf(&openEastAsianCases, width)) EXPECT_LE(displayWidth(line), width) << line;
  }
}

TEST(TerminalWriter, RepeatsTheCaseIdsInEveryPanelAndBreaksNoNumber) {
  for (const int width : {40, 60, 80}) {
    int panels = 0;
    int withIds = 0;
    int wholeNumbers = 0;
    for (const std::string& line : linesOf(&openEastAsianCases, width)) {
      panels += line.starts_with("0 ") ? 1 : 0;
      withIds += line.starts_with("0 ") && line.find("近畿") != std::string::npos ? 1 : 0;
      wholeNumbers += line.find("1,234,567,890,132.50") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(panels, 1) << width;
    EXPECT_EQ(withIds, panels) << width;
    EXPECT_EQ(wholeNumbers, 2) << width;
  }
}

TEST(TerminalWriter, KeepsColumnsUnderOneLabelTogetherWhereTheyFit) {
  const auto openGroups = [](BpProcedure& procedure) {
    BpPivotTable table = procedure.PivotTable(key("Groups"), plain("Groups"), true);
    BpDimension rows = table.Dimension(plain("Row"), BpSort::asMade);
    rows.Position(BpPlace::rows, 1, false, false);
    BpDimension columns = table.Dimension(plain("Column"), BpSort::asMade);
    columns.Position(BpPlace::columns, 1, true, false);
    rows.Category(plain("first"));
    columns.Category(plain("one")).Cell(count(1234567890));
    columns.Category(plain("two")).Cell(count(1234567890));
    BpGroup group = columns.Group(plain("together"), true, BpSort::asMade);
    group.Category(plain("three")).Cell(count(1234567890));
    group.Category(plain("four")).Cell(count(1234567890));
  };
  const std::vector<std::string> lines = linesOf(+openGroups, 45);
  const auto withLabel = std::count_if(
      lines.begin(), lines.end(), [](const std::string& line) { return line.find("together") != std::string::npos; });
  EXPECT_EQ(withLabel, 1);
}

TEST(TerminalWriter, BreaksNoWordOfALabelOverAPartOfItsColumns) {
  const auto openNarrowColumns = [](BpProcedure& procedure) {
    BpPivotTable table = procedure.PivotTable(key("Properties"), plain("Properties"), true);
    BpDimension rows = table.Dimension(plain("Variable"), BpSort::asMade);
    rows.Position(BpPlace::rows, 1, false, false);
    BpDimension columns = table.Dimension(plain("Attributes of Variables"), BpSort::asMade);
    columns.Position(BpPlace::columns, 1, false, false);
    rows.Category(plain("a variable of a long name"));
    columns.Category(plain("Width")).Cell(count(8));
    columns.Category(plain("Label")).Cell(plain("a label that is wide enough"));
  };
  for (const int width : {45, 50, 60}) {
    std::string shown;
    for (const std::string& line : linesOf(+openNarrowColumns, width)) {
      EXPECT_LE(displayWidth(line), width) << line;
      shown += line + '\n';
    }
    EXPECT_NE(shown.find("Attributes\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\n\n"), std::string::npos) << "in panels:\n" << shown;
  }
}

TEST(TerminalWriter, GivesUpTheWidthThatATableAsksForRatherThanBreakItApart) {
  const auto panelsIn = [](int width) {
    const std::vector<std::string> lines = linesOf(&openMismatchesByVariable, width);
    return std::count_if(lines.begin(), lines.end(),
                         [](const std::string& line) { return line.starts_with("age (Age in years)"); });
  };
  for (int width = 38; width < 60; ++width) EXPECT_EQ(panelsIn(width), 1) << width;
  EXPECT_EQ(panelsIn(34), 2);
}

std::string shownWith(void (*open)(BpProcedure&), const TextOptions& options) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    open(procedure);
  }
  return textOfDocument(command.intoDocument(), options);
}

TEST(TerminalWriter, ShortensLongBlocksOfRowsUnlessAllAreWanted) {
  const auto many = [](BpProcedure& procedure) { openManyValueLabels(procedure, 500); };
  const std::string shown = shownWith(+many, {.wording = english()});
  EXPECT_NE(shown.find("20     label 20\n"), std::string::npos) << shown;
  EXPECT_NE(shown.find("\n          … 480 more (--full)\nsex "), std::string::npos) << shown;
  EXPECT_EQ(shown.find("label 21"), std::string::npos);
  const std::string full = shownWith(+many, {.wording = english(), .full = true});
  EXPECT_NE(full.find("500    label 500\n"), std::string::npos);
  EXPECT_EQ(full.find("more"), std::string::npos);
  const auto few = [](BpProcedure& procedure) { openManyValueLabels(procedure, 25); };
  EXPECT_EQ(shownWith(+few, {.wording = english()}).find("more"), std::string::npos);
}

TEST(TerminalWriter, ShortensLongListsUnlessAllAreWanted) {
  RunningCommand command;
  BpComposite list("Left out: [%1:, ^1:]1.", false);
  list.Sublist();
  for (int number = 1; number <= 32; ++number) list.Add(plain("v" + std::to_string(number)));
  list.EndSublist();
  list.Finish();
  BpError(list, BpErrorShow::results, BpErrorLevel::note);
  const Document document = command.intoDocument();
  const std::string shown = textOfDocument(document, {.wording = english(), .width = 0});
  EXPECT_TRUE(shown.ends_with("v19, v20, … 12 more (--full).\n")) << shown;
  const std::string full = textOfDocument(document, {.wording = english(), .width = 0, .full = true});
  EXPECT_TRUE(full.ends_with("v31, v32.\n")) << full;
}

std::string withoutStyles(std::string text) {
  for (std::size_t start = text.find('\x1b'); start != std::string::npos; start = text.find('\x1b')) {
    text.erase(start, text.find('m', start) - start + 1);
  }
  return text;
}

TEST(TerminalWriter, LetsTitlesAndDifferingCellsStandOutAndSaysNothingByColourAlone) {
  const auto cases = [](BpProcedure& procedure) {
    openCaseTable(procedure, 2, 3);
    openEastAsianCases(procedure);
    openMatchedSummary(procedure);
  };
  const std::string plainText = shownWith(+cases, {.wording = english()});
  const std::string colored = shownWith(+cases, {.wording = english(), .color = true});
  EXPECT_EQ(withoutStyles(colored), plainText);
  EXPECT_TRUE(colored.starts_with("\x1b[1mCase By Case Comparison\x1b[0m\n")) << colored;
  EXPECT_NE(colored.find("\x1b[1;31m(1) 京都市\x1b[0m"), std::string::npos) << colored;
  EXPECT_NE(colored.find("\x1b[1;31m(2) 1,234,567,890,132.50\x1b[0m"), std::string::npos) << colored;
  const std::string summary = colored.substr(colored.find("Matched Summary"));
  EXPECT_EQ(summary.find("\x1b[1;31m"), std::string::npos) << summary;
}

TEST(TerminalWriter, UsesColorsOnlyWhenAskedTo) {
  RunningCommand command;
  BpError(plain("text"), BpErrorShow::results, BpErrorLevel::warning);
  EXPECT_EQ(textOfDocument(command.intoDocument(), TextOptions{.wording = english(), .color = true}),
            "\x1b[33mWarning\x1b[0m: text\n");
}

}  // namespace
}  // namespace workbench::output
