// How many digits numbers take, against their texts.
#include "workbench/data/columnar/number_shape.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <vector>

#include "workbench/data/cells/decimal_text.h"

namespace workbench::data {
namespace {

struct Widths {
  std::int32_t whole = 1;
  std::int32_t fraction = 0;

  void add(double number) {
    const std::string text = fmt::format("{}", number);
    const Decimal decimal = *decimalOf(text);
    whole = std::max(whole, decimal.expandedWholeDigits() + (number < 0 ? 1 : 0));
    fraction = std::max(fraction, decimal.expandedFractionDigits());
  }
};

void checkAgainstTexts(const std::vector<double>& numbers) {
  NumberShape shape;
  Widths expected;
  for (const double number : numbers) {
    shape.addReal(number);
    expected.add(number);
  }
  RC_ASSERT(shape.wholeWidth() == expected.whole);
  RC_ASSERT(shape.fractionDigits() == expected.fraction);
}

TEST(NumberShape, IsThatOfTheNumbersInTheirShortestForm) {
  EXPECT_TRUE(rc::check([](const std::vector<std::int32_t>& digits, std::uint8_t places) {
    std::vector<double> numbers;
    for (const std::int32_t number : digits) numbers.push_back(number / std::pow(10.0, places % 8));
    checkAgainstTexts(numbers);
  }));
}

TEST(NumberShape, HoldsForDoublesOfAnyBits) {
  EXPECT_TRUE(rc::check([](const std::vector<std::uint64_t>& bits) {
    std::vector<double> numbers;
    for (const std::uint64_t each : bits) {
      const auto number = std::bit_cast<double>(each);
      if (std::isfinite(number) && std::fabs(number) < 1e15) numbers.push_back(number);
    }
    checkAgainstTexts(numbers);
  }));
}

}  // namespace
}  // namespace workbench::data
