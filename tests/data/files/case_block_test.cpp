#include "workbench/data/case_block.h"

#include <gtest/gtest.h>

namespace workbench::data {
namespace {

TEST(CaseBlock, HasRoomForAMebibyteOfCases) {
  const CaseBlock block(16);
  EXPECT_EQ(block.capacity(), blockBytes / 128);
  EXPECT_EQ(block.cases(), 0U);
}

TEST(CaseBlock, HasRoomForOneCaseHoweverLong) { EXPECT_EQ(CaseBlock(blockBytes).capacity(), 1U); }

TEST(CaseBlock, HasRoomForNoMoreCasesThanAskedFor) {
  EXPECT_EQ(CaseBlock(16, 3).capacity(), 3U);
  EXPECT_EQ(CaseBlock(blockBytes, 3).capacity(), 1U);
}

TEST(CaseBlock, KeepsCasesApartByAtLeastOneSlot) {
  CaseBlock block(0, 2);
  EXPECT_EQ(block.caseSlots(), 1U);
  EXPECT_EQ(block.at(1), block.begin() + 1);
}

}  // namespace
}  // namespace workbench::data
