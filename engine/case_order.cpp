#include "engine/case_order.h"

#include <cstring>

namespace compdatas {

KeyStep stepText(CaseIdKey::Side& side, const OBS* value) {
  side.prevText.swap(side.curText);
  side.curText.resize(side.valueWidth);
  std::memcpy(side.curText.data(), value->text, side.valueWidth);
  const int order = VRIXMBstrcoll_A(side.curText, side.prevText);
  if (order < 0) return KeyStep::back;
  return order == 0 ? KeyStep::unchanged : KeyStep::forward;
}

void resetKey(CaseIdKey& key, std::size_t side) {
  key.side[side].curNumber = key.lowNumber;
  key.side[side].curText = key.lowText;
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
