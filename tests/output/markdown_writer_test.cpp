#include "workbench/output/markdown_writer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "host/messages.h"
#include "tests/output/samples.h"

namespace workbench::output {
namespace {

std::string pageOf(RunningCommand& command) {
  std::ostringstream out;
  writeMarkdown(out, command.intoDocument(), TextOptions{.wording = english()});
  return out.str();
}

std::string pageOfTable(void (*open)(BpProcedure&)) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    open(procedure);
  }
  return pageOf(command);
}

TEST(MarkdownWriter, FlattensNestedHeadersIntoOneRow) {
  EXPECT_EQ(pageOfTable(&openMatchedSummary),
            "## Matched Summary\n"
            "\n"
            "| Results | Statistics | Datasets / Active | Datasets / Comparison |\n"
            "| --- | --- | ---: | ---: |\n"
            "| Cases | Count | 1,200 | 1,000 |\n"
            "| Cases Compared | Count | 999 | 999 |\n"
            "|  | Percent | 83.3% | 99.9% |\n"
            "| Cases Not Compared | Count | 201 | 1 |\n"
            "|  | Percent | 16.8% | 0.1% |\n");
}

TEST(MarkdownWriter, MarksFootnotesAndPutsThemBelow) {
  EXPECT_EQ(pageOfTable(&openMismatchesByVariable),
            "## Mismatched By Variables\n"
            "\n"
            "| Variables | Mismatched / Count | Mismatched / Percent<sup>a</sup> |\n"
            "| --- | ---: | ---: |\n"
            "| age (Age in years) | 12 | 1.2% |\n"
            "| town | 0 | 0.0% |\n"
            "\n"
            "<sup>a</sup> Based on 999 cases compared.\n");
}

TEST(MarkdownWriter, WritesATablePerLayer) {
  EXPECT_EQ(pageOfTable(&openLayers),
            "## Towns by sex\n\nSex: Female\n\n| Town |  |\n| --- | ---: |\n| Ghent | 10 |\n| Delft | 20 |\n"
            "\n## Towns by sex\n\nSex: Male\n\n| Town |  |\n| --- | ---: |\n| Ghent | 10 |\n| Delft | 20 |\n");
}

TEST(MarkdownWriter, KeepsEveryRowOfATableOnOneLineWithAsManyCellsAsHeaders) {
  std::istringstream page(pageOfTable(&openHostileTexts));
  int rows = 0;
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with('|')) continue;
    ++rows;
    int cells = -1;
    for (std::size_t at = 0; at < line.size(); ++at) {
      if (line[at] == '|' && (at == 0 || line[at - 1] != '\\')) ++cells;
    }
    EXPECT_EQ(cells, 3) << line;
  }
  EXPECT_EQ(rows, 12);
}

TEST(MarkdownWriter, ShowsMessagesAndNotesOfTheResults) {
  RunningCommand command;
  BpError(key("All values in the tw..."), BpErrorShow::results, BpErrorLevel::note);
  BpError(plain("kept for standard error"), BpErrorShow::diagnostics, BpErrorLevel::error);
  AddNotesWithGroup(BpNoteKind::addedVariable, plain(""), plain(""), plain("Cases*Compare"));
  EXPECT_EQ(pageOf(command),
            "**Note:** All values in the two datasets match.\n"
            "\n"
            "The variable Cases\\*Compare was added to the active dataset.\n");
}

TEST(MarkdownWriter, PutsHeadingsOverSeveralCommands) {
  Document document;
  for (const char* name : {"FIRST", "SECOND"}) {
    RunningCommand command(name);
    {
      BpProcedure procedure("Test", 1);
      openLayers(procedure);
    }
    document.commands.push_back(std::move(command.intoDocument().commands[0]));
  }
  std::ostringstream out;
  writeMarkdown(out, document, TextOptions{.wording = english()});
  EXPECT_TRUE(out.str().starts_with("## FIRST\n\n### Towns by sex\n")) << out.str();
  EXPECT_NE(out.str().find("\n\n## SECOND\n\n### Towns by sex\n"), std::string::npos) << out.str();
}

}  // namespace
}  // namespace workbench::output
