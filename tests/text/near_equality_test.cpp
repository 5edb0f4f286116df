#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

#include "host/runtime.h"
#include "workbench/runtime/current_run.h"

namespace workbench {
namespace {

constexpr double highest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();
constexpr double infinity = std::numeric_limits<double>::infinity();

// Sets the tolerance for one test.
class Tolerance {
 public:
  explicit Tolerance(double tolerance) { currentRun().settings.tolerance = tolerance; }
  Tolerance(const Tolerance&) = delete;
  Tolerance& operator=(const Tolerance&) = delete;
  ~Tolerance() { currentRun().settings = Settings{}; }
};

TEST(NearEquality, HoldsForTheSameValue) {
  const Tolerance none(0);
  for (const double value : {0.0, 1.5, -highest, highest, smallest, infinity}) {
    EXPECT_TRUE(QLRALMOSTEQUAL(value, value)) << value;
  }
  EXPECT_TRUE(QLRALMOSTEQUAL(0.0, -0.0));
}

TEST(NearEquality, IsRelativeToTheLargerMagnitude) {
  EXPECT_TRUE(QLRALMOSTEQUAL(1e6, 1e6 + 1e-7));
  EXPECT_FALSE(QLRALMOSTEQUAL(1.0, 1.0 + 1e-7));
  EXPECT_TRUE(QLRALMOSTEQUAL(0.1 + 0.2, 0.3));
  EXPECT_FALSE(QLRALMOSTEQUAL(0.0, 1e-300));
}

TEST(NearEquality, IncludesTheToleranceItself) {
  const Tolerance quarter(0.25);
  EXPECT_TRUE(QLRALMOSTEQUAL(3.0, 4.0));
  EXPECT_FALSE(QLRALMOSTEQUAL(2.9, 4.0));
}

TEST(NearEquality, WithAToleranceOfZeroLeavesOnlyTheSameValue) {
  const Tolerance none(0);
  EXPECT_FALSE(QLRALMOSTEQUAL(1.0, std::nextafter(1.0, 2.0)));
}

TEST(NearEquality, DoesNotRunOverAtTheHighestNumbers) {
  EXPECT_FALSE(QLRALMOSTEQUAL(highest, -highest));
  EXPECT_TRUE(QLRALMOSTEQUAL(highest, std::nextafter(highest, 0.0)));
  const Tolerance wide(1.5);
  EXPECT_FALSE(QLRALMOSTEQUAL(highest, -highest));
  EXPECT_TRUE(QLRALMOSTEQUAL(highest, -highest / 4));
}

TEST(NearEquality, DoesNotRunUnderAtTheSmallestNumbers) {
  EXPECT_TRUE(QLRALMOSTEQUAL(1e-310, std::nextafter(1e-310, 1.0)));
  EXPECT_FALSE(QLRALMOSTEQUAL(smallest, 2 * smallest));
}

TEST(NearEquality, NeverTakesANumberForInfinity) {
  EXPECT_FALSE(QLRALMOSTEQUAL(infinity, highest));
  EXPECT_FALSE(QLRALMOSTEQUAL(-infinity, infinity));
}

RC_GTEST_PROP(NearEquality, IsSymmetric, (double left, double right)) {
  RC_ASSERT(QLRALMOSTEQUAL(left, right) == QLRALMOSTEQUAL(right, left));
}

RC_GTEST_PROP(NearEquality, AgreesWithLongDoubles, ()) {
  const double left = std::ldexp(*rc::gen::inRange(-100000, 100000), *rc::gen::inRange(-900, 900));
  const double right = left * (1 + std::ldexp(*rc::gen::inRange(-16, 16), -43));
  const long double difference = std::fabs(static_cast<long double>(left) - right);
  const long double larger =
      std::max(std::fabs(static_cast<long double>(left)), std::fabs(static_cast<long double>(right)));
  RC_ASSERT(QLRALMOSTEQUAL(left, right) == (difference <= 1e-12L * larger));
}

}  // namespace
}  // namespace workbench
