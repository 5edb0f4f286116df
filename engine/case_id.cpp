#include "engine/case_id.h"

#include <algorithm>
#include <utility>

#include "driver/messages.h"

namespace compdatas {

namespace {

bool sameStorageType(const VRIX_Variable& left, const VRIX_Variable& right) {
  return (left.GetType() == 0) == (right.GetType() == 0);
}

// Every side starts at the bottom, so that a dataset's first case always passes the order check.
CaseIdKey makeKey(const VRIX_Variable& active, std::int32_t activeIndex, const VRIX_Variable& compared,
                  std::int32_t compareIndex) {
  CaseIdKey key;
  key.width = active.GetType();
  key.name = active.GetName();
  key.activeVariable = &active;
  key.lowNumber = pvGetCmnMch()->constants[CmnMch::lowSentinel];
  key.lowText.assign(static_cast<std::size_t>(key.width), ' ');
  key.side[activeSide].varIndex = activeIndex;
  key.side[compareSide].varIndex = compareIndex;
  key.side[activeSide].valueWidth = static_cast<std::size_t>(key.width);
  key.side[compareSide].valueWidth = static_cast<std::size_t>(std::min(key.width, compared.GetType()));
  for (CaseIdKey::Side& side : key.side) {
    side.prevNumber = key.lowNumber;
    side.curNumber = key.lowNumber;
    // The walk swaps and refills these two and allocates nothing. More than a string has room for in itself makes the
    // swap an exchange of pointers.
    const std::size_t room = std::max(static_cast<std::size_t>(key.width), sizeof(std::string));
    side.prevText.reserve(room);
    side.curText.reserve(room);
  }
  return key;
}

}  // namespace

bool validateCaseIds(DatasetComparer& comparer) {
  comparer.caseIdKeys.clear();
  const std::vector<std::int32_t>& wanted = comparer.options.caseIdVariables();
  for (const std::int32_t activeIndex : wanted) {
    const VRIX_Variable& active = comparer.activeSource.GetVariable(activeIndex);
    const std::int32_t compareIndex = comparer.findInCompare(active.GetName());
    if (compareIndex == -1) continue;
    const VRIX_Variable& compared = comparer.compareSource->GetVariable(compareIndex);
    if (!sameStorageType(active, compared)) continue;
    comparer.caseIdKeys.push_back(makeKey(active, activeIndex, compared, compareIndex));
  }
  if (comparer.caseIdKeys.size() == wanted.size()) return true;

  reportRefusal("The comparison cannot be performed because the case ID variables do not match in the two datasets.");
  comparer.dictionaryState = DictionaryState::nothingPaired;
  return false;
}

}  // namespace compdatas
