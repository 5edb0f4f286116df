#include "engine/case_order.h"

#include <bit>
#include <cstdint>

namespace compdatas {

namespace {

bool sameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

enum class KeyStep { back, unchanged, forward };

// Takes the current value for the previous one and the case's value for the current one.
KeyStep stepText(CaseIdKey::Side& side, const OBS* value) {
  side.prevText.swap(side.curText);
  side.curText.assign(value->text, side.valueWidth);
  const int order = VRIXMBstrcoll_A(side.curText, side.prevText);
  if (order < 0) return KeyStep::back;
  return order == 0 ? KeyStep::unchanged : KeyStep::forward;
}

KeyStep stepNumber(CaseIdKey::Side& side, const OBS* value) {
  side.prevNumber = side.curNumber;
  side.curNumber = value->number;
  if (side.prevNumber > side.curNumber) return KeyStep::back;
  return sameBits(side.prevNumber, side.curNumber) ? KeyStep::unchanged : KeyStep::forward;
}

// Lets a key start again from the bottom, because a key before it went up.
void resetKey(CaseIdKey& key, std::size_t side) {
  key.side[side].curNumber = key.lowNumber;
  key.side[side].curText = key.lowText;
}

}  // namespace

ReadStatus readNextCase(DatasetComparer& comparer, std::size_t side) {
  CaseReader& reader = comparer.readers[side];
  if (!reader.iterator->NextCase()) return ReadStatus::ended;
  const std::int64_t position = reader.iterator->GetCurrentPosition();
  if (position == reader.lastPosition) return ReadStatus::ended;  // it did not move
  reader.lastPosition = position;
  ++reader.casesRead;

  std::vector<CaseIdKey>& keys = comparer.caseIdKeys;
  for (std::size_t index = 0; index < keys.size(); ++index) {
    CaseIdKey& key = keys[index];
    CaseIdKey::Side& current = key.side[side];
    const OBS* value = reader.iterator->GetObsPointer(current.varIndex);
    const KeyStep step = key.width != 0 ? stepText(current, value) : stepNumber(current, value);
    if (step == KeyStep::back) return ReadStatus::outOfOrder;
    // Only the key right behind one that went up starts afresh. A blank text there equals the bottom it starts from,
    // so it counts as unchanged, and the key behind it is held against its value of the case before.
    if (step == KeyStep::forward && index + 1 < keys.size()) resetKey(keys[index + 1], side);
  }
  return ReadStatus::current;
}

int compareKeys(const std::vector<CaseIdKey>& keys) {
  for (const CaseIdKey& key : keys) {
    const CaseIdKey::Side& active = key.side[activeSide];
    const CaseIdKey::Side& compared = key.side[compareSide];
    if (key.width != 0) {
      const int order = VRIXMBstrcoll_A(active.curText, compared.curText);
      if (order != 0) return order;
    } else if (!sameBits(active.curNumber, compared.curNumber)) {
      return compared.curNumber > active.curNumber ? -1 : 1;
    }
  }
  return 0;
}

}  // namespace compdatas
