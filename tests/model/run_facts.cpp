#include "tests/model/run_facts.h"

#include <algorithm>
#include <sstream>

#include "tests/model/cell_text.h"
#include "tests/model/host_dataset.h"
#include "tests/model/observed_table.h"

namespace workbench::tests::model {

namespace {

const std::string cellStart = "    ";

std::vector<std::string> cellLinesOf(const output::Table& table) {
  std::vector<std::string> lines;
  std::istringstream stream(observedTable(table));
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with(cellStart)) lines.push_back(line);
  }
  return lines;
}

// A count of the only cell at these categories; 0 when there is none.
std::size_t countAt(const ProcedureRun& run, const std::string& table, const std::vector<std::string>& categories) {
  const std::string cell = run.cell(table, categories);
  return cell == "-" || cell == "no table" ? 0 : std::stoul(cell);
}

}  // namespace

std::size_t RunFacts::flagged(double value) const {
  return static_cast<std::size_t>(std::count(flags.begin(), flags.end(), value));
}

RunFacts factsOf(const ObservedRun& observed) {
  const ProcedureRun& run = observed.run();
  RunFacts facts;
  facts.outcome = run.outcome();
  for (const std::string& item : observed.report({}).items) {
    if (!item.starts_with("table ") && !item.starts_with("note ")) facts.messages.push_back(item);
  }
  const Dataset active = fromHost(*run.active());
  for (const Case& one : active.cases) facts.flags.push_back(numberOf(one.back()));  // it was added behind all others
  const std::string summary = "CD_MatchedSummaryTableName";
  facts.activeRead = countAt(run, summary, {"CD_Cases", "CD_Count", "CD_Active"});
  facts.comparedRead = countAt(run, summary, {"CD_Cases", "CD_Count", "CD_Comparison"});
  facts.pairs = countAt(run, summary, {"CD_CasesCompared", "CD_Count", "CD_Active"});
  facts.mismatched = countAt(run, "CD_MismatchedByCasesTableName", {"CD_CasesContainingMismatches", "CD_Count"});
  for (const Variable& variable : active.variables) {
    const std::string cell = run.cell("CD_MismatchedByVarsTableName", {variable.name, "CD_Count"});
    if (cell != "-" && cell != "no table") facts.byVariable[folded(variable.name)] = std::stoul(cell);
  }
  return facts;
}

std::vector<std::string> cellLines(const ObservedRun& observed) {
  std::vector<std::string> lines;
  for (const output::Item& item : observed.run().command().items) {
    const auto* table = std::get_if<std::unique_ptr<output::Table>>(&item);
    if (table == nullptr || (*table)->destroyed) continue;
    for (const std::string& line : cellLinesOf(**table)) lines.push_back(line);
  }
  return lines;
}

std::set<std::string> differingProperties(const ObservedRun& observed) {
  std::set<std::string> found;
  const output::Table* table = observed.run().table("CD_DictCompTableName");
  for (std::size_t index = 0; table != nullptr && index < table->cells.size(); ++index) {
    if (observedText(*table->cells[index].content) == plain("")) continue;
    const auto title = [&](std::size_t dimension) {
      const auto node = static_cast<std::size_t>(table->at(index)[dimension]);
      return passed(table->dimensions[dimension].nodes[node].title);
    };
    found.insert(folded(title(0)) + ' ' + title(1));
  }
  return found;
}

}  // namespace workbench::tests::model
