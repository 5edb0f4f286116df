#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <string>

#include "workbench/data/cells/calendar_text.h"

namespace workbench::data {
namespace {

constexpr double month = 1099511627776.0;  // 2^40

double valueOfDuration(std::string_view text) {
  const auto read = durationOf(text);
  return read && read->isHeld ? read->value : std::nan("");
}

TEST(DurationText, CountsMonthsAndSecondsApart) {
  EXPECT_EQ(valueOfDuration("P1M"), month);
  EXPECT_EQ(valueOfDuration("P1Y"), 12 * month);
  EXPECT_EQ(valueOfDuration("P1Y2M"), 14 * month);
  EXPECT_EQ(valueOfDuration("P1D"), 86400);
  EXPECT_EQ(valueOfDuration("P30D"), 30 * 86400) << "thirty days are no month";
  EXPECT_EQ(valueOfDuration("PT1H"), 3600);
  EXPECT_EQ(valueOfDuration("PT1M"), 60);
  EXPECT_EQ(valueOfDuration("PT36H"), 129600);
  EXPECT_EQ(valueOfDuration("P1Y2M3DT4H5M6S"), 14 * month + 3 * 86400 + 4 * 3600 + 5 * 60 + 6);
  EXPECT_EQ(valueOfDuration("P1DT12H"), 129600);
  EXPECT_EQ(valueOfDuration("PT0S"), 0);
  EXPECT_EQ(valueOfDuration("P0D"), 0);
  EXPECT_EQ(valueOfDuration("P007D"), 7 * 86400);
}

TEST(DurationText, TakesFractionsOfSecondsAndASignForAll) {
  EXPECT_EQ(valueOfDuration("PT0.5S"), 0.5);
  EXPECT_EQ(valueOfDuration("PT1.250S"), 1.25);
  EXPECT_EQ(durationOf("PT1.250S")->fractionDigits, 3);
  EXPECT_EQ(valueOfDuration("-PT0.5S"), -0.5);
  EXPECT_EQ(valueOfDuration("-P1MT1S"), -(month + 1));
}

TEST(DurationText, TakesNothingElse) {
  for (const char* text :
       {"",      "P",     "-P",     "PT",    "P1",     "1M",     "P1M2Y",    "P1YT",   "PT1D", "P1H",
        "P1S",   "P1W",   "P1.5Y",  "P1.5D", "PT1.5H", "PT.5S",  "PT1.S",    "PT1,5S", "+P1M", "P-1M",
        "P 1M",  "P1M ",  " P1M",   "p1m",   "P1Y1Y",  "PT1S1S", "P1D1M",    "PTT1S",  "P1MT", "P1M0",
        "--P1M", "P1MT1", "PT1M1H", "PY",    "P1D2H3", "P1DT1D", "PT1H1.5M", "P1YM"}) {
    EXPECT_FALSE(durationOf(text)) << text;
  }
}

TEST(DurationText, HoldsWhatADoubleTellsApart) {
  const auto isHeld = [](std::string_view text) { return durationOf(text)->isHeld; };
  EXPECT_TRUE(isHeld("PT549755813887S"));
  EXPECT_FALSE(isHeld("PT549755813888S")) << "2^39 seconds are half way to a month";
  EXPECT_FALSE(isHeld("P6362916DT1000000000S"));
  EXPECT_TRUE(isHeld("P8191MT1S")) << "2^53 - 2^40 + 1";
  EXPECT_FALSE(isHeld("P8192MT1S"));
  EXPECT_TRUE(isHeld("P8192MT2S"));
  EXPECT_FALSE(isHeld("P4194304M"));
  EXPECT_FALSE(isHeld("P99999999999999999999999Y"));
  EXPECT_FALSE(isHeld("PT99999999999999999999999S"));
  EXPECT_FALSE(isHeld("P9000000000000000000Y"));
  EXPECT_TRUE(isHeld("P1MT0.125S"));
  EXPECT_TRUE(isHeld("P1MT0.123S"));
  EXPECT_FALSE(isHeld("P1MT0.12345S"));
  EXPECT_FALSE(isHeld("PT0.1234567890123456789S"));
}

TEST(DurationText, LeavesOutPartsThatAreZero) {
  EXPECT_EQ(durationText(0), "PT0S");
  EXPECT_EQ(durationText(-0.0), "PT0S");
  EXPECT_EQ(durationText(month), "P1M");
  EXPECT_EQ(durationText(24 * month), "P2Y");
  EXPECT_EQ(durationText(month + 86400 + 0.5), "P1M1DT0.5S");
  EXPECT_EQ(durationText(14 * month + 3 * 86400 + 4 * 3600 + 5 * 60 + 6), "P1Y2M3DT4H5M6S");
  EXPECT_EQ(durationText(-3600), "-PT1H");
  EXPECT_EQ(durationText(90), "PT1M30S");
}

TEST(DurationText, WritesNothingForAValueThatNoTextHas) {
  EXPECT_FALSE(durationText(month - 1)) << "a month less a second";
  EXPECT_FALSE(durationText(month / 2));
  EXPECT_FALSE(durationText(1e300));
  EXPECT_FALSE(durationText(-1e300));
  EXPECT_FALSE(durationText(std::nan("")));
  EXPECT_FALSE(durationText(HUGE_VAL));
  EXPECT_FALSE(durationText(1e-300));
}

TEST(DurationText, WritesWhatItReads) {
  EXPECT_TRUE(rc::check([](std::uint16_t months, std::uint32_t milliseconds, bool isNegative) {
    const std::string text = (isNegative ? "-P" : "P") + std::to_string(months % 6000) + "MT" +
                             std::to_string(milliseconds / 1000) + "." +
                             std::to_string(1000 + milliseconds % 1000).substr(1) + "S";
    const auto read = durationOf(text);
    RC_ASSERT(read.has_value());
    if (!read->isHeld) return;
    const auto written = durationText(read->value);
    RC_ASSERT(written.has_value());
    RC_ASSERT(valueOfDuration(*written) == read->value);
  }));
}

}  // namespace
}  // namespace workbench::data
