// Variable pairs: which variables of the two datasets are profiled, and what has to be known of them before the walk.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "procedures/profile/paired_cases.h"
#include "procedures/profile/profile_command.h"

namespace profile {

// The values of a numeric variable that count as missing, beside system-missing.
class MissingNumbers {
 public:
  MissingNumbers() = default;
  explicit MissingNumbers(const VRIX_Variable& variable);

  bool has(double number) const;

 private:
  bool hasRange_ = false;
  double low_ = 0;
  double high_ = 0;
  std::array<double, 3> discrete_{};
  std::size_t discreteCount_ = 0;
};

// What a difference of two values of a variable is measured in.
enum class DifferenceUnit {
  none,     // there is no difference: texts, and durations, whose months have no fixed length
  number,   // the variable's own
  days,     // of dates
  seconds,  // of times and dates with times
};

struct VariablePair {
  const VRIX_Variable* active = nullptr;
  const VRIX_Variable* comparison = nullptr;
  std::array<std::int32_t, 2> index{};
  std::array<std::size_t, 2> width{};  // bytes of a text; 0 for a number
  bool isText = false;
  bool nearCounts = false;  // near numbers are equal
  DifferenceUnit unit = DifferenceUnit::none;
  std::int32_t decimals = 0;  // that the active variable shows
  std::array<MissingNumbers, 2> missing;
};

// The pairs of the variables that were asked for, in the order of the active dictionary, the case IDs left out. Names
// that were asked for and cannot be paired are added to the list; with ALL only those of a different type are.
std::vector<VariablePair> pairVariables(const ProfileOptions& options, const VRIX_DataSource& active,
                                        const VRIX_DataSource& comparison, std::vector<std::string>& unpaired);

// The case IDs; nothing when one of them is not in the comparison dataset with the same type.
std::optional<std::vector<CaseIdVariable>> pairCaseIds(const ProfileOptions& options, const VRIX_DataSource& active,
                                                       const VRIX_DataSource& comparison);

}  // namespace profile
