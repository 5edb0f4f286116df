// The HTML report as text: what a browser makes of it is the matter of tests/browser.
#include "workbench/output/html_writer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "host/messages.h"
#include "tests/output/samples.h"
#include "workbench/output/html_parts.h"
#include "workbench/output/html_text.h"
#include "workbench/output/moment.h"

namespace workbench::output {
namespace {

std::string reportOf(const Document& document, const text::Wording& wording = english()) {
  std::ostringstream out;
  writeHtmlReport(out, document, TextOptions{.wording = wording, .moment = MomentOfResults{1795311360}});
  return out.str();
}

// The report of a command that opened these tables, its style sheet and its script left out.
std::string tablesOf(void (*open)(BpProcedure&)) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    open(procedure);
  }
  std::string report = reportOf(command.intoDocument());
  const std::size_t start = report.find("<main");
  return report.substr(start, report.find("</main>") - start);
}

int countOf(const std::string& part, const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(HtmlText, CannotBecomeMarkup) {
  EXPECT_EQ(htmlEscaped("<a href=\"x\">'&amp;'</a>"), "&lt;a href=&quot;x&quot;&gt;&#39;&amp;amp;&#39;&lt;/a&gt;");
}

TEST(HtmlText, ShowsWhatCannotBeSeen) {
  EXPECT_EQ(htmlEscaped("a\x01\xFF"), "a\xE2\x90\x81\xEF\xBF\xBD");
  EXPECT_EQ(htmlEscaped("x\xE2\x80\xAEy"), "x&lt;U+202E&gt;y");
}

TEST(HtmlElement, ClosesItselfAndLeavesOutEmptyAttributes) {
  std::ostringstream out;
  {
    const HtmlElement list(out, "ul", {{"class", ""}, {"id", "a\"b"}});
    writeHtml(out, "li", {}, "1 < 2");
  }
  EXPECT_EQ(out.str(), "<ul id=\"a&quot;b\"><li>1 &lt; 2</li>\n</ul>\n");
}

TEST(HtmlReport, AllowsItsOwnStyleAndScriptAndNothingElse) {
  const std::string report = reportOf(Document());
  EXPECT_TRUE(contains(report, "default-src &#39;none&#39;; style-src &#39;" + std::string(htmlStyle.hash)));
  EXPECT_TRUE(contains(report, "script-src &#39;" + std::string(htmlScript.hash)));
  EXPECT_TRUE(htmlStyle.hash.starts_with("sha256-") && htmlStyle.hash.ends_with("=") && htmlStyle.hash.size() == 51);
  for (const char* outside : {"http:", "https:", "src=", "@import", "url(h", "<link", "style=\""}) {
    EXPECT_FALSE(contains(report, outside)) << outside;
  }
}

TEST(HtmlReport, SaysSoWhenThereIsNothing) { EXPECT_TRUE(contains(reportOf(Document()), "There are no results.")); }

TEST(HtmlReport, BearsItsDateInOnePlaceAndIsTheSameBesides) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openMatchedSummary(procedure);
  }
  const std::string report = reportOf(command.intoDocument());
  EXPECT_EQ(countOf("2026", report), 2) << "in the time element, for machines and for people";
  EXPECT_TRUE(contains(report, "<time datetime=\"2026-11-22T01:36:00Z\">November 22, 2026 at 01:36 UTC</time>"));
}

TEST(HtmlReport, IsWrittenInItsLanguage) {
  RunningCommand command;
  {
    BpProcedure procedure("Compare Datasets", 7);
    openMatchedSummary(procedure);
  }
  const auto german = text::Wording::load("de");
  const std::string report = reportOf(command.intoDocument(), **german);
  EXPECT_TRUE(contains(report, "<html lang=\"de\">"));
  EXPECT_TRUE(contains(report, "<h1>Datasets vergleichen</h1>"));
  EXPECT_TRUE(contains(report, "22. November 2026"));
  EXPECT_FALSE(contains(report, "Contents"));
}

