#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "host/runtime.h"

namespace {

TEST(MachineConstants, HaveTheSystemMissingValueOfTheHost) {
  EXPECT_EQ(std::bit_cast<std::uint64_t>(pvGetCmnMch()->constants[1]), 0xFFEFFFFFFFFFFFFFU);
}

TEST(MachineConstants, HaveALowSentinelBelowEveryNumber) {
  EXPECT_LT(pvGetCmnMch()->constants[3], std::numeric_limits<double>::lowest());
}

TEST(MachineConstants, HaveTheEndsOfTheNumbersThatDataMayHold) {
  EXPECT_EQ(pvGetCmnMch()->constants[7], std::numeric_limits<double>::max());
  EXPECT_EQ(pvGetCmnMch()->constants[9], std::nextafter(-std::numeric_limits<double>::max(), 0.0));
  EXPECT_GT(pvGetCmnMch()->constants[9], pvGetCmnMch()->constants[1]);
}

TEST(GlobalState, IsOneBlockForTheProcess) {
  EXPECT_EQ(pvGetCmnGlb(), pvGetCmnGlb());
  pvGetCmnGlb()->pendingError = 5;
  EXPECT_EQ(pvGetCmnGlb()->pendingError, 5);
  pvGetCmnGlb()->pendingError = 0;
}

}  // namespace
