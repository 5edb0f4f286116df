// Dates, times, dates with times and durations as a dictionary declares them.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/data/cells/reading_builder.h"

namespace workbench::data {
namespace {

const CellReading date = declared(CellType::date);
const CellReading time = declared(CellType::time);
const CellReading dateTime = declared(CellType::dateTime);
const CellReading duration = declared(CellType::duration);

CellReading dateBy(std::string pattern) { return declared(CellType::date).pattern(std::move(pattern)); }
CellReading timeBy(std::string pattern) { return declared(CellType::time).pattern(std::move(pattern)); }
CellReading dateTimeBy(std::string pattern) { return declared(CellType::dateTime).pattern(std::move(pattern)); }

// The date that a cell is by a pattern, in ISO 8601.
std::string dateIn(std::string pattern, std::string_view cell) { return plainOf(dateBy(std::move(pattern)), cell); }

TEST(DeclaredMoment, IsIso8601WithoutAPattern) {
  EXPECT_EQ(valueOf(date, "1970-01-02"), "1");
  EXPECT_EQ(valueOf(time, "00:01:00"), "60");
  EXPECT_EQ(valueOf(time, "00:01:00.25"), "60.25");
  EXPECT_EQ(valueOf(dateTime, "1970-01-02T00:00:01"), "86401");
  EXPECT_EQ(valueOf(dateTime, "1969-12-31T23:59:59.25"), "-0.75");
  EXPECT_EQ(valueOf(duration, "P1M"), "1099511627776");
  EXPECT_EQ(valueOf(duration, "-PT1H"), "-3600");
}

TEST(DeclaredMoment, SaysHowItIsToBeWritten) {
  EXPECT_EQ(valueOf(date, "21.11.2026"), "is no date like 2026-11-21");
  EXPECT_EQ(valueOf(date, "2026-02-30"), "is no date like 2026-11-21");
  EXPECT_EQ(valueOf(date, "2026-11-21 "), "is no date like 2026-11-21");
  EXPECT_EQ(valueOf(time, "12:00"), "is no time like 15:59:55");
  EXPECT_EQ(valueOf(time, "12:00:00Z"), "is no time like 15:59:55");
  EXPECT_EQ(valueOf(dateTime, "2026-11-21"), "is no date with a time like 2026-11-21T15:59:55");
  EXPECT_EQ(valueOf(dateTime, "2026-11-21 15:59:55"), "is no date with a time like 2026-11-21T15:59:55");
  EXPECT_EQ(valueOf(duration, "5 days"), "is no duration like P1Y2M3DT4H5M6S");
  EXPECT_EQ(valueOf(dateBy("%d.%m.%Y"), "2026-11-21"), "is no date written as \"%d.%m.%Y\"");
  EXPECT_EQ(valueOf(timeBy("%H:%M"), "25:00"), "is no time written as \"%H:%M\"");
}

TEST(DeclaredMoment, IsHeldExactlyOrRefused) {
  constexpr const char* tooFine = "has a finer fraction than is held; declare the field as string";
  EXPECT_EQ(valueOf(dateTime, "2026-11-21T15:59:55.1234567"), tooFine);
  EXPECT_EQ(valueOf(time, "12:00:00.123456789012"), tooFine);
  EXPECT_EQ(plainOf(time, "12:00:00.123456789012"), tooFine);
  constexpr const char* notHeld = "is a duration that is not held exactly; declare the field as string";
  EXPECT_EQ(valueOf(duration, "P8192MT1S"), notHeld);
  EXPECT_EQ(plainOf(duration, "PT549755813888S"), notHeld);
}

TEST(DeclaredMoment, WithAZoneIsReadAsUtc) {
  EXPECT_EQ(plainOf(dateTime, "2026-11-21T15:59:55Z"), "2026-11-21T15:59:55");
  EXPECT_EQ(plainOf(dateTime, "2026-11-21T15:59:55+00:00"), "2026-11-21T15:59:55");
  EXPECT_EQ(plainOf(dateTime, "2026-11-21T00:30:00.50+01:00"), "2026-11-20T23:30:00.50");
  EXPECT_EQ(plainOf(dateTime, "2026-12-31T20:00:00-05:30"), "2027-01-01T01:30:00");
  EXPECT_EQ(valueOf(dateTime, "1970-01-01T01:00:00+01:00"), "0");
  EXPECT_EQ(valueOf(dateTime, "1970-01-01T00:00:00.25+00:01"), "-59.75");
  EXPECT_EQ(valueOf(dateTime, "2026-11-21T15:59:55+14:00"), valueOf(dateTime, "2026-11-21T01:59:55Z"));
  for (const char* zone : {"z", "+1:00", "+0100", "+01", "+14:01", "+01:60", "ZZ", " Z", "+01:00Z", "-", "CET"}) {
    EXPECT_EQ(valueOf(dateTime, std::string("2026-11-21T15:59:55") + zone),
              "is no date with a time like 2026-11-21T15:59:55")
        << zone;
  }
  EXPECT_EQ(valueOf(dateTime, "0001-01-01T00:00:00+01:00"), "is in UTC outside the years 1 to 9999");
  EXPECT_EQ(valueOf(dateTime, "9999-12-31T23:00:00-02:00"), "is in UTC outside the years 1 to 9999");
}

TEST(DeclaredMoment, DoesNotMixZonedAndUnzonedOnes) {
  CellReader zonedFirst(dateTime);
  EXPECT_EQ(valueBy(zonedFirst, "1970-01-01T00:00:01Z"), "1");
  EXPECT_EQ(valueBy(zonedFirst, "1970-01-01T00:00:01"), "bears no time zone, and values before it do");
  EXPECT_EQ(valueBy(zonedFirst, "1970-01-01T01:00:02+01:00"), "2");
  CellReader unzonedFirst(dateTime);
  EXPECT_EQ(valueBy(unzonedFirst, "1970-01-01T00:00:01"), "1");
  EXPECT_EQ(valueBy(unzonedFirst, "1970-01-01T00:00:01Z"), "bears a time zone, and values before it bear none");
  std::string plain;
  EXPECT_FALSE(unzonedFirst.plainText("1970-01-01T00:00:01Z", plain));
}

TEST(DeclaredMoment, FollowsItsPattern) {
  EXPECT_EQ(dateIn("%d.%m.%Y", "21.11.2026"), "2026-11-21");
  EXPECT_EQ(dateIn("%d.%m.%Y", "1.2.2026"), "2026-02-01") << "leading zeros may be lacking";
  EXPECT_EQ(dateIn("%Y%m%d", "20261121"), "2026-11-21");
  EXPECT_EQ(dateIn("%m/%d/%y", "11/21/26"), "2026-11-21");
  EXPECT_EQ(dateIn("%D", "11/21/26"), "2026-11-21");
  EXPECT_EQ(dateIn("%F", "2026-11-21"), "2026-11-21");
  EXPECT_EQ(dateIn("%Y-%j", "2024-366"), "2024-12-31");
  EXPECT_EQ(dateIn("%C%y-%m-%d", "1826-11-21"), "1826-11-21");
  EXPECT_EQ(dateIn("%d/%b/%Y", "21/Nov/2026"), "2026-11-21");
  EXPECT_EQ(dateIn("100%% %Y-%m-%d", "100% 2026-11-21"), "2026-11-21");
  EXPECT_EQ(dateIn("%%d %F", "%d 2026-11-21"), "2026-11-21") << "a percent sign and a letter are a text here";
  EXPECT_EQ(plainOf(timeBy("%H:%M"), "9:05"), "09:05:00");
  EXPECT_EQ(plainOf(timeBy("%T"), "23:59:59"), "23:59:59");
  EXPECT_EQ(plainOf(timeBy("%R"), "23:59"), "23:59:00");
  EXPECT_EQ(plainOf(timeBy("%H:%M:%S.%f"), "23:59:59.250"), "23:59:59.250");
  EXPECT_EQ(plainOf(timeBy("%H"), "7"), "07:00:00");
  EXPECT_EQ(plainOf(dateTimeBy("%d.%m.%Y %H:%M"), "21.11.2026 15:59"), "2026-11-21T15:59:00");
  EXPECT_EQ(plainOf(dateTimeBy("%Y-%m-%d"), "2026-11-21"), "2026-11-21T00:00:00");
}

TEST(DeclaredMoment, KnowsEnglishNamesInAnyCase) {
  for (const char* cell : {"21 November 2026", "21 NOVEMBER 2026", "21 nov 2026", "21 Nov 2026"}) {
    EXPECT_EQ(dateIn("%d %B %Y", cell), "2026-11-21") << cell;
    EXPECT_EQ(dateIn("%d %b %Y", cell), "2026-11-21") << cell;
    EXPECT_EQ(dateIn("%d %h %Y", cell), "2026-11-21") << cell;
  }
  EXPECT_EQ(dateIn("%B %d", "x"), "is no date written as \"%B %d\"");
  EXPECT_EQ(dateIn("%d %b %Y", "1 May 2026"), "2026-05-01");
  EXPECT_EQ(dateIn("%d %b %Y", "1 Mai 2026"), "is no date written as \"%d %b %Y\"");
  EXPECT_EQ(dateIn("%A, %d.%m.%Y", "saturday, 21.11.2026"), "2026-11-21");
  EXPECT_EQ(dateIn("%a %d.%m.%Y", "Sat 21.11.2026"), "2026-11-21");
}

TEST(DeclaredMoment, RefusesAWeekdayThatItsDateIsNot) {
  EXPECT_EQ(dateIn("%a %d.%m.%Y", "Mon 21.11.2026"), "is no date written as \"%a %d.%m.%Y\"");
  EXPECT_EQ(dateIn("%Y-%m-%d %j", "2026-11-21 325"), "2026-11-21");
  EXPECT_EQ(dateIn("%Y-%m-%d %j", "2026-11-21 324"), "is no date written as \"%Y-%m-%d %j\"");
}

TEST(DeclaredMoment, ReadsWeeksOfAYear) {
  EXPECT_EQ(dateIn("%G-W%V-%u", "2026-W47-6"), "2026-11-21");
  EXPECT_EQ(dateIn("%G-W%V-%u", "2020-W53-5"), "2021-01-01");
  EXPECT_EQ(dateIn("%G-W%V-%u", "2025-W01-1"), "2024-12-30");
  EXPECT_EQ(dateIn("%G-W%V-%u", "2025-W53-1"), "is no date written as \"%G-W%V-%u\"") << "it has 52 weeks";
  EXPECT_EQ(dateIn("%Y %U %w", "2026 00 4"), "2026-01-01") << "a Thursday, before the first Sunday";
  EXPECT_EQ(dateIn("%Y %U %w", "2026 01 0"), "2026-01-04");
  EXPECT_EQ(dateIn("%Y %W %w", "2026 01 1"), "2026-01-05");
  EXPECT_EQ(dateIn("%Y %W %a", "2026 46 Sat"), "2026-11-21");
  EXPECT_EQ(dateIn("%Y %W %w", "2026 00 1"), "is no date written as \"%Y %W %w\"") << "that day lies in 2025";
}

TEST(DeclaredMoment, TakesTwoDigitsOfAYearForTheNearest) {
  EXPECT_EQ(dateIn("%y-%m-%d", "68-01-01"), "2068-01-01");
  EXPECT_EQ(dateIn("%y-%m-%d", "69-01-01"), "1969-01-01");
  EXPECT_EQ(dateIn("%y-%m-%d", "00-01-01"), "2000-01-01");
  EXPECT_EQ(dateIn("%y-%m-%d", "1-01-01"), "is no date written as \"%y-%m-%d\"");
  EXPECT_EQ(dateIn("%Y-%m-%d", "26-01-01"), "is no date written as \"%Y-%m-%d\"");
}

TEST(DeclaredMoment, RefusesWhatNoCalendarAndNoClockHas) {
  for (const char* cell : {"30.02.2026", "29.02.2026", "00.01.2026", "32.01.2026", "01.13.2026", "01.00.2026",
                           "01.01.0000", "1.1.2026 ", " 01.01.2026x", "01.01.2026x", "01.01.20266", "a.b.c", "."}) {
    EXPECT_EQ(dateIn("%d.%m.%Y", cell), "is no date written as \"%d.%m.%Y\"") << cell;
  }
  EXPECT_EQ(dateIn("%d.%m.%Y", "29.02.2024"), "2024-02-29");
  EXPECT_EQ(dateIn("%Y-%j", "2026-366"), "is no date written as \"%Y-%j\"");
  for (const char* cell : {"24:00:00", "12:60:00", "12:00:60", "12:00", ":00:00"}) {
    EXPECT_EQ(plainOf(timeBy("%H:%M:%S"), cell), "is no time written as \"%H:%M:%S\"") << cell;
  }
}

TEST(DeclaredMoment, KnowsHalvesOfTheDay) {
  const CellReading halves = timeBy("%I:%M %p");
  EXPECT_EQ(plainOf(halves, "12:00 AM"), "00:00:00");
  EXPECT_EQ(plainOf(halves, "12:30 PM"), "12:30:00");
  EXPECT_EQ(plainOf(halves, "1:05 pm"), "13:05:00");
  EXPECT_EQ(plainOf(halves, "13:05 pm"), "is no time written as \"%I:%M %p\"");
  EXPECT_EQ(plainOf(halves, "0:05 am"), "is no time written as \"%I:%M %p\"");
  EXPECT_EQ(plainOf(timeBy("%r"), "03:04:05 PM"), "15:04:05");
  EXPECT_EQ(plainOf(timeBy("%H:%M %p"), "15:04 PM"), "15:04:00");
  EXPECT_EQ(plainOf(timeBy("%H:%M %p"), "15:04 AM"), "is no time written as \"%H:%M %p\"");
}

TEST(DeclaredMoment, KnowsBlanksInPatterns) {
  EXPECT_EQ(dateIn("%b %e, %Y", "Nov  1, 2026"), "2026-11-01");
  EXPECT_EQ(dateIn("%b%e, %Y", "Nov 1, 2026"), "2026-11-01");
  EXPECT_EQ(dateIn("%b%d, %Y", "Nov 1, 2026"), "2026-11-01");
  EXPECT_EQ(dateIn("%d%n%m%t%Y", "1 2\t2026"), "2026-02-01");
  EXPECT_EQ(dateIn("%d %m %Y", "122026"), "is no date written as \"%d %m %Y\"");
  EXPECT_EQ(plainOf(timeBy("%k:%M"), " 9:05"), "09:05:00");
  EXPECT_EQ(plainOf(timeBy("%l:%M %p"), " 9:05 PM"), "21:05:00");
}

TEST(DeclaredMoment, ReadsZonesByPattern) {
  const CellReading zoned = dateTimeBy("%Y-%m-%d %H:%M:%S %z");
  for (const char* zone : {"+0100", "+01:00", "+01"}) {
    EXPECT_EQ(plainOf(zoned, std::string("2026-11-21 00:30:00 ") + zone), "2026-11-20T23:30:00") << zone;
  }
  EXPECT_EQ(plainOf(zoned, "2026-11-21 00:30:00 Z"), "2026-11-21T00:30:00");
  EXPECT_EQ(plainOf(zoned, "2026-11-21 00:30:00"), "is no date with a time written as \"%Y-%m-%d %H:%M:%S %z\"");
}

TEST(DeclaredMoment, RewritesDurationsByTheirAmounts) {
  EXPECT_EQ(plainOf(duration, "P14M"), "P1Y2M");
  EXPECT_EQ(plainOf(duration, "PT90M"), "PT1H30M");
  EXPECT_EQ(plainOf(duration, "-P0D"), "PT0S");
}

// What is said of "this pattern", which every problem is about; empty when there is none.
std::string problemIn(CellType type, std::string_view pattern) {
  constexpr std::string_view subject = "this pattern ";
  const std::string problem = patternProblem(type, pattern).value_or("");
  return problem.starts_with(subject) ? problem.substr(subject.size()) : problem;
}

TEST(DatePatterns, AreRightWhenTheyDetermineOneValue) {
  for (const char* pattern :
       {"", "%Y-%m-%d", "%y%m%d", "%Y-%j", "%G-W%V-%u", "%Y %U %w", "%Y %W %A", "%d %B %Y", "%D", "%F"}) {
    EXPECT_EQ(problemIn(CellType::date, pattern), "") << pattern;
    EXPECT_EQ(problemIn(CellType::dateTime, pattern), "") << pattern;
  }
  for (const char* pattern : {"", "%H", "%H:%M", "%I %p", "%T", "%R", "%r", "%H:%M:%S.%f", "%k%M"}) {
    EXPECT_EQ(problemIn(CellType::time, pattern), "") << pattern;
  }
  EXPECT_EQ(problemIn(CellType::dateTime, "%FT%T%z"), "");
  EXPECT_EQ(problemIn(CellType::dateTime, "%a %b %e %H:%M:%S %Y"), "");
}

TEST(DatePatterns, AreWrongWhenTheyDoNot) {
  constexpr const char* noDate =
      "does not determine a date: that needs a year, a month and a day, or a year and a day of the year";
  for (const char* pattern : {"%m-%d", "%Y", "%Y-%m", "%Y-%d", "DD.MM.YYYY", "%A", "%G-%V", "%Y %U", "%%Y-%%m-%%d"}) {
    EXPECT_EQ(problemIn(CellType::date, pattern), noDate) << pattern;
    EXPECT_EQ(problemIn(CellType::dateTime, pattern), noDate) << pattern;
  }
  constexpr const char* noTime = "does not determine a time: that needs an hour of 24, or one of 12 and AM or PM";
  for (const char* pattern : {"%M", "%I:%M", "%p", "hh:mm"}) EXPECT_EQ(problemIn(CellType::time, pattern), noTime);
  EXPECT_EQ(problemIn(CellType::dateTime, "%F %M"), noTime);
  for (const char* pattern : {"%H %S", "%H:%M.%f"}) {
    EXPECT_EQ(problemIn(CellType::time, pattern),
              "does not determine a time: seconds need minutes, and their fraction needs seconds");
  }
}

TEST(DatePatterns, AreWrongWhenTheyTellMoreThanTheTypeHas) {
  EXPECT_EQ(problemIn(CellType::date, "%F %H:%M"),
            "has a time of day, which a date has not; declare the field as datetime");
  EXPECT_EQ(problemIn(CellType::time, "%H:%M %d"),
            "has parts of a date, which a time has not; declare the field as datetime");
  EXPECT_EQ(problemIn(CellType::time, "%H:%M %z"), "has a time zone, which only a date with a time can have");
  EXPECT_EQ(problemIn(CellType::date, "%F%z"), "has a time zone, which only a date with a time can have");
  EXPECT_EQ(problemIn(CellType::number, "%F"), "is a pattern of dates or times, which values of this type are not");
}

TEST(DatePatterns, AreWrongWhenTheyAreNotUnderstood) {
  EXPECT_EQ(problemIn(CellType::date, "any"),
            "leaves open how the values are written, and nothing is guessed; name a pattern");
  for (const char letter : std::string_view("cxXZsEOQ-iN")) {
    EXPECT_EQ(problemIn(CellType::date, fmt::format("%F %{}", letter)),
              fmt::format("has the directive \"%{}\", which is not known", letter));
  }
  EXPECT_EQ(problemIn(CellType::date, "%F%"), "ends with a single \"%\"");
  EXPECT_EQ(problemIn(CellType::date, "%F %d"), "tells with \"%d\" what it has told before");
  EXPECT_EQ(problemIn(CellType::date, "%d %m %b %Y"), "tells with \"%b\" what it has told before");
  EXPECT_EQ(problemIn(CellType::date, "%Y %y-%m-%d"), "tells the year twice");
  EXPECT_EQ(problemIn(CellType::date, "%C-%m-%d"), "has a century without a year in it");
}

// Every way to tell a day tells the same day.
TEST(DatePatterns, ReadEveryDayInEveryWay) {
  EXPECT_TRUE(rc::check([](std::uint32_t picked) {
    const double day = static_cast<double>(picked % 3'652'059U) - 719'162;  // years 1 to 9999
    std::string iso;
    ASSERT_TRUE(dateText(day));
    iso = *dateText(day);
    const auto monthName = std::to_array<std::string_view>(
        {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"});
    const auto number = [&](std::size_t start, std::size_t size) { return std::stoi(iso.substr(start, size)); };
    const auto valueIn = [](std::string pattern, const std::string& text) {
      CellReader reader(dateBy(std::move(pattern)));
      return reader.number(text);
    };
    RC_ASSERT(valueIn("%d.%m.%Y", fmt::format("{}.{}.{}", number(8, 2), number(5, 2), iso.substr(0, 4))) == day);
    RC_ASSERT(valueIn("%b %e, %Y", fmt::format("{} {:2}, {}", monthName[static_cast<std::size_t>(number(5, 2) - 1)],
                                               number(8, 2), iso.substr(0, 4))) == day);
    const double newYear = dateOf(iso.substr(0, 4) + "-01-01")->value;
    RC_ASSERT(valueIn("%Y/%j", fmt::format("{}/{}", iso.substr(0, 4), day - newYear + 1)) == day);
    int agreeing = 0;
    for (int week = 0; week <= 53; ++week) {
      for (int weekday = 0; weekday < 7; ++weekday) {
        const std::string text = fmt::format("{} {:02} {}", iso, week, weekday);
        if (valueIn("%F %U %w", text) == day) ++agreeing;
      }
    }
    RC_ASSERT(agreeing == 1);
  }));
}

}  // namespace
}  // namespace workbench::data
