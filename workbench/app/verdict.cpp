#include "workbench/app/verdict.h"

#include <algorithm>
#include <array>
#include <variant>

namespace workbench::app {

namespace {

using output::Command;
using output::Item;
using output::Message;
using output::Note;
using output::Table;
using output::Text;
using output::Verdict;

constexpr std::string_view comparisonTitle = "Compare Datasets";
constexpr std::string_view matchedSummary = "CD_MatchedSummaryTableName";
constexpr std::string_view mismatchedByCases = "CD_MismatchedByCasesTableName";
constexpr std::string_view datasetSummary = "CD_CompSummaryTableName";
constexpr std::string_view dictionaryTable = "CD_DictCompTableName";
constexpr std::string_view caseTable = "CD_CaseByCaseComparisonTableName";
constexpr std::string_view allValuesMatch = "All values in the tw...";
// Messages that name variables which could not be paired.
constexpr auto unpairedVariables = std::to_array<std::string_view>(
    {"The variables do not match in t...", "The following variables could...[%1:, ^1:]1"});

std::string_view keyOf(const Text& text) {
  if (const auto* string = std::get_if<output::StringText>(&text.held)) return string->key;
  if (const auto* composite = std::get_if<output::CompositeText>(&text.held)) return composite->pattern;
  return {};
}

double numberOf(const Text& text) {
  const auto* number = std::get_if<output::NumberText>(&text.held);
  return number == nullptr ? 0 : number->value;
}

// True when the cell's category in some dimension has the key.
bool standsAt(const Table& table, std::size_t cell, std::string_view key) {
  const std::span<const std::int32_t> at = table.at(cell);
  for (std::size_t dimension = 0; dimension < at.size(); ++dimension) {
    const auto& nodes = table.dimensions[dimension].nodes;
    if (keyOf(nodes[static_cast<std::size_t>(at[dimension])].title) == key) return true;
  }
  return false;
}

bool anyCountAbove0(const Table& table, std::string_view category) {
  for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
    if (standsAt(table, cell, category) && standsAt(table, cell, "CD_Count") &&
        numberOf(*table.cells[cell].content) > 0) {
      return true;
    }
  }
  return false;
}

bool isEmptyText(const output::Cell& cell) {
  const auto* text = std::get_if<output::StringText>(&cell.content->held);
  return text != nullptr && text->key.empty();
}

// What the items of one comparison say.
struct Evidence {
  bool difference = false;  // one was found
  bool summary = false;     // the matched summary is there, so nothing but it and the mismatch tables has to be asked
  bool allValuesMatch = false;
  std::optional<std::string> flagVariable;
  double activeCases = 0;  // of the second Comparison Summary; 0 when it shows none
  double comparisonCases = 0;
};

void take(const Message& message, Evidence& evidence) {
  const std::string_view key = keyOf(message.text);
  if (key == allValuesMatch) evidence.allValuesMatch = true;
  if (std::find(unpairedVariables.begin(), unpairedVariables.end(), key) != unpairedVariables.end()) {
    evidence.difference = true;
  }
}

void take(const Note& note, Evidence& evidence) {
  if (note.group == static_cast<int>(BpNoteKind::addedVariable)) evidence.flagVariable = keyOf(note.texts[2]);
}

void take(const Table& table, Evidence& evidence) {
  if (table.destroyed) return;
  const std::string_view key = tableKey(table);
  if (key == matchedSummary && !table.cells.empty()) {
    evidence.summary = true;
    if (anyCountAbove0(table, "CD_CasesNotCompared")) evidence.difference = true;
  } else if (key == mismatchedByCases) {
    if (anyCountAbove0(table, "CD_CasesContainingMismatches")) evidence.difference = true;
  } else if (key == dictionaryTable) {
    if (!std::all_of(table.cells.begin(), table.cells.end(), isEmptyText)) evidence.difference = true;
  } else if (key == datasetSummary) {
    for (std::size_t cell = 0; cell < table.cells.size(); ++cell) {
      if (!standsAt(table, cell, "CD_Cases")) continue;
      double& cases = standsAt(table, cell, "CD_Active") ? evidence.activeCases : evidence.comparisonCases;
      cases = numberOf(*table.cells[cell].content);
    }
  }
}

Evidence evidenceOf(const Command& command) {
  Evidence evidence;
  for (const Item& item : command.items) {
    if (const auto* message = std::get_if<Message>(&item)) take(*message, evidence);
    if (const auto* note = std::get_if<Note>(&item)) take(*note, evidence);
    if (const auto* table = std::get_if<std::unique_ptr<Table>>(&item)) take(**table, evidence);
  }
  return evidence;
}

}  // namespace

std::optional<ComparisonVerdict> verdictOf(const Command& command, const FlagLookup& flags) {
  if (command.procedureTitle != comparisonTitle) return std::nullopt;
  if (command.outcome != Command::Outcome::completed) return ComparisonVerdict{Verdict::trouble, false};

  const Evidence evidence = evidenceOf(command);
  if (evidence.difference) return ComparisonVerdict{Verdict::different, false};
  if (evidence.summary) return ComparisonVerdict{Verdict::same, false};

  // Without the summaries: flags and the numbers of cases tell of every case, those of the comparison dataset that have
  // no partner included.
  if (evidence.flagVariable) {
    const std::optional<std::int64_t> notEqual =
        flags(*evidence.flagVariable, static_cast<std::int64_t>(evidence.activeCases));
    if (notEqual) {
      const bool same = *notEqual == 0 && evidence.activeCases == evidence.comparisonCases;
      return ComparisonVerdict{same ? Verdict::same : Verdict::different, false};
    }
  }
  // Where not all values match there is a difference; where they do, cases without a partner may still have been
  // passed.
  return ComparisonVerdict{Verdict::different, evidence.allValuesMatch};
}

Verdict worse(Verdict left, Verdict right) { return left < right ? right : left; }

int exitStatus(const std::optional<Verdict>& verdict) { return verdict ? static_cast<int>(*verdict) : 0; }

bool isCaseTable(const Table& table) { return tableKey(table) == caseTable; }

std::string_view tableKey(const Table& table) { return keyOf(table.title); }

}  // namespace workbench::app
