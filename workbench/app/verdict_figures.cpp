#include "workbench/app/verdict_figures.h"

#include <algorithm>
#include <variant>

#include "workbench/language/tokens.h"
#include "workbench/text/folding.h"

namespace workbench::app {

namespace {

using output::Cell;
using output::Command;
using output::Item;
using output::Message;
using output::Note;
using output::Table;
using output::Text;

constexpr std::string_view matchedSummary = "CD_MatchedSummaryTableName";
constexpr std::string_view mismatchedByCases = "CD_MismatchedByCasesTableName";
constexpr std::string_view mismatchedByVariables = "CD_MismatchedByVarsTableName";
constexpr std::string_view datasetSummary = "CD_CompSummaryTableName";
constexpr std::string_view dictionaryTable = "CD_DictCompTableName";
constexpr std::string_view caseTable = "CD_CaseByCaseComparisonTableName";
constexpr std::string_view allValuesMatch = "All values in the tw...";
constexpr std::string_view allPropertiesMatch = "All attribute values in the da...";
constexpr std::string_view noVariablePaired = "The variables do not match in t...";
constexpr std::string_view someNotPaired = "The following variables could...[%1:, ^1:]1";

constexpr std::int64_t mostStretches = 200;

std::string_view keyOf(const Text& text) {
  if (const auto* string = std::get_if<output::StringText>(&text.held)) return string->key;
  if (const auto* composite = std::get_if<output::CompositeText>(&text.held)) return composite->pattern;
  return {};
}

double numberOf(const Cell& cell) {
  const auto* number = std::get_if<output::NumberText>(&cell.content->held);
  return number == nullptr ? 0 : number->value;
}

bool isEmptyText(const Cell& cell) {
  const auto* text = std::get_if<output::StringText>(&cell.content->held);
  return text != nullptr && text->key.empty();
}

const Text& titleAt(const Table& table, std::size_t cell, std::size_t dimension) {
  return table.dimensions[dimension].nodes[static_cast<std::size_t>(table.at(cell)[dimension])].title;
}

// True when the cell's category in some dimension has the key.
bool standsAt(const Table& table, std::size_t cell, std::string_view key) {
  for (std::size_t dimension = 0; dimension < table.dimensions.size(); ++dimension) {
    if (keyOf(titleAt(table, cell, dimension)) == key) return true;
  }
  return false;
}

// The number in the row of that key, in the column of that key where the table has such columns.
std::optional<double> countAt(const Table& table, std::string_view row, std::string_view column = {}) {
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    if (standsAt(table, cell, row) && standsAt(table, cell, "CD_Count") &&
        (column.empty() || standsAt(table, cell, column))) {
      return numberOf(table.cells[cell]);
    }
  }
  return std::nullopt;
}

void take(const Message& message, ComparisonFigures& figures) {
  const std::string_view key = keyOf(message.text);
  if (key == allValuesMatch) figures.allValuesMatch = true;
  if (key == allPropertiesMatch) figures.propertiesMatch = true;
  if (key == noVariablePaired) figures.isNothingPaired = true;
  if (key != someNotPaired) return;
  figures.unpairedVariables = 1;
  const auto* sentence = std::get_if<output::CompositeText>(&message.text.held);
  if (sentence == nullptr || sentence->items.empty()) return;
  const auto* names = std::get_if<output::ListText>(&sentence->items.front().held);
  if (names != nullptr) figures.unpairedVariables = static_cast<double>(names->items.size());
}

void takeMatchedSummary(const Table& table, ComparisonFigures& figures) {
  if (table.cells.empty()) return;
  figures.hasSummary = true;
  figures.activeCases = countAt(table, "CD_Cases", "CD_Active").value_or(0);
  figures.comparisonCases = countAt(table, "CD_Cases", "CD_Comparison").value_or(0);
  figures.compared = countAt(table, "CD_CasesCompared", "CD_Active").value_or(0);
}

void takeCaseCounts(const Table& table, ComparisonFigures& figures) {
  if (figures.hasSummary) return;
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    if (!standsAt(table, cell, "CD_Cases")) continue;
    double& cases = standsAt(table, cell, "CD_Active") ? figures.activeCases : figures.comparisonCases;
    cases = numberOf(table.cells[cell]);
  }
}

void takeVariables(const Table& table, ComparisonFigures& figures) {
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    if (!standsAt(table, cell, "CD_Count")) continue;
    for (std::size_t dimension = 0; dimension < table.dimensions.size(); ++dimension) {
      const Text& title = titleAt(table, cell, dimension);
      if (keyOf(title) != "CD_Count") figures.variables.push_back({title, numberOf(table.cells[cell])});
    }
  }
}

void take(const Table& table, ComparisonFigures& figures) {
  if (table.destroyed) return;
  const std::string_view key = tableKey(table);
  if (key == matchedSummary) {
    takeMatchedSummary(table, figures);
  } else if (key == mismatchedByCases) {
    figures.differing = countAt(table, "CD_CasesContainingMismatches");
  } else if (key == mismatchedByVariables) {
    takeVariables(table, figures);
  } else if (key == dictionaryTable) {
    figures.differingProperties = static_cast<double>(
        std::count_if(table.cells.begin(), table.cells.end(), [](const Cell& cell) { return !isEmptyText(cell); }));
  } else if (key == datasetSummary) {
    takeCaseCounts(table, figures);
  }
}

