// ComparisonFigures: the numbers that a comparison's tables, notes, messages and flags hold.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/data.h"
#include "workbench/output/document.h"

namespace workbench::app {

// Hands over the flags of the active dataset's first `cases` cases in the named variable (0 equal, 1 different, -1
// without a partner), in order, a run of cases at a time. False when the dataset has no such variable.
using FlagVisit = std::function<void(std::span<const OBS> flags)>;
using FlagLookup = std::function<bool(const std::string& variable, std::int64_t cases, const FlagVisit& visit)>;

struct ComparisonFigures {
  struct Variable {
    output::Text name;
    double mismatches = 0;
  };
  // The differing cases in the active dataset, stretch by stretch as StripChart has them.
  struct Places {
    std::vector<double> counts;
    bool areAll = true;  // else only those that the case table lists
  };

  // Cases of either dataset that were read; 0 when none is shown.
  double activeCases = 0;
  double comparisonCases = 0;
  bool hasSummary = false;          // the matched summary says how many cases have a partner
  std::optional<double> compared;   // pairs of cases; of the summary or, without it, of the flags
  std::optional<double> differing;  // of these
  std::vector<Variable> variables;  // that were compared, where a case differs
  std::optional<Places> places;     // where a case differs

  bool allValuesMatch = false;      // says a message
  bool propertiesMatch = false;     // says a message, of the dictionary properties
  double differingProperties = 0;   // cells of the dictionary table that say something
  double unpairedVariables = 0;     // that a message names
  bool isNothingPaired = false;     // no variable, says a message
  bool isPairedByPosition = false;  // the command names no case ID

  double onlyActive() const { return activeCases - compared.value_or(activeCases); }
  double onlyComparison() const { return comparisonCases - compared.value_or(comparisonCases); }
};

// Requires: the command is a comparison that was completed; the flags are those of this run.
ComparisonFigures figuresOf(const output::Command& command, const FlagLookup& flags);

// True of the table that shows differing cases one by one.
bool isCaseTable(const output::Table& table);

// The key under which a table was opened.
std::string_view tableKey(const output::Table& table);

}  // namespace workbench::app
