// Case order: reads the next case of a dataset, checking that it is sorted by the case IDs, and compares the keys of
// the two current cases.
//
// Reading is inline because it is done twice for every pair of cases, whose values may be compared as fast as memory
// delivers them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/dataset_comparer.h"
#include "engine/value_equality.h"

namespace compdatas {

enum class ReadStatus {
  current,     // a case is current
  ended,       // there are no more cases
  outOfOrder,  // the case lies before the one that was read last
};

// Ties are in order. Requires: the side's iterator is open.
ReadStatus readNextCase(DatasetComparer& comparer, std::size_t side);

// Where a key went from one case to the next.
enum class KeyStep { back, unchanged, forward };

// These take the current value for the previous one and the case's value for the current one.
KeyStep stepText(CaseIdKey::Side& side, const OBS* value);

inline KeyStep stepNumber(CaseIdKey::Side& side, const OBS* value) {
  side.prevNumber = side.curNumber;
  side.curNumber = value->number;
  if (side.prevNumber > side.curNumber) return KeyStep::back;
  return sameBits(side.prevNumber, side.curNumber) ? KeyStep::unchanged : KeyStep::forward;
}

// Lets a key start again from the bottom, because a key before it went up.
void resetKey(CaseIdKey& key, std::size_t side);

// Takes the key values of a side's current case.
inline ReadStatus stepKeys(std::vector<CaseIdKey>& keys, const VRIX_InputCaseIterator& cases, std::size_t side) {
  CaseIdKey* const behind = keys.data() + keys.size();
  for (CaseIdKey* key = keys.data(); key != behind; ++key) {
    CaseIdKey::Side& current = key->side[side];
    const OBS* value = cases.GetObsPointer(current.varIndex);
    const KeyStep step = key->width != 0 ? stepText(current, value) : stepNumber(current, value);
    if (step == KeyStep::back) return ReadStatus::outOfOrder;
    // Only the key right behind one that went up starts afresh. A blank text there equals the bottom it starts from,
    // so it counts as unchanged, and the key behind it is held against its value of the case before.
    if (step == KeyStep::forward && key + 1 != behind) resetKey(key[1], side);
  }
  return ReadStatus::current;
}

// The order of the current values of a string key, the active one's first.
int textOrder(const CaseIdKey& key);

// Negative when the active case's key is lower, positive when the comparison case's is, 0 when they are equal or there
// are no case IDs. Requires: both sides have a current case.
inline int compareKeys(const std::vector<CaseIdKey>& keys) {
  for (const CaseIdKey& key : keys) {
    if (key.width != 0) {
      const int order = textOrder(key);
      if (order != 0) return order;
      continue;
    }
    const double active = key.side[activeSide].curNumber;
    const double compared = key.side[compareSide].curNumber;
    if (!sameBits(active, compared)) return compared > active ? -1 : 1;
  }
  return 0;
}

inline ReadStatus readNextCase(DatasetComparer& comparer, std::size_t side) {
  CaseReader& reader = comparer.readers[side];
  if (!reader.iterator->NextCase()) return ReadStatus::ended;
  const std::int64_t position = reader.iterator->GetCurrentPosition();
  if (position == reader.lastPosition) return ReadStatus::ended;  // it did not move
  reader.lastPosition = position;
  ++reader.casesRead;
  return stepKeys(comparer.caseIdKeys, *reader.iterator, side);
}

}  // namespace compdatas
