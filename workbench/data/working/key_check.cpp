#include "workbench/data/working/key_check.h"

#include <algorithm>

namespace workbench::data {

void KeyCheck::look(const CaseSpan& span) {
  for (std::size_t index = 0; index < span.count; ++index) {
    const OBS* const current = span.cases + index * span.caseSlots;
    const OBS* const previous = index == 0 ? last_.data() : current - span.caseSlots;
    const std::int64_t row = cases_ + static_cast<std::int64_t>(index) + 1;
    if (missing_.isMissing(current)) {
      if (++findings_.missing == 1) findings_.firstMissingRow = row;
    }
    if (row > 1 && isInOrder()) compare(previous, current, row);
  }
  cases_ += static_cast<std::int64_t>(span.count);
  keepLast(span);
}

void KeyCheck::compare(const OBS* previous, const OBS* current, std::int64_t row) {
  const int order = compareCases(keys_, previous, current);
  if (order > 0) {
    findings_.firstOutOfOrder =
        std::pair(SortedRow{row - 1, keyValues(keys_, previous)}, SortedRow{row, keyValues(keys_, current)});
  } else if (order == 0) {
    noteRepeated(current, row);
  } else {
    casesOfLastKey_ = 1;
  }
}

void KeyCheck::noteRepeated(const OBS* current, std::int64_t row) {
  if (missing_.isMissing(current)) return;
  RepeatedKeys& repeated = findings_.repeated;
  const bool isNew = ++casesOfLastKey_ == 2;
  if (isNew) ++repeated.keys;
  repeated.cases += isNew ? 2 : 1;
  if (repeated.keys > 1) return;
  if (isNew) {
    repeated.lowest = keyValues(keys_, current);
    repeated.rowsOfLowest.push_back(row - 1);
  }
  repeated.casesOfLowest = repeated.cases;
  if (repeated.rowsOfLowest.size() < RepeatedKeys::mostRows) repeated.rowsOfLowest.push_back(row);
}

void KeyCheck::keepLast(const CaseSpan& span) {
  const OBS* const last = span.cases + (span.count - 1) * span.caseSlots;
  last_.resize(span.caseSlots);
  for (const SortKey& key : keys_) {
    const std::size_t slots = key.isNumeric ? 1 : (key.bytes + sizeof(OBS) - 1) / sizeof(OBS);
    std::copy_n(last + key.slot, slots, last_.data() + key.slot);
  }
}

}  // namespace workbench::data
