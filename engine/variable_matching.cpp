#include "engine/variable_matching.h"

#include <algorithm>
#include <array>

#include "driver/messages.h"
#include "engine/dictionary_comparison.h"

namespace compdatas {

namespace {

struct SelectableProperty {
  Property property;
  const char* keyword;
};

constexpr auto selectableProperties = std::to_array<SelectableProperty>({
    {Property::measure, "MEASURE"},
    {Property::format, "WIDTH"},
    {Property::label, "LABEL"},
    {Property::valueLabels, "VALUELABELS"},
    {Property::missing, "MISSING"},
    {Property::columns, "COLUMNS"},
    {Property::align, "ALIGN"},
    {Property::role, "ROLE"},
    {Property::attributes, "ATTRIBUTES"},
});

// The plain number formats.
constexpr auto fuzzyFormats =
    std::to_array<FormatType>({FormatType::comma, FormatType::dollar, FormatType::number, FormatType::restricted,
                               FormatType::scientific, FormatType::percent, FormatType::dot, FormatType::customA,
                               FormatType::customB, FormatType::customC, FormatType::customD, FormatType::customE});

std::vector<std::int32_t> variablesToExamine(const DatasetComparer& comparer) {
  std::vector<std::int32_t> indexes = comparer.options.compareVariables();
  for (const CaseIdKey& key : comparer.caseIdKeys) {
    const std::int32_t index = key.side[activeSide].varIndex;
    if (std::find(indexes.begin(), indexes.end(), index) == indexes.end()) indexes.push_back(index);
  }
  std::sort(indexes.begin(), indexes.end());
  return indexes;
}

void selectProperties(DatasetComparer& comparer) {
  const VarPropertySet chosen = comparer.options.varProperties();
  const bool all = comparer.options.varPropertiesAll();
  const auto select = [&](Property property, bool on) { comparer.propertyOn[static_cast<std::size_t>(property)] = on; };
  select(Property::presence, true);
  select(Property::storageType, true);
  for (const SelectableProperty& row : selectableProperties) {
    select(row.property, all || std::any_of(chosen.begin(), chosen.end(), [&](const std::string& word) {
                           return VRIXMBstricmp_A(word, row.keyword) == 0;
                         }));
  }
}

bool isFuzzy(const VRIX_Variable& variable) {
  FormatType type{};
  std::int32_t width = 0;
  std::int32_t decimals = 0;
  variable.GetFormatEx(type, width, decimals);
  return std::find(fuzzyFormats.begin(), fuzzyFormats.end(), type) != fuzzyFormats.end();
}

bool isCaseIdVariable(const DatasetComparer& comparer, std::int32_t activeIndex) {
  return std::any_of(comparer.caseIdKeys.begin(), comparer.caseIdKeys.end(),
                     [&](const CaseIdKey& key) { return key.side[activeSide].varIndex == activeIndex; });
}

VariablePair examine(DatasetComparer& comparer, std::int32_t activeIndex) {
  const VRIX_Variable& active = comparer.activeSource.GetVariable(activeIndex);
  VariablePair pair;
  pair.activeIndex = activeIndex;
  pair.width = active.GetType();
  pair.fuzzyNumeric = isFuzzy(active);

  const std::int32_t compareIndex = comparer.findInCompare(active.GetName());
  if (compareIndex == -1) return pair;
  pair.compareIndex = compareIndex;
  pair.foundInCompare = true;

  const VRIX_Variable& compared = comparer.compareSource->GetVariable(compareIndex);
  pair.typeEqual = !comparer.isOn(Property::storageType) || (active.GetType() == 0) == (compared.GetType() == 0);
  if (!pair.typeEqual) return pair;

  pair.compared = true;
  pair.isCaseId = isCaseIdVariable(comparer, activeIndex);
  pair.outSlots = pair.width != 0 ? static_cast<std::uint32_t>(pair.width + 7) / 8U : 1U;
  compareProperties(comparer, active, compared, pair);
  collectAttributes(comparer, active, compared, pair);
  return pair;
}

// Names what cannot be compared: first what VARIABLES named and the active dataset does not hold, then the pairs.
void reportUncompared(const DatasetComparer& comparer) {
  BpComposite text("The following variables could...[%1:, ^1:]1", true);
  text.Sublist();
  for (const VrixVarName& name : comparer.options.variablesNotInActive()) text.Add(BpString(name.GetText(), false));
  for (const VariablePair& pair : comparer.variablePairs) {
    if (pair.compared) continue;
    text.Add(BpString(comparer.activeSource.GetVariable(pair.activeIndex).GetName(), false));
  }
  text.EndSublist();
  text.Finish();
  BpError(text, BpErrorShow::results, BpErrorLevel::warning);
}

void closingChecks(DatasetComparer& comparer) {
  const std::size_t notInActive = comparer.options.variablesNotInActive().size();
  std::size_t uncompared = notInActive;
  std::size_t equal = 0;
  std::size_t different = 0;
  for (const VariablePair& pair : comparer.variablePairs) {
    if (!pair.compared) {
      ++uncompared;
    } else if (pair.dictEqual) {
      ++equal;
    } else {
      ++different;
    }
  }

  comparer.dictionaryState = DictionaryState::differences;
  if (uncompared > 0) {
    if (uncompared == comparer.variablePairs.size() + notInActive) {
      report("The variables do not match in t...", BpErrorShow::log, BpErrorLevel::error);
      comparer.dictionaryState = DictionaryState::nothingPaired;
    } else {
      reportUncompared(comparer);
    }
  }
  if (comparer.options.varPropertiesNone() && comparer.dictionaryState == DictionaryState::differences) {
    comparer.dictionaryState = DictionaryState::nothingToShow;
  }
  if (equal > 0 && different == 0 && comparer.dictionaryState != DictionaryState::nothingToShow) {
    report("All attribute values in the da...", BpErrorShow::results, BpErrorLevel::note);
    comparer.dictionaryState = DictionaryState::nothingToShow;
  }
}

}  // namespace

void matchVariables(DatasetComparer& comparer) {
  const std::vector<std::int32_t> indexes = variablesToExamine(comparer);
  if (!indexes.empty()) selectProperties(comparer);
  comparer.variablePairs.reserve(indexes.size());
  for (const std::int32_t index : indexes) comparer.variablePairs.push_back(examine(comparer, index));
  closingChecks(comparer);
}

}  // namespace compdatas