TEST(HtmlReport, PutsTheAnswerFirstAndThePicturesBesideTheirNumbers) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openMatchedSummary(procedure);
  }
  command->answer = Answer{Verdict::different, {{"{0} of {1} differ", {1204, 50000}}, {"and more", {}}}};
  BarChart bars{{"Bars", {}}, 1000, {}, 2};
  bars.bars.resize(2);
  bars.bars[0] = {Text{StringText{"a<b", false}}, 40};
  bars.bars[1] = {Text{StringText{"c", false}}, 10};
  command->charts.emplace_back(bars);
  const std::string report = reportOf(command.intoDocument());
  EXPECT_TRUE(
      contains(report, "<p class=\"answer\"><strong>1,204 of 50,000 differ</strong>; <span>and more</span></p>"));
  EXPECT_LT(report.find("1,204 of"), report.find("<main"));
  EXPECT_TRUE(contains(report, "<span class=\"label\">a&lt;b</span><svg class=\"bar\" aria-hidden=\"true\">"));
  EXPECT_TRUE(contains(report, "<rect class=\"fill\" width=\"25.000%\" height=\"100%\">"));
  EXPECT_TRUE(contains(report, "<b>10</b> <small>1.0%</small>"));
  EXPECT_TRUE(contains(report, "2 variables have none."));
}

TEST(HtmlReport, ShowsMessagesOfEveryLevelAndNotes) {
  RunningCommand command;
  {
    BpProcedure procedure("Test", 1);
    openMatchedSummary(procedure);
    BpError(plain("look here"), BpErrorShow::diagnostics, BpErrorLevel::warning);
    AddNotesWithGroup(BpNoteKind::addedVariable, plain(""), plain(""), plain("flag"));
  }
  const std::string report = reportOf(command.intoDocument());
  EXPECT_TRUE(contains(report, "<li class=\"warning\"><strong>Warning</strong> <span>look here</span></li>"));
  EXPECT_TRUE(contains(report, "<span>The variable flag was added to the active dataset.</span>"));
}

TEST(HtmlTable, HasScopesAndSpansAndNamesTheHeadersOfCellsUnderSeveral) {
  const std::string table = tablesOf(&openMatchedSummary);
  EXPECT_TRUE(contains(table, "<th class=\"over\" id=\"c1-t1-c0\" scope=\"col\" colspan=\"2\">Datasets</th>")) << table;
  EXPECT_TRUE(contains(table, "<th id=\"c1-t1-r2\" scope=\"row\" rowspan=\"2\">Cases Compared</th>")) << table;
  EXPECT_TRUE(
      contains(table, "<td class=\"n\" headers=\"c1-t1-c0 c1-t1-c1 c1-t1-r0 c1-t1-r1\" data-value=\"1200\">1,200</td>"))
      << table;
  EXPECT_FALSE(contains(table, "data-tools")) << "rows under a common header cannot be sorted";
}

TEST(HtmlTable, MarksCellsWithTheValuesOfTwoSidesAndCountsThemByColumn) {
  const std::string table = tablesOf([](BpProcedure& procedure) { openCaseTable(procedure, 2, 3); });
  EXPECT_TRUE(contains(table, "data-tools=\"yes\""));
  const int differing = countOf("<td class=\"differs\"", table);
  EXPECT_GT(differing, 0);
  EXPECT_EQ(countOf("<bdi>(1) ", table), differing);
  EXPECT_EQ(countOf("\n<bdi>(2) ", table), differing);
  EXPECT_TRUE(contains(table, "data-differing=\"")) << table;
}

TEST(HtmlTable, LeadsFromMarksToFootnotes) {
  const std::string table = tablesOf(&openMismatchesByVariable);
  EXPECT_TRUE(contains(table, "<sup><a href=\"#c1-t1-note-a\">[a]</a></sup>")) << table;
  EXPECT_TRUE(contains(table, "<li id=\"c1-t1-note-a\"><sup>a</sup> Based on 999 cases compared.</li>")) << table;
  EXPECT_TRUE(contains(table, "data-value=\"1.2")) << "a rounded percentage sorts by what it is";
}

TEST(HtmlTable, ShowsTheLayerOfEachOfItsTables) {
  const std::string table = tablesOf(&openLayers);
  EXPECT_GT(countOf("<caption>", table), 1) << table;
  EXPECT_EQ(countOf("<h2 id=\"c1-t", table), 1);
}

}  // namespace
}  // namespace workbench::output