std::size_t stretchesOf(double cases) {
  return static_cast<std::size_t>(std::min(mostStretches, static_cast<std::int64_t>(cases)));
}

// Where the i-th of n stretches begins, from 0.
std::int64_t startOf(std::size_t stretch, std::size_t stretches, double cases) {
  return static_cast<std::int64_t>(stretch) * static_cast<std::int64_t>(cases) / static_cast<std::int64_t>(stretches);
}

// What the flags tell of every case of the active dataset: where those that differ lie, and how many there are.
void takeFlags(const std::string& variable, const FlagLookup& flags, ComparisonFigures& figures) {
  const std::size_t stretches = stretchesOf(figures.activeCases);
  ComparisonFigures::Places places{std::vector<double>(stretches, 0), true};
  double alone = 0;
  std::int64_t first = 0;  // of the run that is handed over
  std::size_t stretch = 0;
  const auto visit = [&](std::span<const OBS> run) {
    const std::int64_t end = first + static_cast<std::int64_t>(run.size());
    while (first < end) {
      const std::int64_t next = std::min(end, startOf(stretch + 1, stretches, figures.activeCases));
      const auto part =
          run.subspan(run.size() - static_cast<std::size_t>(end - first), static_cast<std::size_t>(next - first));
      std::size_t differing = 0;
      std::size_t equal = 0;
      for (const OBS& flag : part) {
        differing += flag.number == 1.0 ? 1 : 0;
        equal += flag.number == 0.0 ? 1 : 0;
      }
      places.counts[stretch] += static_cast<double>(differing);
      alone += static_cast<double>(part.size() - differing - equal);
      first = next;
      if (next == startOf(stretch + 1, stretches, figures.activeCases)) ++stretch;
    }
  };
  if (!flags(variable, static_cast<std::int64_t>(figures.activeCases), visit)) return;
  if (!figures.hasSummary) {
    double differing = 0;
    for (const double count : places.counts) differing += count;
    figures.differing = differing;
    figures.compared = figures.activeCases - alone;
  }
  if (stretches > 0) figures.places = std::move(places);
}

// The cases that the case table lists, by their row numbers in the active dataset.
void takeListedCases(const Table& table, ComparisonFigures& figures) {
  const std::size_t stretches = stretchesOf(figures.activeCases);
  if (table.destroyed || table.cells.empty() || stretches == 0) return;
  ComparisonFigures::Places places{std::vector<double>(stretches, 0), true};
  double listed = 0;
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    const std::int64_t row = static_cast<std::int64_t>(numberOf(table.cells[cell]));  // from 1
    const std::int64_t cases = static_cast<std::int64_t>(figures.activeCases);
    if (!standsAt(table, cell, "CD_Active") || row < 1 || row > cases) continue;
    std::size_t stretch = static_cast<std::size_t>((row - 1) * static_cast<std::int64_t>(stretches) / cases);
    while (stretch + 1 < stretches && startOf(stretch + 1, stretches, figures.activeCases) < row) ++stretch;
    places.counts[stretch] += 1;
    listed += 1;
  }
  places.areAll = listed == figures.differing;
  figures.places = std::move(places);
}

bool namesNoCaseId(const Command& command) {
  const std::vector<TokenInfoObj> tokens = language::tokensOf(command.syntax);
  for (std::size_t place = 1; place < tokens.size(); ++place) {
    if (language::isPunctuation(tokens[place - 1], "/") && text::sameName(tokens[place].getString(), "CASEID")) {
      return false;
    }
  }
  return !tokens.empty();
}

}  // namespace

ComparisonFigures figuresOf(const Command& command, const FlagLookup& flags) {
  ComparisonFigures figures;
  std::optional<std::string> flagVariable;
  const Table* listedCases = nullptr;
  for (const Item& item : command.items) {
    if (const auto* message = std::get_if<Message>(&item)) {
      take(*message, figures);
    } else if (const auto* note = std::get_if<Note>(&item)) {
      if (note->group == static_cast<int>(BpNoteKind::addedVariable)) flagVariable = keyOf(note->texts[2]);
    } else {
      const Table& table = *std::get<std::unique_ptr<Table>>(item);
      take(table, figures);
      if (isCaseTable(table)) listedCases = &table;
    }
  }
  if (figures.hasSummary && !figures.differing) figures.differing = 0;  // the tables of mismatches have no cell
  if (flagVariable && figures.differing != 0.0) takeFlags(*flagVariable, flags, figures);
  if (!figures.places && listedCases != nullptr) takeListedCases(*listedCases, figures);
  figures.isPairedByPosition = namesNoCaseId(command);
  return figures;
}

bool isCaseTable(const Table& table) { return tableKey(table) == caseTable; }

std::string_view tableKey(const Table& table) { return keyOf(table.title); }

}  // namespace workbench::app
