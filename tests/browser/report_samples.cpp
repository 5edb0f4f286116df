// Writes reports of the tables that tests of the output make, one HTML file per kind: report_samples FOLDER.
#include <array>
#include <fstream>
#include <iostream>
#include <string>

#include "host/messages.h"
#include "tests/output/samples.h"
#include "workbench/output/html_writer.h"

namespace workbench::output {
namespace {

void openWideCaseTable(BpProcedure& procedure) { openCaseTable(procedure, 9, 4); }

void openNothing(BpProcedure&) {}

void openEverything(BpProcedure& procedure) {
  openMatchedSummary(procedure);
  openMismatchesByVariable(procedure);
  openWideCaseTable(procedure);
  openValueLabels(procedure);
  openDictionary(procedure);
  openLayers(procedure);
  openHostileTexts(procedure);
}

struct Sample {
  const char* name;
  void (*open)(BpProcedure&);
};

constexpr auto samples = std::to_array<Sample>({
    {"matched_summary", &openMatchedSummary},
    {"mismatches_by_variable", &openMismatchesByVariable},
    {"case_table", &openWideCaseTable},
    {"value_labels", &openValueLabels},
    {"dictionary", &openDictionary},
    {"layers", &openLayers},
    {"hostile_texts", &openHostileTexts},
    {"nothing", &openNothing},
    {"everything", &openEverything},
});

constexpr const char* hostile = "</style><script>alert(1)</script><img src=x onerror=alert(1)>\"'&\x01\xFF\xE2\x80\xAE";

// Messages of every level, a table of hostile texts, and pictures of them: names, labels and counts of all sizes.
Document hostileDocument() {
  RunningCommand command("TEST");
  command->syntax = hostile;
  {
    BpProcedure procedure(hostile, 1);
    openHostileTexts(procedure);
    for (const BpErrorLevel level :
         {BpErrorLevel::note, BpErrorLevel::warning, BpErrorLevel::error, BpErrorLevel::severeError}) {
      BpError(plain(hostile), BpErrorShow::results, level);
    }
    AddNotesWithGroup(BpNoteKind::savedFile, plain("12"), plain(""), plain(hostile));
  }
  command->answer = Answer{Verdict::different, {{"{0} of {1}", {12, 1000000}}, {"<b>{0}</b>", {3}}}};
  BarChart bars{{"<script>", {}}, 1000000, {}, 3};
  bars.bars.resize(40);
  for (std::size_t bar = 0; bar < bars.bars.size(); ++bar) {
    bars.bars[bar].label.held = StringText{hostile, false};
    bars.bars[bar].count = static_cast<double>(40 - bar);
  }
  StripChart strip{{"</svg>", {}}, 1000000, std::vector<double>(200, 0), Phrase{"<note>", {}}};
  strip.counts[7] = 1;
  strip.counts[199] = 900;
  PartsChart parts{{"</figcaption>", {}}, {{"<a>", {}}, {"<b>", {}}, {"<c>", {}}}, {{{"<d>", {}}, {999990, 1, 9}}}};
  command->charts = {parts, bars, strip};
  return command.intoDocument();
}

void write(const std::string& folder, const std::string& name, const Document& document) {
  std::ofstream file(folder + "/" + name + ".html", std::ios::binary);
  writeHtmlReport(file, document, TextOptions{.wording = english(), .moment = MomentOfResults{}});
}

int writeAll(const std::string& folder) {
  for (const Sample& sample : samples) {
    RunningCommand command;
    {
      BpProcedure procedure("Test", 1);
      sample.open(procedure);
    }
    write(folder, sample.name, command.intoDocument());
  }
  write(folder, "hostile", hostileDocument());
  return 0;
}

}  // namespace
}  // namespace workbench::output

int main(int argumentCount, char** arguments) {
  if (argumentCount == 2) return workbench::output::writeAll(arguments[1]);
  std::cerr << "usage: report_samples FOLDER\n";
  return 2;
}
