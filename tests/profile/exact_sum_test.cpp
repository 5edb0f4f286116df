// Sums of differences: exact to the last digits, and never beyond what a double holds.
#include "procedures/profile/exact_sum.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cfloat>
#include <vector>

namespace profile::exact_sum_test {

double meanOf(const std::vector<std::pair<double, double>>& pairs) {
  DifferenceSum sum;
  for (const auto& [from, to] : pairs) sum.add(from, to, 1);
  return sum.mean(pairs.size());
}

TEST(DifferenceSum, KeepsWhatSmallDifferencesAddToLargeOnes) {
  EXPECT_EQ(meanOf({{0, 1e16}, {0, 1}, {1e16, 0}, {0, 1}}), 0.5);
  std::vector<std::pair<double, double>> tenths(1'000'000, {0.0, 0.1});
  EXPECT_EQ(meanOf(tenths), 0.1);
}

TEST(DifferenceSum, KeepsWhatASingleSubtractionRoundsOff) { EXPECT_EQ(meanOf({{1, 1e16}, {1e16, 0}}), -0.5); }

TEST(DifferenceSum, SumsTheGreatestNumbersWithoutLeavingTheirRange) {
  EXPECT_EQ(meanOf({{0, DBL_MAX}, {0, DBL_MAX}, {0, DBL_MAX}}), DBL_MAX);
  EXPECT_EQ(meanOf({{-DBL_MAX / 2, DBL_MAX}, {DBL_MAX, -DBL_MAX / 2}, {0, 3}}), 1);
}

TEST(DifferenceSum, IsInfiniteOnlyWhereTheMeanItselfIsBeyondAllDoubles) {
  EXPECT_EQ(meanOf({{-DBL_MAX / 2, DBL_MAX}}), HUGE_VAL);
  EXPECT_EQ(meanOf({{DBL_MAX, -DBL_MAX / 2}}), -HUGE_VAL);
}

TEST(DifferenceSum, KeepsTheSmallestNumbers) {
  EXPECT_EQ(meanOf({{0, DBL_TRUE_MIN}, {0, 3 * DBL_TRUE_MIN}}), 2 * DBL_TRUE_MIN);
}

// A long double has eleven more bits, enough to judge the last bit of a mean of a few hundred numbers.
RC_GTEST_PROP(DifferenceSum, AgreesWithAWiderSum, ()) {
  const auto pairs = *rc::gen::nonEmpty(rc::gen::container<std::vector<std::pair<double, double>>>(rc::gen::pair(
      rc::gen::map(rc::gen::inRange(-1'000'000'000, 1'000'000'000), [](int number) { return number / 1000.0; }),
      rc::gen::map(rc::gen::inRange(-1'000'000'000, 1'000'000'000), [](int number) { return number / 7.0; }))));
  long double sum = 0;
  for (const auto& [from, to] : pairs) sum += static_cast<long double>(to) - static_cast<long double>(from);
  const auto expected = static_cast<double>(sum / static_cast<long double>(pairs.size()));
  const double mean = meanOf(pairs);
  RC_ASSERT(std::fabs(mean - expected) <= std::fabs(expected) * 4 * DBL_EPSILON + 1e-12);
}

}  // namespace profile::exact_sum_test
