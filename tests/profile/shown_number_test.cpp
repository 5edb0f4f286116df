// How many decimals a result has: those of its variable, and more where they would show too little.
#include "procedures/profile/shown_number.h"

#include <gtest/gtest.h>

#include <cmath>

namespace profile::shown_number_test {

TEST(ShownNumber, HasTheDecimalsOfItsVariableAndMoreWhereTheseRoundOffTooMuch) {
  EXPECT_EQ(decimalsFor(0, 2), 2);
  EXPECT_EQ(decimalsFor(1234.5, 2), 2);
  EXPECT_EQ(decimalsFor(-3, 0), 0);
  EXPECT_EQ(decimalsFor(1.5, 0), 1);
  EXPECT_EQ(decimalsFor(1.0 / 3, 2), 3);
  EXPECT_EQ(decimalsFor(-0.0123, 2), 4);
  EXPECT_EQ(decimalsFor(100, 0), 0);
}

TEST(ShownNumber, HasNoDecimalsBeyondThoseThatADoubleHas) {
  EXPECT_EQ(decimalsFor(123456789012.0, 8), 4);
  EXPECT_EQ(decimalsFor(1e300, 2), 0);
  EXPECT_EQ(decimalsFor(HUGE_VAL, 2), 2);
  EXPECT_EQ(decimalsFor(1e-300, 2), 15);
}

}  // namespace profile::shown_number_test
