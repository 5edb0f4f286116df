#include "tables/summary_tables.h"

#include "driver/messages.h"

namespace compdatas {

namespace {

BpString key(const char* text) { return BpString(text, true); }

BpNumber count(std::uint64_t number) { return BpNumber(static_cast<double>(number), BpProcedure::Count()); }

// 0 where there is nothing to take a part of.
BpNumber percent(std::uint64_t number, std::uint64_t base) {
  const double share = base > 0 ? static_cast<double>(number) * 100.0 / static_cast<double>(base) : 0.0;
  return BpNumber(share, BpProcedure::Percent());
}

BpDimension rowDimension(BpPivotTable& table, const char* title) {
  BpDimension dimension = table.Dimension(key(title), BpSort::asMade);
  dimension.Position(BpPlace::rows, 1, false, false);
  return dimension;
}

void writeMatchedSummary(const DatasetComparer& comparer, BpPivotTable& table) {
  BpDimension results = rowDimension(table, "CD_Results");
  BpDimension statistics = rowDimension(table, "CD_Statistics");
  BpDimension dataset = table.Dimension(key("CD_Dataset"), BpSort::asMade);
  dataset.Position(BpPlace::columns, 2, true, false);
  BpGroup datasets = dataset.Group(key("CD_Datasets"), true, BpSort::asMade);
  BpCategory active = datasets.Category(key("CD_Active"));
  BpCategory compared = datasets.Category(key("CD_Comparison"));

  const std::uint64_t activeCases = comparer.readers[activeSide].casesRead;
  const std::uint64_t comparedCases = comparer.readers[compareSide].casesRead;
  const auto writeCounts = [&](std::uint64_t ofActive, std::uint64_t ofCompared) {
    statistics.Category(key("CD_Count"));
    active.Cell(count(ofActive));
    compared.Cell(count(ofCompared));
  };
  const auto writePercents = [&](std::uint64_t ofActive, std::uint64_t ofCompared) {
    statistics.Category(key("CD_Percent"));
    active.Cell(percent(ofActive, activeCases));
    compared.Cell(percent(ofCompared, comparedCases));
  };

  results.Category(key("CD_Cases"));
  writeCounts(activeCases, comparedCases);  // and no percentages

  results.Category(key("CD_CasesCompared"));
  writeCounts(comparer.casesCompared, comparer.casesCompared);
  writePercents(comparer.casesCompared, comparer.casesCompared);

  results.Category(key("CD_CasesNotCompared"));
  writeCounts(activeCases - comparer.casesCompared, comparedCases - comparer.casesCompared);
  writePercents(activeCases - comparer.casesCompared, comparedCases - comparer.casesCompared);
}

void writeMismatchedByCases(const DatasetComparer& comparer, BpPivotTable& table) {
  BpDimension results = rowDimension(table, "CD_Results");
  BpDimension statistics = rowDimension(table, "CD_Statistics");

  results.Category(key("CD_CasesCompared"));
  statistics.Category(key("CD_Count")).Cell(count(comparer.casesCompared));

  results.Category(key("CD_CasesContainingMismatches"));
  statistics.Category(key("CD_Count")).Cell(count(comparer.readers[activeSide].mismatchedCases));
  statistics.Category(key("CD_Percent"))
      .Cell(percent(comparer.readers[compareSide].mismatchedCases, comparer.casesCompared));
}

void writeMismatchedByVariables(const DatasetComparer& comparer, BpPivotTable& table) {
  constexpr std::int32_t dataColumnWidth = 70;
  table.MinDataColumnWidth(dataColumnWidth);
  BpDimension variables = rowDimension(table, "CD_Variables");
  BpDimension mismatched = table.Dimension(key("CD_Mismatched"), BpSort::asMade);
  mismatched.Position(BpPlace::columns, 1, false, false);
  BpCategory counts = mismatched.Category(key("CD_Count"));
  BpCategory percents = mismatched.Category(key("CD_Percent"));

  BpComposite base("Based on ^1 cases compa...", true);
  base.Add(count(comparer.casesCompared));
  base.Finish();
  const BpAnnotation footnote(base.Replicate());
  percents.Note(footnote);

  // Every compared variable has its row, also a case ID and one that never differs.
  for (const VariablePair& pair : comparer.variablePairs) {
    if (!pair.compared) continue;
    variables.Category(BpVariable(comparer.activeSource.GetVariable(pair.activeIndex), BpVariableShow::nameAndLabel));
    counts.Cell(count(pair.mismatchCount));
    percents.Cell(percent(pair.mismatchCount, comparer.casesCompared));
  }
}

}  // namespace

void WriteSummaryTables(const DatasetComparer& comparer, BpPivotTable& matchedSummary, BpPivotTable& mismatchedByCases,
                        BpPivotTable& mismatchedByVariables) {
  const bool caseTable = comparer.options.caseTable();
  if (caseTable) writeMatchedSummary(comparer, matchedSummary);
  if (!caseTable || comparer.casesAllMatch) {
    mismatchedByCases.Destroy();
    mismatchedByVariables.Destroy();
    if (comparer.casesAllMatch) report("All values in the tw...", BpErrorShow::results, BpErrorLevel::note);
    return;
  }
  // Without a difference, but with cases left over, the two tables stay as they were opened.
  if (comparer.readers[activeSide].mismatchedCases == 0) return;
  writeMismatchedByCases(comparer, mismatchedByCases);
  writeMismatchedByVariables(comparer, mismatchedByVariables);
}

}  // namespace compdatas
