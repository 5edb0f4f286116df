// PreparedPairs: the compared pairs of variables, made ready once for every pair of cases of a walk.
//
// Pairs whose values lie side by side in the cases of both datasets, in the same order, form a run. A run with the same
// bytes on both sides holds equal values only: numbers of the same bits, texts of the same bytes. Its values are looked
// at one by one only when the bytes differ, which does not yet say that a value does: there are near numbers, and what
// lies behind a text in its last slot is no part of it.
//
// Invariant: a pair's equalNow is false exactly when its values differed in the pair of cases that was compared last.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "engine/dataset_comparer.h"
#include "engine/value_equality.h"

namespace compdatas {

class PreparedPairs {
 public:
  // Requires: the comparer's variable pairs outlive this object and stay where they are.
  explicit PreparedPairs(DatasetComparer& comparer);

  // Joins the pairs into runs. Once, before the first comparison. Requires: a case is current on both sides.
  void joinRuns(const VRIX_InputCaseIterator& active, const VRIX_InputCaseIterator& compared);

  // How many there are: the fewer, the less has to be done for a pair of cases.
  std::size_t runs() const { return runs_.size(); }

  // Whether all values of the two current cases are equal. Every pair is judged, also behind a difference; those that
  // differ have their mismatchCount raised, and activeValue and compareValue point at their values.
  bool compare(const VRIX_InputCaseIterator& active, const VRIX_InputCaseIterator& compared);

 private:
  struct Pair {
    VariablePair* pair;
    std::size_t slots;
    std::size_t activeWidth;  // 0 for a number
    std::size_t compareWidth;
  };
  // The pairs [first, behind) of the list. Their values begin where those of the two variables do.
  struct Run {
    std::int32_t activeIndex;
    std::int32_t compareIndex;
    std::size_t slots;
    std::size_t first;
    std::size_t behind;
    bool bytesDecide;  // the same bytes are equal values; not so for a text of two widths, which stands alone
  };

  static bool haveSameBytes(const OBS* left, const OBS* right, std::size_t slots);
  void compareSingly(const Run& run, const OBS* active, const OBS* compared);
  static bool areEqual(const Pair& prepared, const OBS* active, const OBS* compared);
  void note(VariablePair& pair, const OBS* active, const OBS* compared);
  void forgetDifferences();

  std::vector<Pair> pairs_;
  std::vector<Run> runs_;
  std::vector<VariablePair*> different_;  // of the pair of cases that was compared last; never allocates
};

// Inline, since it is done for every pair of cases.
inline bool PreparedPairs::compare(const VRIX_InputCaseIterator& active, const VRIX_InputCaseIterator& compared) {
  if (!different_.empty()) forgetDifferences();
  for (const Run& run : runs_) {
    const OBS* activeValue = active.GetObsPointer(run.activeIndex);
    const OBS* compareValue = compared.GetObsPointer(run.compareIndex);
    if (run.bytesDecide && haveSameBytes(activeValue, compareValue, run.slots)) continue;
    compareSingly(run, activeValue, compareValue);
  }
  return different_.empty();
}

inline bool PreparedPairs::haveSameBytes(const OBS* left, const OBS* right, std::size_t slots) {
  if (slots == 1) return sameBits(left->number, right->number);  // a call would take longer
  return std::memcmp(left, right, slots * sizeof(OBS)) == 0;
}

}  // namespace compdatas
