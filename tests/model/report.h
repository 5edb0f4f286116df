// All that a run leaves behind: what it issued, what the datasets hold afterwards, and in which order it went about it.
#pragma once

#include <string>
#include <vector>

namespace workbench::tests::model {

struct Report {
  std::string outcome;
  std::vector<std::string> items;  // messages, notes and tables, in their order; each ends its last line
  std::string active;              // the active dataset afterwards, described
  std::string matched;             // the saved cases: a dataset described, or the content of a data file; "none"
  std::string mismatched;
  std::string openDatasets;  // the handles of all that are open afterwards, and the names of all data files written
  std::string files;
  // The steps that the journal shows: tables opened and destroyed, cases read and written, outputs opened and closed,
  // messages and notes. Empty when no journal was kept.
  std::vector<std::string> steps;
};

std::string textOf(const Report& report);

// Where two texts begin to differ, with the lines before it; empty when they are the same.
std::string firstDifference(const std::string& foretold, const std::string& observed);

}  // namespace workbench::tests::model
