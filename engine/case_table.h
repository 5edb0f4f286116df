// CaseTable: the Case By Case Comparison table, one result per shown case with a difference.
//
// Requires: the comparer and the pivot table outlive it.
#pragma once

#include <cstdint>

#include "engine/dataset_comparer.h"

namespace compdatas {

class CaseTable {
 public:
  // Makes the empty table: its dimensions and the groups of case IDs and row numbers.
  CaseTable(DatasetComparer& comparer, BpPivotTable& table);

  // Shows the current pair of cases, unless the limit has been reached. Requires: it has a difference, and has not been
  // counted yet.
  void show();

  // Sets the caption. Requires: the walk has succeeded.
  void finish();

 private:
  bool limitReached() const;
  void showCaseIds();
  void showRowNumbers();
  void showValues();

  DatasetComparer& comparer_;
  BpPivotTable& table_;
  BpDimension cases_;
  BpGroup caseIds_;
  BpGroup rows_;
  BpDimension results_;
  std::int64_t shown_ = 0;
};

}  // namespace compdatas
