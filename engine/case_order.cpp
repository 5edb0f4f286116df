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

int textOrder(const CaseIdKey& key) {
  return VRIXMBstrcoll_A(key.side[activeSide].curText, key.side[compareSide].curText);
}

}  // namespace compdatas
