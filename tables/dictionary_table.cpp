#include "tables/dictionary_table.h"

#include <array>
#include <optional>

#include "tables/property_display.h"
#include "tables/value_labels_table.h"

namespace compdatas {

namespace {

BpString key(const char* text) { return BpString(text, true); }
BpString plain(const std::string& text) { return BpString(text, false); }
BpString empty() { return BpString("", false); }
BpNumber count(std::int32_t number) { return BpNumber(number, BpProcedure::Count()); }

// The two variables of a row, and the footnote of a value-label cell.
struct RowSubject {
  const VRIX_Variable& active;
  const VRIX_Variable& compared;
  const BpAnnotation& seeValueLabels;
};

std::int32_t printWidth(const VRIX_Variable& variable) {
  FormatType type{};
  std::int32_t width = 0;
  std::int32_t decimals = 0;
  variable.GetFormatEx(type, width, decimals);
  return width;
}

void writeWidth(BpCategory& category, const RowSubject& row) {
  writeTwoValues(category, count(printWidth(row.active)), count(printWidth(row.compared)));
}

BpString labelText(const VRIX_Variable& variable) {
  const std::string* label = variable.GetLabel();
  return label == nullptr ? empty() : plain(*label);
}

void writeLabel(BpCategory& category, const RowSubject& row) {
  writeTwoValues(category, labelText(row.active), labelText(row.compared));
}

void writeValueLabels(BpCategory& category, const RowSubject& row) {
  category.Cell(key("CD_Mismatch"));
  category.CellNote(row.seeValueLabels);
}

void writeMissing(BpCategory& category, const RowSubject& row) {
  MissingValueSet activeMissing(row.active);
  BpComposite active(MissingValuePattern(activeMissing), false);
  AddMissingValueCells(active, activeMissing);
  MissingValueSet comparedMissing(row.compared);
  BpComposite compared(MissingValuePattern(comparedMissing), false);
  AddMissingValueCells(compared, comparedMissing);
  writeTwoValues(category, active, compared);
}

void writeColumns(BpCategory& category, const RowSubject& row) {
  writeTwoValues(category, count(row.active.GetDisplayWidth()), count(row.compared.GetDisplayWidth()));
}

void writeAlign(BpCategory& category, const RowSubject& row) {
  writeTwoValues(category, key(AlignmentKey(row.active.GetAlignment())),
                 key(AlignmentKey(row.compared.GetAlignment())));
}

void writeMeasure(BpCategory& category, const RowSubject& row) {
  writeTwoValues(category, key(MeasurementLevelKey(row.active.GetMeasurementLevel())),
                 key(MeasurementLevelKey(row.compared.GetMeasurementLevel())));
}

void writeRole(BpCategory& category, const RowSubject& row) {
  writeTwoValues(category, key(RoleKey(row.active.GetRole())), key(RoleKey(row.compared.GetRole())));
}

struct PropertyColumn {
  Property property;
  const char* title;
  bool VariablePair::* equal;
  void (*writeDifference)(BpCategory& category, const RowSubject& row);
};

// In the order shown: the measurement level comes after the alignment, although it is the first of the properties.
constexpr auto propertyColumns = std::to_array<PropertyColumn>({
    {Property::format, "CD_AttributeWidth", &VariablePair::formatEqual, writeWidth},
    {Property::label, "CD_AttributeLabel", &VariablePair::labelEqual, writeLabel},
    {Property::valueLabels, "CD_AttributeValueLabels", &VariablePair::valueLabelsEqual, writeValueLabels},
    {Property::missing, "CD_AttributeMissing", &VariablePair::missingEqual, writeMissing},
    {Property::columns, "CD_AttributeColumns", &VariablePair::columnsEqual, writeColumns},
    {Property::align, "CD_AttributeAlign", &VariablePair::alignEqual, writeAlign},
    {Property::measure, "CD_AttributeMeasure", &VariablePair::measureEqual, writeMeasure},
    {Property::role, "CD_AttributeRole", &VariablePair::roleEqual, writeRole},
});

void writeAttributes(BpGroup& custom, const VariablePair& pair) {
  for (const auto& [name, texts] : pair.attributeValues) {
    BpCategory category = custom.Category(plain(name));
    if (VRIXMBstrcmp_A(texts.active, texts.compare) == 0) {
      category.Cell(empty());
    } else {
      writeTwoValues(category, plain(texts.active), plain(texts.compare));
    }
  }
}

}  // namespace

void WriteDictionaryTables(const DatasetComparer& comparer) {
  if (comparer.dictionaryState != DictionaryState::differences) return;

  std::uint64_t valueLabelMismatches = 0;
  {
    BpPivotTable table = comparer.procedure.PivotTable(key("CD_DictCompTableName"), key("Dictionary Comparison"), true);
    table.Caption(key("(1) is the Active Datset an..."));
    const BpAnnotation seeValueLabels(key("See the Value Labels Com...").Replicate());

    BpDimension variables = table.Dimension(key("CD_Variable"), BpSort::asMade);
    variables.Position(BpPlace::rows, 1, false, false);
    BpDimension attributes = table.Dimension(key("CD_Attributes"), BpSort::asMade);
    attributes.Position(BpPlace::columns, 1, false, false);
    for (const PropertyColumn& column : propertyColumns) {
      if (comparer.isOn(column.property)) attributes.Category(key(column.title));
    }
    std::optional<BpGroup> custom;
    if (comparer.isOn(Property::attributes)) {
      custom = attributes.Group(key("ID"), true, BpSort::asMade).Group(key("CD_AttributeCustom"), true, BpSort::asMade);
      for (const std::string& name : comparer.attributeNameSet) custom->Category(plain(name));
    }

    for (const VariablePair& pair : comparer.variablePairs) {
      if (!pair.compared) continue;
      const RowSubject row{comparer.activeSource.GetVariable(pair.activeIndex),
                           comparer.compareSource->GetVariable(pair.compareIndex), seeValueLabels};
      variables.Category(BpVariable(row.active, BpVariableShow::nameAndLabel));
      for (const PropertyColumn& column : propertyColumns) {
        if (!comparer.isOn(column.property)) continue;
        BpCategory category = attributes.Category(key(column.title));
        if (pair.*column.equal) {
          category.Cell(empty());
        } else {
          column.writeDifference(category, row);
        }
      }
      if (comparer.isOn(Property::valueLabels) && !pair.valueLabelsEqual) ++valueLabelMismatches;
      if (custom) writeAttributes(*custom, pair);
    }
  }
  if (valueLabelMismatches > 0) writeValueLabelsTable(comparer);
}

}  // namespace compdatas
