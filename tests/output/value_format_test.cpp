#include "workbench/output/value_format.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace workbench::output {
namespace {

struct FormatCase {
  double value;
  FormatType type;
  std::int32_t width;
  std::int32_t decimals;
  std::string shown;
};

constexpr double second = 1795276795;  // 2026-11-21T15:59:55

TEST(ValueFormat, ShowsNumbersAsTheirPrintFormatSays) {
  const std::vector<FormatCase> cases = {
      {5, FormatType::number, 8, 0, "5"},
      {5, FormatType::number, 8, 2, "5.00"},
      {-1.5, FormatType::number, 8, 2, "-1.50"},
      {12345678.25, FormatType::number, 4, 1, "12345678.3"},  // wider than its format: whole all the same
      {0.125, FormatType::number, 8, 2, "0.13"},              // an exact half goes away from zero
      {-0.125, FormatType::number, 8, 2, "-0.13"},
      {2.5, FormatType::number, 8, 0, "3"},
      {1.005, FormatType::number, 8, 2, "1.00"},  // the nearest double lies below the half
      {0.004, FormatType::number, 8, 2, "0.00"},
      {-0.004, FormatType::number, 8, 2, "0.00"},
      {-0.0, FormatType::number, 8, 0, "0"},
      {999.995, FormatType::number, 8, 2, "1000.00"},
      {9007199254740993.0, FormatType::number, 8, 0, "9007199254740992"},
      {1e20, FormatType::number, 8, 0, "100000000000000000000"},
      {1e300, FormatType::number, 8, 2, "1e+300"},
      {DBL_MAX, FormatType::comma, 8, 2, "1.7976931348623157e+308"},
      {DBL_MIN, FormatType::number, 8, 3, "0.000"},
      {1234.5, FormatType::comma, 8, 2, "1,234.50"},
      {123, FormatType::comma, 8, 0, "123"},
      {-1234567, FormatType::comma, 8, 0, "-1,234,567"},
      {-123456, FormatType::comma, 8, 0, "-123,456"},
      {1234.5, FormatType::dot, 8, 2, "1.234,50"},
      {1234.5, FormatType::dollar, 8, 2, "$1,234.50"},
      {-1234.5, FormatType::dollar, 8, 2, "-$1,234.50"},
      {12.5, FormatType::percent, 8, 1, "12.5%"},
      {12345, FormatType::scientific, 8, 2, "1.23E+04"},
      {-0.00012, FormatType::scientific, 8, 1, "-1.2E-04"},
      {42, FormatType::restricted, 5, 0, "00042"},
      {-42, FormatType::restricted, 5, 0, "-0042"},
      {1234567, FormatType::restricted, 5, 0, "1234567"},
      {1234.5, FormatType::customA, 8, 2, "1234.50"},
      {1234.5, FormatType::customE, 8, 2, "1234.50"},
      {20778, FormatType::date, 10, 0, "2026-11-21"},
      {20778.75, FormatType::date, 10, 0, "2026-11-21"},
      {0, FormatType::date, 10, 0, "1970-01-01"},
      {-1, FormatType::date, 10, 0, "1969-12-31"},
      {-719162, FormatType::date, 10, 0, "0001-01-01"},
      {-719163, FormatType::date, 10, 0, "-719163"},
      {2932896, FormatType::date, 10, 0, "9999-12-31"},
      {2932897, FormatType::date, 10, 0, "2932897"},
      {1e300, FormatType::date, 10, 0, "1e+300"},
      {57595, FormatType::time, 8, 0, "15:59:55"},
      {57595.25, FormatType::time, 11, 2, "15:59:55.25"},
      {59.96, FormatType::time, 10, 1, "00:01:00.0"},
      {-1, FormatType::time, 8, 0, "-00:00:01"},
      {360000, FormatType::time, 8, 0, "100:00:00"},
      {1e13, FormatType::time, 8, 0, "10000000000000"},
      {second, FormatType::dateTime, 19, 0, "2026-11-21T15:59:55"},
      {second + 0.5, FormatType::dateTime, 21, 1, "2026-11-21T15:59:55.5"},
      {-0.5, FormatType::dateTime, 21, 1, "1969-12-31T23:59:59.5"},
      {1e15, FormatType::dateTime, 19, 0, "1000000000000000"},
      {2 * 1099511627776.0 + 90, FormatType::duration, 10, 0, "P2MT1M30S"},
      {0.25, FormatType::duration, 10, 0, "PT0.25S"},
      {1e300, FormatType::duration, 10, 0, "1e+300"},
      {7.25, FormatType::text, 8, 0, "7.25"},
      {7.25, static_cast<FormatType>(99), 8, 0, "7.25"},
      {3, FormatType::number, 8, -2, "3"},
      {-DBL_MAX, FormatType::number, 8, 2, "."},
      {-DBL_MAX, FormatType::date, 10, 0, "."},
  };
  for (const FormatCase& one : cases) {
    EXPECT_EQ(formattedNumber(one.value, one.type, one.width, one.decimals, NumberStyle::asFormatted), one.shown)
        << one.value << " in format " << static_cast<int>(one.type);
  }
}

TEST(ValueFormat, HasADecimalPointAndNoGroupingForScripts) {
  const auto plain = [](FormatType type) { return formattedNumber(-1234.5, type, 8, 2, NumberStyle::plain); };
  EXPECT_EQ(plain(FormatType::comma), "-1234.50");
  EXPECT_EQ(plain(FormatType::dot), "-1234.50");
  EXPECT_EQ(plain(FormatType::dollar), "-1234.50");
  EXPECT_EQ(plain(FormatType::percent), "-1234.50%");
}

TEST(ValueFormat, ShowsNumbersInFullWithoutAnExponentWhereThatCanBeRead) {
  EXPECT_EQ(fullNumber(100000), "100000");
  EXPECT_EQ(fullNumber(0.1), "0.1");
  EXPECT_EQ(fullNumber(0.000001), "0.000001");
  EXPECT_EQ(fullNumber(-0.0), "-0");
  EXPECT_EQ(fullNumber(1e21), "1e+21");
  EXPECT_EQ(fullNumber(4.9e-324), "5e-324");
  EXPECT_EQ(fullNumber(-DBL_MAX), ".");
}

TEST(ValueFormat, ShowsDatesAndTimesInFullWithTheDecimalsTheyHave) {
  EXPECT_EQ(fullNumber(second, FormatType::dateTime), "2026-11-21T15:59:55");
  EXPECT_EQ(fullNumber(second + 0.25, FormatType::dateTime), "2026-11-21T15:59:55.25");
  EXPECT_EQ(fullNumber(57595.5, FormatType::time), "15:59:55.5");
  EXPECT_EQ(fullNumber(20778, FormatType::date), "2026-11-21");
  EXPECT_EQ(fullNumber(20778.5, FormatType::date), "20778.5");
  EXPECT_EQ(fullNumber(5400.5, FormatType::duration), "PT1H30M0.5S");
}

TEST(ValueFormat, ShowsCountsWholeAndPercentagesWithOneDecimal) {
  EXPECT_EQ(countText(150), "150");
  EXPECT_EQ(countText(0), "0");
  EXPECT_EQ(countText(9007199254740992), "9007199254740992");
  EXPECT_EQ(countText(-DBL_MAX), ".");
  EXPECT_EQ(percentText(12.5), "12.5%");
  EXPECT_EQ(percentText(0), "0.0%");
  EXPECT_EQ(percentText(100), "100.0%");
  EXPECT_EQ(percentText(6.25), "6.3%");
  EXPECT_EQ(percentText(-DBL_MAX), ".");
}

TEST(ValueFormat, ShowsNoShareAsNothingOrAsTheWholeThatIsNot) {
  EXPECT_EQ(percentText(0.04), "0.04%");
  EXPECT_EQ(percentText(0.0001), "0.0001%");
  EXPECT_EQ(percentText(1e-30), "1e-30%");
  EXPECT_EQ(percentText(99.96), "99.96%");
  EXPECT_EQ(percentText(99.99999), "99.99999%");
  EXPECT_EQ(percentText(std::nextafter(100.0, 0.0)), "99.99999999999999%");
}

RC_GTEST_PROP(ValueFormat, ReadsBackAsTheSameNumberInFull, (std::uint64_t bits)) {
  const double value = std::bit_cast<double>(bits);
  RC_PRE(std::isfinite(value) && !isSystemMissing(value));
  RC_ASSERT(std::bit_cast<std::uint64_t>(std::strtod(fullNumber(value).c_str(), nullptr)) == bits);
}

RC_GTEST_PROP(ValueFormat, TakesAnyNumberInAnyFormat, (std::uint64_t bits, std::int32_t width, std::int32_t decimals)) {
  const double value = std::bit_cast<double>(bits);
  for (const FormatTypeRow& row : formatTypeRows) {
    RC_ASSERT(!formattedNumber(value, row.type, width, decimals, NumberStyle::asFormatted).empty());
  }
}

}  // namespace
}  // namespace workbench::output
