#include "tables/value_labels_table.h"

#include <set>
#include <string>

namespace compdatas {

namespace {

BpString key(const char* text) { return BpString(text, true); }
BpString plain(const std::string& text) { return BpString(text, false); }

// The labels of a variable; where it has none, an empty map for the active variable's type.
VRIX_ValueLabelMap labelsOf(const VRIX_Variable& variable, std::int32_t activeType) {
  const RefCountPtr<VRIX_ValueLabelMap> labels = variable.GetValueLabels();
  return labels.IsValid() ? VRIX_ValueLabelMap(*labels) : VRIX_ValueLabelMap(activeType);
}

struct Columns {
  BpCategory active;
  BpCategory compared;
  BpCategory mismatched;
};

void writeLabels(Columns& columns, const std::string* active, const std::string* compared) {
  columns.active.Cell(plain(active == nullptr ? "." : *active));
  columns.compared.Cell(plain(compared == nullptr ? "." : *compared));
  const bool equal = active != nullptr && compared != nullptr && VRIXMBstrcmp_A(*active, *compared) == 0;
  columns.mismatched.Cell(equal ? plain("") : key("CD_Mismatch"));
}

template <class Value>
void takeValues(VRIX_ValueLabelMap& labels, std::set<Value>& values) {
  Value value{};
  const std::string* label = nullptr;
  while (labels.GetNextPair(value, label)) values.insert(value);
}

// The values of both maps in ascending order, one row each.
template <class Value>
void writeVariable(BpDimension& valueDimension, Columns& columns, const VRIX_Variable& variable,
                   VRIX_ValueLabelMap& active, VRIX_ValueLabelMap& compared) {
  active.Reset();
  compared.Reset();
  std::set<Value> values;
  takeValues(active, values);
  takeValues(compared, values);
  for (const Value& value : values) {
    valueDimension.Category(BpDataValue(variable, value, BpValueShow::inPrintFormat));
    writeLabels(columns, active.GetLabel(value), compared.GetLabel(value));
  }
}

}  // namespace

void writeValueLabelsTable(const DatasetComparer& comparer) {
  BpPivotTable table =
      comparer.procedure.PivotTable(key("CD_ValueLabelsCompTableName"), key("Value Labels Comparison"), true);
  BpDimension variables = table.Dimension(key("CD_Variable"), BpSort::asMade);
  variables.Position(BpPlace::rows, 1, false, false);
  BpDimension values = table.Dimension(key("CD_Value"), BpSort::asMade);
  // The variables are placed a second time, on purpose: the values keep the host's default place, innermost in the
  // rows.
  variables.Position(BpPlace::rows, 2, false, false);
  BpDimension comparison = table.Dimension(key("CD_Comparison"), BpSort::asMade);
  comparison.Position(BpPlace::columns, 1, true, false);
  BpGroup sides = comparison.Group(key("CD_Comparison"), true, BpSort::asMade);
  BpCategory activeColumn = sides.Category(key("CD_Active"));
  BpCategory comparedColumn = sides.Category(key("CD_Comparison"));
  BpCategory mismatchedColumn = sides.Category(key("CD_Mismatched"));
  Columns columns{activeColumn, comparedColumn, mismatchedColumn};

  for (const VariablePair& pair : comparer.variablePairs) {
    if (!pair.compared || pair.valueLabelsEqual) continue;
    const VRIX_Variable& active = comparer.activeSource.GetVariable(pair.activeIndex);
    const VRIX_Variable& compared = comparer.compareSource->GetVariable(pair.compareIndex);
    variables.Category(BpVariable(active, BpVariableShow::nameAndLabel));
    VRIX_ValueLabelMap activeLabels = labelsOf(active, active.GetType());
    VRIX_ValueLabelMap comparedLabels = labelsOf(compared, active.GetType());
    if (active.GetType() == 0) {
      writeVariable<double>(values, columns, active, activeLabels, comparedLabels);
    } else {
      writeVariable<std::string>(values, columns, active, activeLabels, comparedLabels);
    }
  }
}

}  // namespace compdatas
