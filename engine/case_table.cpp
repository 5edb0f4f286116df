#include "engine/case_table.h"

#include <string_view>

namespace compdatas {

namespace {

BpNumber count(std::uint64_t number) { return BpNumber(static_cast<double>(number), BpProcedure::Count()); }

BpDimension makeCases(BpPivotTable& table) {
  BpDimension cases = table.Dimension(BpString("CD_Cases", true), BpSort::asMade);
  cases.Position(BpPlace::columns, 1, true, false);
  return cases;
}

BpDimension makeResults(BpPivotTable& table) {
  BpDimension results = table.Dimension(BpString("CD_Results", true), BpSort::asMade);
  results.Position(BpPlace::rows, 1, true, true);
  return results;
}

BpDataValue valueOf(const VRIX_Variable& variable, const OBS* value) {
  const std::int32_t width = variable.GetType();
  if (width == 0) return BpDataValue(variable, value->number, BpValueShow::inPrintFormat);
  return BpDataValue(variable, std::string_view(value->text, static_cast<std::size_t>(width)),
                     BpValueShow::inPrintFormat);
}

}  // namespace

CaseTable::CaseTable(DatasetComparer& comparer, BpPivotTable& table)
    : comparer_(comparer),
      table_(table),
      cases_(makeCases(table)),
      caseIds_(cases_.Group(BpString("CD_CaseID", true), true, BpSort::asMade)),
      rows_(cases_.Group(BpString("CD_Row", true), true, BpSort::asMade)),
      results_(makeResults(table)) {}

void CaseTable::show() {
  if (limitReached()) return;
  // The number of the case among those with a difference, before it is counted: the first one is 0.
  results_.Category(count(comparer_.readers[activeSide].mismatchedCases));
  showCaseIds();
  showRowNumbers();
  ++shown_;
  showValues();
}

void CaseTable::finish() {
  const BpString sides("(1) is the Active Datset an...", true);
  if (!limitReached()) {
    table_.Caption(sides);
    return;
  }
  BpComposite limit("Displaying the first ...", true);
  limit.Add(BpNumber(comparer_.options.tableLimit(), BpProcedure::Count()));
  limit.Add(count(comparer_.readers[activeSide].mismatchedCases));
  limit.Finish();
  BpComposite caption("^1\n^2", false);
  caption.Add(sides);
  caption.Add(limit);
  caption.Finish();
  table_.Caption(caption);
}

bool CaseTable::limitReached() const {
  return !comparer_.options.tableLimitNone() && shown_ >= comparer_.options.tableLimit();
}

void CaseTable::showCaseIds() {
  for (const CaseIdKey& key : comparer_.caseIdKeys) {
    const CaseIdKey::Side& active = key.side[activeSide];
    BpCategory category = caseIds_.Category(BpString(key.name, false));
    if (key.width == 0) {
      category.Cell(BpDataValue(*key.activeVariable, active.curNumber, BpValueShow::inPrintFormat));
    } else {
      category.Cell(BpDataValue(*key.activeVariable, std::string_view(active.curText), BpValueShow::inPrintFormat));
    }
  }
}

void CaseTable::showRowNumbers() {
  rows_.Category(BpString("CD_Active", true)).Cell(count(comparer_.readers[activeSide].casesRead));
  rows_.Category(BpString("CD_Compare", true)).Cell(count(comparer_.readers[compareSide].casesRead));
}

void CaseTable::showValues() {
  for (const VariablePair& pair : comparer_.variablePairs) {
    if (!pair.compared || pair.isCaseId) continue;
    const VRIX_Variable& active = comparer_.activeSource.GetVariable(pair.activeIndex);
    BpCategory category = cases_.Category(BpVariable(active, BpVariableShow::nameAndLabel));
    if (pair.equalNow) {
      category.Cell(BpString("", false));
      continue;
    }
    const VRIX_Variable& compared = comparer_.compareSource->GetVariable(pair.compareIndex);
    BpComposite values("(1) ^1\n(2) ^2", false);
    values.Add(valueOf(active, pair.activeValue));
    values.Add(valueOf(compared, pair.compareValue));
    values.Finish();
    category.Cell(values);
  }
}

}  // namespace compdatas
