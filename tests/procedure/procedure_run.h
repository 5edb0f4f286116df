// Runs the real plug-in in the real workbench, over small datasets or fakes, and tells what it issued in short strings.
//
// The active dataset is open as "a", the comparison dataset as "b". A run is one command; what stands behind its name
// is given: run("/COMPDATASET=b /VARIABLES=ALL /CASEID=id").
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/dataset_builder.h"
#include "workbench/datasets/dataset_manager.h"
#include "workbench/output/document.h"

namespace workbench::tests {

class ProcedureRun {
 public:
  ProcedureRun();
  ProcedureRun(const DatasetBuilder& active, const DatasetBuilder& compared);
  ~ProcedureRun();

  // Whose plug-in is run.
  std::string commandName = "COMPARE DATASETS";
  // Replaceable: null means the workbench's own.
  data::ActiveSource* fakeActive = nullptr;
  ServerDataManager* fakeManager = nullptr;
  HostAdapter* fakeAdapter = nullptr;
  // Of what people see.
  std::string language = "en";
  // Whether run() fails the test when the results, written as JSON, do not keep the format.
  bool checksDocument = true;
  // Called when the command has been set up, right before the plug-in is.
  std::function<void()> beforeCall;
  // Called with every journal line, and may throw: then the host's call throws that. Not for lines that begin with "~".
  std::function<void(const std::string& line)> onJournalLine;

  // Runs the command with the journal on. May be called more than once.
  ProcedureRun& run(const std::string& subcommands);
  // The results of the last run, written as JSON.
  std::string document();

  // "completed", "left by VrixGoToCaller", "left by: what() of another exception", "left by what is no exception".
  std::string outcome() const { return outcome_; }
  const output::Command& command() const { return *command_; }

  // Every message on a line of its own: "2/3 The text as it was passed" (show/level); "7414 2 2" for a numbered one;
  // "parser: sentence" and "host: sentence".
  std::string messages() const;
  // Every note on a line: "3: | |CasesCompare".
  std::string notes() const;
  // The keys of the tables that were not destroyed, in order, each with the number of its cells: "KEY(12)".
  std::string tables() const;
  // The first table of that key that was not destroyed; null when there is none.
  const output::Table* table(const std::string& key, std::size_t which = 0) const;
  // The content of the cell whose categories have these keys, in the order of the dimensions; "-" when there is none.
  std::string cell(const std::string& tableKey, const std::vector<std::string>& categories,
                   std::size_t which = 0) const;
  // The leaf categories of a dimension, as passed, joined with " ".
  std::string categories(const std::string& tableKey, std::size_t dimension, std::size_t which = 0) const;

  // The values of a variable of the active dataset, joined with " "; "." for system-missing.
  std::string values(const std::string& variable) const;
  // The same for any dataset that is open.
  std::string valuesOf(const std::string& handle, const std::string& variable) const;

  const std::vector<std::string>& journal() const { return journal_; }
  // Where the first line that contains the text stands in the journal; -1 when there is none.
  int journalLine(const std::string& text, int from = 0) const;
  // All lines that contain one of the texts, in order.
  std::vector<std::string> journalLines(const std::vector<std::string>& texts) const;
  // The first of the texts that is in no journal line behind that of the text before it; empty: all stand in order.
  std::string missingInOrder(const std::vector<std::string>& texts) const;
  // The objects in the journal that were never destroyed, in order, handles of tables left out.
  std::string leftAlive() const;

  datasets::DatasetManager& manager() { return manager_; }
  std::shared_ptr<data::Dataset> active() const { return manager_.active(); }

 private:
  datasets::DatasetManager manager_;
  std::unique_ptr<output::Command> command_;
  std::string outcome_;
  std::vector<std::string> journal_;
};

// A text as it was passed: its key, its number, its variable's name, its value; composites as pattern{item|item}.
std::string passed(const output::Text& text);

}  // namespace workbench::tests
