// A comparison of two small datasets as one would do it by hand: plain lists, no blocks, no iterators, nothing of the
// engine. It foretells all that a run is to issue.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workbench::tests::naive {

struct Variable {
  std::string name;
  int width = 0;  // 0: a number
  bool isPlainNumber = true;
};

struct Value {
  double number = 0;
  std::string text;  // as many bytes as the variable is wide
};
using Case = std::vector<Value>;

struct Dataset {
  std::vector<Variable> variables;
  std::vector<Case> cases;
  std::optional<std::size_t> filter;  // of the active dataset: the position of a number
};

struct Command {
  std::vector<std::string> variables;  // none: ALL
  std::vector<std::string> caseIds;
  bool flag = true;
  bool save = false;  // both kinds of cases, as datasets
  bool caseTable = true;
  std::optional<int> limit = 100;  // none: no limit
};

// What is issued, in the words of ProcedureRun and table_text.h.
struct Result {
  std::string outcome;
  std::string messages;
  std::string notes;
  std::string tables;
  std::string flags;
  std::string matchedSummary;  // the cells of the tables
  std::string byCases;
  std::string byVariables;
  std::string caseByCase;
  std::string caption;
  std::string matched;  // the saved cases: "name: value value ..." per variable
  std::string mismatched;
};

Result compare(const Dataset& active, const Dataset& compared, const Command& command);

}  // namespace workbench::tests::naive
