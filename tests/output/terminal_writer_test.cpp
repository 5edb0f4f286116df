// What a terminal shows, held against files that were looked at and approved. APPROVE=1 in the environment writes what
// is shown now into these files.
#include "workbench/output/terminal_writer.h"

#include <gtest/gtest.h>

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

TEST(TerminalWriter, UsesColorsOnlyWhenAskedTo) {
  RunningCommand command;
  BpError(plain("text"), BpErrorShow::results, BpErrorLevel::warning);
  EXPECT_EQ(textOfDocument(command.intoDocument(), TextOptions{.wording = english(), .color = true}),
            "\x1b[33mWarning\x1b[0m: text\n");
}

}  // namespace
}  // namespace workbench::output
