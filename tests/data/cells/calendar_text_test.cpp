#include "workbench/data/cells/calendar_text.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <string>

namespace workbench::data {
namespace {

TEST(CalendarText, ReadsIsoDatesAsDays) {
  EXPECT_EQ(dateOf("1970-01-01")->value, 0);
  EXPECT_EQ(dateOf("1970-01-02")->value, 1);
  EXPECT_EQ(dateOf("1969-12-31")->value, -1);
  EXPECT_EQ(dateOf("2000-02-29")->value, 11016);
  EXPECT_EQ(dateOf("0001-01-01")->value, -719162);
  EXPECT_EQ(dateOf("9999-12-31")->value, 2932896);
}

TEST(CalendarText, TakesNoOtherDates) {
  for (const char* text :
       {"", "2012/01/01", "2012-1-1", "2012-13-01", "2012-00-01", "2012-01-32", "1900-02-29", "2011-02-29",
        "0000-01-01", "12012-01-01", "2012-01-01 ", " 2012-01-01", "-012-01-01", "2012-01-0a", "20120101", "2012-01"}) {
    EXPECT_FALSE(dateOf(text)) << text;
  }
}

TEST(CalendarText, ReadsTimesAsSecondsSinceMidnight) {
  EXPECT_EQ(timeOf("00:00:00")->value, 0);
  EXPECT_EQ(timeOf("23:59:59")->value, 86399);
  EXPECT_EQ(timeOf("15:59:55.25")->value, 57595.25);
  EXPECT_EQ(timeOf("15:59:55.250")->fractionDigits, 3);
  for (const char* text : {"", "24:00:00", "12:60:00", "12:00:60", "12:00", "1:00:00", "12:00:00.", "12:00:00,5",
                           "12:00:00Z", "12:00:00+01", "-1:00:00"}) {
    EXPECT_FALSE(timeOf(text)) << text;
  }
}

TEST(CalendarText, ReadsDatesWithTimesAsSeconds) {
  EXPECT_EQ(dateTimeOf("1970-01-01T00:00:01")->value, 1);
  EXPECT_EQ(dateTimeOf("1970-01-02 00:00:00")->value, 86400);
  EXPECT_EQ(dateTimeOf("1969-12-31T23:59:59")->value, -1);
  EXPECT_EQ(dateTimeOf("1969-12-31T23:59:59.25")->value, -0.75);
  EXPECT_EQ(dateTimeOf("1969-12-31T23:59:58.25")->value, -1.75);
  EXPECT_EQ(dateTimeOf("2026-11-21T15:59:55.5")->value, 1795276795.5);
  for (const char* text : {"", "1970-01-01", "1970-01-01T00:00", "1970-01-01  00:00:00", "1970-01-01t00:00:00",
                           "1970-01-01T00:00:00Z", "1970-01-01T00:00:00+01:00", "1970-02-30T00:00:00"}) {
    EXPECT_FALSE(dateTimeOf(text)) << text;
  }
}

TEST(CalendarText, HoldsFractionsAsLongAsDoublesTellThemApart) {
  EXPECT_TRUE(timeOf("12:00:00.123456789")->isHeld);
  EXPECT_FALSE(timeOf("12:00:00.123456789012")->isHeld);
  EXPECT_TRUE(timeOf("12:00:00.500000000000")->isHeld) << "zeros at the end say nothing";
  EXPECT_TRUE(dateTimeOf("2026-11-21T15:59:55.123456")->isHeld);
  EXPECT_FALSE(dateTimeOf("2026-11-21T15:59:55.1234567")->isHeld);
  EXPECT_FALSE(dateTimeOf("1970-01-01T00:00:00.1234567890123456789")->isHeld);
}

TEST(CalendarText, WritesWhatItReads) {
  EXPECT_TRUE(rc::check([](std::int32_t days) {
    const double day = days % 700'000;
    RC_ASSERT(dateOf(*dateText(day))->value == day);
  }));
  EXPECT_TRUE(rc::check([](std::int64_t microseconds) {
    const double seconds = static_cast<double>(microseconds % 60'000'000'000'000'000) / 1e6;
    RC_ASSERT(dateTimeOf(*dateTimeText(seconds))->value == seconds);
    const double ofDay = std::fmod(std::fabs(seconds), 86'400.0);
    RC_ASSERT(timeOf(*timeText(ofDay))->value == ofDay);
  }));
}

TEST(CalendarText, WritesNothingForAValueThatNoTextHas) {
  EXPECT_FALSE(dateText(0.5));
  EXPECT_FALSE(dateText(2932897));
  EXPECT_FALSE(dateText(-719163));
  EXPECT_FALSE(dateText(1e300));
  EXPECT_FALSE(timeText(-1));
  EXPECT_FALSE(timeText(86400));
  EXPECT_FALSE(dateTimeText(1e300));
  EXPECT_EQ(*dateTimeText(-0.75), "1969-12-31T23:59:59.25");
  EXPECT_EQ(*timeText(57595.25), "15:59:55.25");
}

}  // namespace
}  // namespace workbench::data
