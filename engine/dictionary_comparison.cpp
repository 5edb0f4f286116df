#include "engine/dictionary_comparison.h"

#include <array>
#include <bit>
#include <cstdint>

namespace compdatas {

namespace {

bool sameMeasure(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return active.GetMeasurementLevel() == compared.GetMeasurementLevel();
}

// Only the width of the print format counts, neither its type nor its decimals.
bool sameFormatWidth(const VRIX_Variable& active, const VRIX_Variable& compared) {
  FormatType type{};
  std::int32_t decimals = 0;
  std::int32_t activeWidth = 0;
  std::int32_t comparedWidth = 0;
  active.GetFormatEx(type, activeWidth, decimals);
  compared.GetFormatEx(type, comparedWidth, decimals);
  return activeWidth == comparedWidth;
}

std::string_view labelOf(const VRIX_Variable& variable) {
  const std::string* label = variable.GetLabel();
  return label == nullptr ? std::string_view() : std::string_view(*label);
}

bool sameLabel(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return VRIXMBstrcmp_A(labelOf(active), labelOf(compared)) == 0;
}

VRIX_ValueLabelMap copyOfLabels(const VRIX_Variable& variable) {
  const RefCountPtr<VRIX_ValueLabelMap> labels = variable.GetValueLabels();
  return labels.IsValid() ? VRIX_ValueLabelMap(*labels) : VRIX_ValueLabelMap(variable.GetType());
}

bool sameValueLabels(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return copyOfLabels(active) == copyOfLabels(compared);
}

bool sameContents(const OBS* left, const OBS* right) {
  return std::bit_cast<std::uint64_t>(*left) == std::bit_cast<std::uint64_t>(*right);
}

// An unknown specification (code -1, and every code that means nothing) always differs, even from itself.
bool sameMissingValues(const VRIX_Variable& active, const VRIX_Variable& compared) {
  std::array<const OBS*, 3> activeValues{};
  std::array<const OBS*, 3> comparedValues{};
  const std::int32_t code = active.GetMissingValues(activeValues[0], activeValues[1], activeValues[2]);
  if (code != compared.GetMissingValues(comparedValues[0], comparedValues[1], comparedValues[2])) return false;

  std::size_t count = 0;
  switch (code) {
    case 0:
      return true;
    case 1:
      count = 1;
      break;
    case 2:
    case -2:
      count = 2;
      break;
    case 3:
    case -3:
      count = 3;
      break;
    default:
      return false;
  }
  for (std::size_t index = 0; index < count; ++index) {
    if (!sameContents(activeValues[index], comparedValues[index])) return false;
  }
  return true;
}

bool sameColumns(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return active.GetDisplayWidth() == compared.GetDisplayWidth();
}

bool sameAlignment(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return active.GetAlignment() == compared.GetAlignment();
}

bool sameRole(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return active.GetRole() == compared.GetRole();
}

bool sameAttributes(const VRIX_Variable& active, const VRIX_Variable& compared) {
  return active.GetAttributes() == compared.GetAttributes();
}

struct PropertyRow {
  Property property;
  bool VariablePair::* flag;
  bool (*equal)(const VRIX_Variable& active, const VRIX_Variable& compared);
};

constexpr auto propertyRows = std::to_array<PropertyRow>({
    {Property::measure, &VariablePair::measureEqual, sameMeasure},
    {Property::format, &VariablePair::formatEqual, sameFormatWidth},
    {Property::label, &VariablePair::labelEqual, sameLabel},
    {Property::valueLabels, &VariablePair::valueLabelsEqual, sameValueLabels},
    {Property::missing, &VariablePair::missingEqual, sameMissingValues},
    {Property::columns, &VariablePair::columnsEqual, sameColumns},
    {Property::align, &VariablePair::alignEqual, sameAlignment},
    {Property::role, &VariablePair::roleEqual, sameRole},
    {Property::attributes, &VariablePair::attributesEqual, sameAttributes},
});

void collectFrom(const VRIX_Variable& variable, std::string AttributeTexts::* text, DatasetComparer& comparer,
                 VariablePair& pair) {
  const DatasourceAttributes& attributes = variable.GetAttributes();
  for (std::int32_t index = 0; index < attributes.Size(); ++index) {
    const std::string& name = attributes.Name(index);
    if (name.starts_with('$')) continue;
    if (comparer.attributeNameSet.insert(name).second) comparer.attributeNames.push_back(name);
    pair.attributeValues[name].*text = attributeValueText(attributes.Values(index));
  }
}

}  // namespace

std::string attributeValueText(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) {
    if (&value != &values.front()) text += ", ";
    text += value;
  }
  return text;
}

void compareProperties(const DatasetComparer& comparer, const VRIX_Variable& active, const VRIX_Variable& compared,
                       VariablePair& pair) {
  pair.dictEqual = true;
  for (const PropertyRow& row : propertyRows) {
    pair.*row.flag = !comparer.isOn(row.property) || row.equal(active, compared);
    pair.dictEqual = pair.dictEqual && pair.*row.flag;
  }
}

void collectAttributes(DatasetComparer& comparer, const VRIX_Variable& active, const VRIX_Variable& compared,
                       VariablePair& pair) {
  collectFrom(active, &AttributeTexts::active, comparer, pair);
  collectFrom(compared, &AttributeTexts::compare, comparer, pair);
}

}  // namespace compdatas
