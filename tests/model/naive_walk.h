// The cases of both datasets side by side, one after another, by hand.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/model/naive_dictionary.h"
#include "tests/model/naive_order.h"

namespace workbench::tests::model {

// Two partners that differ in some value. Rows are the ordinals of the cases as they were read, from 1.
struct ShownCase {
  std::size_t active = 0;  // positions among all cases of the datasets
  std::size_t compared = 0;
  std::size_t activeRow = 0;
  std::size_t comparedRow = 0;
  std::vector<bool> agrees;  // per compared variable
};

struct WalkedCases {
  // Per case of the active dataset: -1, 0, 1, or nothing where no flag was written.
  std::vector<std::optional<int>> flags;
  std::vector<std::size_t> matched;  // positions of active cases
  std::vector<ShownCase> mismatched;
  std::size_t activeRead = 0;
  std::size_t comparedRead = 0;
  std::size_t leftOver = 0;        // cases behind the last one of the other dataset
  std::optional<Side> unsorted;    // the dataset that ended the walk because it is out of order
  std::vector<std::string> steps;  // as in a report, from the first case that was read on
  bool bothEnded() const { return !unsorted.has_value(); }
  std::size_t pairs() const { return matched.size() + mismatched.size(); }
  bool allMatch() const { return leftOver == 0 && mismatched.empty(); }
};

// Counts the mismatches of each variable into it. `usesFilter`: cases that the active dataset's filter leaves out are
// passed over.
WalkedCases walk(const World& world, const CaseOrder& order, std::vector<ComparedVariable>& variables, bool usesFilter);

// Whether two values of one variable count as equal.
bool valuesAgree(const World& world, const Variable& active, const Value& left, const Value& right);

}  // namespace workbench::tests::model
