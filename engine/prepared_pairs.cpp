#include "engine/prepared_pairs.h"

namespace compdatas {

PreparedPairs::PreparedPairs(DatasetComparer& comparer) {
  for (VariablePair& pair : comparer.variablePairs) {
    if (!pair.compared) continue;
    const std::int32_t compareWidth = comparer.compareSource->GetVariable(pair.compareIndex).GetType();
    pair.equalNow = true;
    pairs_.push_back(
        {&pair, pair.outSlots, static_cast<std::size_t>(pair.width), static_cast<std::size_t>(compareWidth)});
  }
  different_.reserve(pairs_.size());
}

// How two variables lie to each other is the same in all cases, so the first two tell it.
void PreparedPairs::joinRuns(const VRIX_InputCaseIterator& active, const VRIX_InputCaseIterator& compared) {
  // Right behind the last pair, on each side.
  const OBS* activeEnd = nullptr;
  const OBS* compareEnd = nullptr;
  for (std::size_t index = 0; index < pairs_.size(); ++index) {
    const Pair& prepared = pairs_[index];
    const VariablePair& pair = *prepared.pair;
    const OBS* activeValue = active.GetObsPointer(pair.activeIndex);
    const OBS* compareValue = compared.GetObsPointer(pair.compareIndex);
    const bool bytesDecide = prepared.activeWidth == prepared.compareWidth;
    const bool adjoins = activeValue == activeEnd && compareValue == compareEnd;
    if (!adjoins || !bytesDecide || !runs_.back().bytesDecide) {
      runs_.push_back({pair.activeIndex, pair.compareIndex, 0, index, index, bytesDecide});
    }
    runs_.back().slots += prepared.slots;
    runs_.back().behind = index + 1;
    activeEnd = activeValue + prepared.slots;
    compareEnd = compareValue + prepared.slots;
  }
}

void PreparedPairs::compareSingly(const Run& run, const OBS* active, const OBS* compared) {
  const Pair* const behind = pairs_.data() + run.behind;
  for (const Pair* prepared = pairs_.data() + run.first; prepared != behind; ++prepared) {
    const bool same = run.bytesDecide && haveSameBytes(active, compared, prepared->slots);
    if (!same && !areEqual(*prepared, active, compared)) note(*prepared->pair, active, compared);
    active += prepared->slots;
    compared += prepared->slots;
  }
}

bool PreparedPairs::areEqual(const Pair& prepared, const OBS* active, const OBS* compared) {
  if (prepared.activeWidth == 0) return numbersEqual(active->number, compared->number, prepared.pair->fuzzyNumeric);
  return textsEqual(active->text, prepared.activeWidth, compared->text, prepared.compareWidth);
}

void PreparedPairs::note(VariablePair& pair, const OBS* active, const OBS* compared) {
  pair.equalNow = false;
  pair.activeValue = active;
  pair.compareValue = compared;
  ++pair.mismatchCount;
  different_.push_back(&pair);
}

void PreparedPairs::forgetDifferences() {
  for (VariablePair* pair : different_) pair->equalNow = true;
  different_.clear();
}

}  // namespace compdatas
