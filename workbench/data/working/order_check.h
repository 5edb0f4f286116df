// OrderCheck: looks for the first two cases of a dataset that lie the wrong way round.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "workbench/data/working/block_supply.h"
#include "workbench/data/working/sort_order.h"

namespace workbench::data {

// One row's place and its key values.
struct SortedRow {
  std::int64_t number = 0;                              // from 1
  std::vector<std::variant<double, std::string>> keys;  // texts as they were compared: cut, without trailing blanks
};

class OrderCheck {
 public:
  // The keys outlive the check.
  explicit OrderCheck(const std::vector<SortKey>& keys) : keys_(keys) {}

  // The cases that come next, one at least. Of their slots only those of the keys are looked at.
  void look(const CaseSpan& span);

  bool isInOrder() const { return !firstOutOfOrder_; }
  const std::optional<std::pair<SortedRow, SortedRow>>& firstOutOfOrder() const { return firstOutOfOrder_; }
  std::int64_t cases() const { return cases_; }  // that were looked at

 private:
  void keepLast(const CaseSpan& span);

  const std::vector<SortKey>& keys_;
  std::vector<OBS> last_;  // the last case so far, as far as keys lie in it
  std::optional<std::pair<SortedRow, SortedRow>> firstOutOfOrder_;
  std::int64_t cases_ = 0;
};

}  // namespace workbench::data
