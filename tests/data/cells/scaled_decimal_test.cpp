// Numbers with a plus sign or an exponent against the same numbers taken apart character by character.
#include "workbench/data/cells/scaled_decimal.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/data/cells/decimal_text.h"

namespace workbench::data {
namespace {

// A cell with more behind it, as it lies in a file.
class PaddedCell {
 public:
  explicit PaddedCell(std::string_view cell) : size_(cell.size()), padded_(cell) {
    padded_.append(readableBehind, '7');
  }
  std::string_view text() const { return std::string_view(padded_).substr(0, size_); }

 private:
  std::size_t size_;
  std::string padded_;
};

// Whatever is read is a number that is held, with the value and the digits that it has when taken apart.
void checkAgainstDecimal(std::string_view cell) {
  const PaddedCell padded(cell);
  ScaledDecimal number;
  if (!number.readPadded(padded.text())) return;
  const std::optional<Decimal> judge = decimalOf(cell);
  RC_ASSERT(judge.has_value());
  RC_ASSERT(isHeld(*judge));
  const std::optional<double> value = valueOf(*judge);
  RC_ASSERT(value == number.value());
  RC_ASSERT(std::signbit(*value) == std::signbit(number.value()));
  RC_ASSERT(number.isNegative() == judge->isNegative());
  RC_ASSERT(number.expandedWholeDigits() == judge->expandedWholeDigits());
  RC_ASSERT(number.expandedFractionDigits() == judge->expandedFractionDigits());
  RC_ASSERT(number.significantDigits() == judge->significantDigits());
}

TEST(ScaledDecimal, ReadsNumbersAsTheyAreTakenApart) {
  EXPECT_TRUE(rc::check([](std::int64_t mantissa, std::uint8_t place, std::int16_t exponent, std::uint8_t form) {
    std::string text = std::to_string(mantissa % 1'000'000'000'000'000);
    const bool isNegative = text.front() == '-';
    const std::size_t first = isNegative ? 1 : 0;
    if (form % 2 == 0) text.insert(first + place % (text.size() - first + 1), 1, '.');
    if (!isNegative && form % 3 == 0) text.insert(0, 1, '+');
    if (form % 5 != 0) {
      text += form % 7 == 0 ? "E" : "e";
      if (exponent > 0 && form % 11 == 0) text += '+';
      text += std::to_string(exponent % (form % 13 == 0 ? 400 : 30));
    }
    checkAgainstDecimal(text);
  }));
}

TEST(ScaledDecimal, TakesNothingForANumberThatIsNone) {
  EXPECT_TRUE(rc::check([](const std::vector<std::uint8_t>& picked) {
    constexpr std::string_view characters = "0123456789.-+eE ";
    std::string text;
    for (const std::uint8_t pick : picked) text += characters[pick % characters.size()];
    for (std::size_t length = 0; length <= text.size(); ++length) {
      checkAgainstDecimal(std::string_view(text).substr(0, length));
    }
  }));
}

TEST(ScaledDecimal, ReadsTheFormsInWhichProgramsWriteNumbers) {
  const auto valueOfCell = [](std::string_view cell) {
    const PaddedCell padded(cell);
    ScaledDecimal number;
    return number.readPadded(padded.text()) ? number.value() : std::nan("");
  };
  EXPECT_EQ(valueOfCell("+7"), 7);
  EXPECT_EQ(valueOfCell("15e-1"), 1.5);
  EXPECT_EQ(valueOfCell("1.25E+2"), 125);
  EXPECT_EQ(valueOfCell("-.5e0"), -0.5);
  EXPECT_EQ(valueOfCell("123456789012345e-37"), 1.23456789012345e-23) << "beyond exact powers of ten";
  EXPECT_EQ(valueOfCell("+1e100"), 1e100);
  EXPECT_TRUE(std::signbit(valueOfCell("-0e5")));
}

TEST(ScaledDecimal, LeavesToOthersWhatMayNotBeHeld) {
  for (const std::string_view cell : {"", "+", "-", "e5", "1e", "1e+", "+-1", "++1", "1e1e1", "1e5.0", "1 e5", "07e1",
                                      "1234567890123456e0", "1e251", "1e-251", "1e1000", "1e00001", "0x1p3", "nan"}) {
    const PaddedCell padded(cell);
    ScaledDecimal number;
    EXPECT_FALSE(number.readPadded(padded.text())) << cell;
  }
}

}  // namespace
}  // namespace workbench::data
