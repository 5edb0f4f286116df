// KeyCheck: looks at the keys of a dataset's cases as they come: whether they are in order, which are missing, and, as
// long as they are in order, which are repeated.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "workbench/data/working/block_supply.h"
#include "workbench/data/working/key_findings.h"

namespace workbench::data {

class KeyCheck {
 public:
  // Both outlive the check.
  KeyCheck(const std::vector<SortKey>& keys, const MissingKeys& missing) : keys_(keys), missing_(missing) {}

  // The cases that come next, one at least. Of their slots only those of the keys are looked at.
  void look(const CaseSpan& span);

  bool isInOrder() const { return !findings_.firstOutOfOrder; }
  const KeyFindings& findings() const { return findings_; }
  std::int64_t cases() const { return cases_; }  // that were looked at

 private:
  void compare(const OBS* previous, const OBS* current, std::int64_t row);
  void noteRepeated(const OBS* current, std::int64_t row);
  void keepLast(const CaseSpan& span);

  const std::vector<SortKey>& keys_;
  const MissingKeys& missing_;
  std::vector<OBS> last_;  // the last case so far, as far as keys lie in it
  std::int64_t casesOfLastKey_ = 1;
  KeyFindings findings_;
  std::int64_t cases_ = 0;
};

}  // namespace workbench::data
