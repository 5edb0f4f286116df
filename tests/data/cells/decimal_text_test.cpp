#include "workbench/data/cells/decimal_text.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

namespace workbench::data {
namespace {

std::string judged(std::string_view text) {
  const auto number = decimalOf(text);
  if (!number) return "text";
  return isHeld(*number) ? "number" : "not held";
}

double valueOfText(std::string_view text) {
  const auto number = decimalOf(text);
  return number ? valueOf(*number).value_or(std::nan("")) : std::nan("");
}

TEST(DecimalText, TakesOnlyDecimalNumbers) {
  for (const char* text :
       {"0", "7", "-7", "+7", "0.5", "-0.5", ".5", "5.", "10.50", "1e5", "1E+05", "1.5e-3", "0e0", "-0"}) {
    EXPECT_EQ(judged(text), "number") << text;
  }
  for (const char* text : {"",      "-",    "+",   ".",   "e5",  "1e",   "1e+",      "--1", "1 ",    " 1", "1,000",
                           "1.2.3", "0x10", "nan", "NaN", "inf", "-inf", "Infinity", "1f",  "1_000", "١"}) {
    EXPECT_EQ(judged(text), "text") << text;
  }
}

TEST(DecimalText, TakesAZeroBeforeAnotherDigitForAnIdentifier) {
  for (const char* text : {"007", "00", "-01", "00.5", "+00"}) EXPECT_EQ(judged(text), "text") << text;
}

TEST(DecimalText, HoldsWholeNumbersUpToTwoToTheFiftyThree) {
  EXPECT_EQ(judged("9007199254740992"), "number");
  EXPECT_EQ(judged("-9007199254740992"), "number");
  EXPECT_EQ(judged("9007199254740991.000"), "number");
  EXPECT_EQ(judged("9007199254740993"), "not held");
  EXPECT_EQ(judged("9007199254740994"), "not held");
  EXPECT_EQ(judged("100000000000000000000"), "not held");
  EXPECT_EQ(judged("9007199254740993.0"), "not held");
}

TEST(DecimalText, HoldsFifteenDigitsAndWritingsOfDoubles) {
  EXPECT_EQ(judged("0.123456789012345"), "number");
  EXPECT_EQ(judged("0.000000000000000000000123456789012345000"), "number");
  EXPECT_EQ(judged("0.30000000000000004"), "number") << "the shortest form of a double";
  EXPECT_EQ(judged("0.10000000000000001"), "number") << "the form of 17 digits";
  EXPECT_EQ(judged("0.3000000000000000444"), "not held");
  EXPECT_EQ(judged("0.12345678901234567890123456789012345"), "not held");
  EXPECT_EQ(judged("0.1000000000000000199"), "not held");
  EXPECT_EQ(judged("1.7976931348623157e308"), "number");
}

TEST(DecimalText, DoesNotHoldWhatIsBeyondTheRangeOfDoubles) {
  EXPECT_EQ(judged("1e400"), "not held");
  EXPECT_EQ(judged("-1e400"), "not held");
  EXPECT_EQ(judged("1e-400"), "not held");
  EXPECT_EQ(judged("1e99999999999999999999"), "not held");
  EXPECT_EQ(judged("0e400"), "number") << "zero as written";
  EXPECT_EQ(judged("5e-324"), "number") << "the shortest form of the smallest double";
  EXPECT_EQ(judged("6e-324"), "not held");
}

TEST(DecimalText, KeepsTheSignOfZero) {
  EXPECT_TRUE(std::signbit(valueOfText("-0")));
  EXPECT_TRUE(std::signbit(valueOfText("-0.00")));
  EXPECT_FALSE(std::signbit(valueOfText("0")));
  EXPECT_EQ(decimalText(-0.0), "-0");
}

TEST(DecimalText, CountsDigitsWithTheExponentCarriedOut) {
  const auto digits = [](std::string_view text) {
    const auto number = decimalOf(text);
    return std::to_string(number->expandedWholeDigits()) + "." + std::to_string(number->expandedFractionDigits());
  };
  EXPECT_EQ(digits("12.50"), "2.2");
  EXPECT_EQ(digits("1.5e3"), "4.0");
  EXPECT_EQ(digits("1.5e-3"), "1.4");
  EXPECT_EQ(digits("0.001"), "1.3");
  EXPECT_EQ(digits("0.001e5"), "3.0");
  EXPECT_EQ(digits("0"), "1.0");
}

TEST(DecimalText, IsShortAndReadable) {
  EXPECT_EQ(decimalText(100000), "100000");
  EXPECT_EQ(decimalText(0.1), "0.1");
  EXPECT_EQ(decimalText(-12.5), "-12.5");
  EXPECT_EQ(decimalText(9007199254740992.0), "9007199254740992");
  EXPECT_EQ(decimalText(9007199254740994.0), "9.007199254740994e+15");
  EXPECT_EQ(decimalText(1e22), "1e+22");
}

double finiteDouble(std::uint64_t bits) {
  const auto value = std::bit_cast<double>(bits);
  return std::isfinite(value) ? value : 0.0;
}

TEST(DecimalText, WritesEveryDoubleAsAHeldNumberThatReadsAsItsBits) {
  EXPECT_TRUE(rc::check([](std::uint64_t bits) {
    const double value = finiteDouble(bits);
    const std::string text = decimalText(value);
    RC_ASSERT(judged(text) == "number");
    RC_ASSERT(std::bit_cast<std::uint64_t>(valueOfText(text)) == std::bit_cast<std::uint64_t>(value));
  }));
}

TEST(DecimalText, ReadsShortAndLongWritingsAlikeAsTheNearestDouble) {
  EXPECT_TRUE(rc::check([](std::int64_t mantissa, std::uint8_t places) {
    std::string text = std::to_string(mantissa % 1'000'000'000'000'000);
    const std::size_t first = text.front() == '-' ? 1 : 0;
    const std::size_t point = first + 1 + places % (text.size() - first);
    if (point < text.size()) text.insert(point, 1, '.');
    const double expected = std::strtod(text.c_str(), nullptr);
    RC_ASSERT(judged(text) == "number");
    RC_ASSERT(valueOfText(text) == expected);
    ShortDecimal number;
    RC_ASSERT(number.read(text));
    RC_ASSERT(number.value() == expected);
  }));
}

TEST(DecimalText, KnowsAllShortDecimalsTheLongWay) {
  EXPECT_TRUE(rc::check([](const std::string& picked) {
    std::string text;
    for (const char character : picked) text += "0123456789.-+e"[static_cast<unsigned char>(character) % 14];
    ShortDecimal number;
    if (!number.read(text)) return;
    RC_ASSERT(judged(text) == "number");
    RC_ASSERT(number.value() == valueOfText(text));
    RC_ASSERT(std::signbit(number.value()) == std::signbit(valueOfText(text)));
  }));
}

}  // namespace
}  // namespace workbench::data
