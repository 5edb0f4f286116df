// PairedCases: steps through two datasets side by side, their cases paired by the case IDs or, without any, by
// position.
//
// Requires: both sources outlive it and, with case IDs, are in ascending order of them; a case out of order is a step
// of its own, after which there is none. Ties are in order. Cases of a pair have the same bits in numeric IDs and the
// same text, up to trailing blanks and in the collation in force, in the others.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/data.h"

namespace profile {

inline constexpr std::size_t activeSide = 0;
inline constexpr std::size_t comparisonSide = 1;

struct CaseIdVariable {
  const VRIX_Variable* active = nullptr;
  std::array<std::int32_t, 2> index{};
  bool isText = false;
  std::array<std::size_t, 2> width{};  // bytes that count: no more than the active variable has
};

// A value of a case ID.
struct CaseIdValue {
  double number = 0;
  std::string text;
};

class PairedCases {
 public:
  enum class Step { pair, activeOnly, comparisonOnly, ended, activeOutOfOrder, comparisonOutOfOrder };

  PairedCases(VRIX_DataSource& active, VRIX_DataSource& comparison, std::vector<CaseIdVariable> ids);

  // False when the host can make no iterator over one of the two; nothing is read then.
  bool canRead() const { return sides_[activeSide].cases != nullptr && sides_[comparisonSide].cases != nullptr; }
  // Requires: canRead().
  Step next();

  // Of the current pair.
  const VRIX_InputCaseIterator& cases(std::size_t side) const { return *sides_[side].cases; }
  // The ordinal of a side's current case, from 1.
  std::uint64_t row(std::size_t side) const { return sides_[side].row; }
  const std::vector<CaseIdVariable>& ids() const { return ids_; }
  // The active case's IDs, in the order of ids().
  const std::vector<CaseIdValue>& idValues() const { return sides_[activeSide].values; }

 private:
  enum class State { current, ended, outOfOrder };
  struct Side {
    std::unique_ptr<VRIX_InputCaseIterator> cases;
    State state = State::current;
    std::uint64_t row = 0;
    std::vector<CaseIdValue> values;  // of the current case
    std::vector<CaseIdValue> before;
  };

  void read(std::size_t side);
  void takeIds(std::size_t side);
  bool isInOrder(std::size_t side) const;
  int comparedIds() const;

  std::vector<CaseIdVariable> ids_;
  std::array<Side, 2> sides_;
  Step last_ = Step::pair;  // before the first step, too: both sides are to be read
};

}  // namespace profile
