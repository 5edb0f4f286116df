#include "workbench/data/working/order_check.h"

#include <algorithm>

namespace workbench::data {
namespace {

SortedRow rowOf(const std::vector<SortKey>& keys, const OBS* oneCase, std::int64_t number) {
  SortedRow row{number, {}};
  for (const SortKey& key : keys) {
    if (key.isNumeric) {
      row.keys.emplace_back(oneCase[key.slot].number);
    } else {
      row.keys.emplace_back(std::string(keyText(key, oneCase)));
    }
  }
  return row;
}

}  // namespace

void OrderCheck::look(const CaseSpan& span) {
  for (std::size_t index = 0; index < span.count && isInOrder(); ++index) {
    const OBS* const current = span.cases + index * span.caseSlots;
    const OBS* const previous = index == 0 ? last_.data() : current - span.caseSlots;
    const std::int64_t row = cases_ + static_cast<std::int64_t>(index) + 1;
    if (row == 1 || compareCases(keys_, previous, current) <= 0) continue;
    firstOutOfOrder_ = std::pair(rowOf(keys_, previous, row - 1), rowOf(keys_, current, row));
  }
  cases_ += static_cast<std::int64_t>(span.count);
  keepLast(span);
}

void OrderCheck::keepLast(const CaseSpan& span) {
  const OBS* const last = span.cases + (span.count - 1) * span.caseSlots;
  last_.resize(span.caseSlots);
  for (const SortKey& key : keys_) {
    const std::size_t slots = key.isNumeric ? 1 : (key.bytes + sizeof(OBS) - 1) / sizeof(OBS);
    std::copy_n(last + key.slot, slots, last_.data() + key.slot);
  }
}

}  // namespace workbench::data
