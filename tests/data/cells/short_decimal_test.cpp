// Short decimals against the same rules written out character by character.
#include "workbench/data/cells/short_decimal.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace workbench::data {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isShortDecimal(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = point == text.size() ? "" : text.substr(point + 1);
  const std::size_t digits = whole.size() + fraction.size();
  return digits >= 1 && digits <= 15 && (whole.size() <= 1 || whole.front() != '0') &&
         std::all_of(whole.begin(), whole.end(), isDigit) && std::all_of(fraction.begin(), fraction.end(), isDigit);
}

// What a number is held to be: its value, its digits before and behind the point.
std::string shown(const ShortDecimal& number) {
  return std::to_string(number.value()) + (std::signbit(number.value()) ? " -" : " +") + " " +
         std::to_string(number.wholeDigits()) + " " + std::to_string(number.fractionDigits());
}

std::string expected(std::string_view text) {
  const double value = std::strtod(std::string(text).c_str(), nullptr);
  const std::size_t unsignedLength = text.size() - (text.starts_with('-') ? 1 : 0);
  const std::size_t point = text.find('.');
  const std::size_t fraction = point == std::string_view::npos ? 0 : text.size() - point - 1;
  const std::size_t whole = unsignedLength - fraction - (point == std::string_view::npos ? 0 : 1);
  return std::to_string(value) + (std::signbit(value) ? " -" : " +") + " " + std::to_string(whole) + " " +
         std::to_string(fraction);
}

// All beginnings of the text, each with more of anything behind it.
void checkAllBeginnings(const std::string& text, std::size_t& numbers) {
  for (std::size_t length = 0; length <= std::min<std::size_t>(text.size(), 20); ++length) {
    std::string padded = text;
    padded.resize(std::max(padded.size(), length) + readableBehind, '7');
    const std::string_view cell = std::string_view(padded).substr(0, length);
    ShortDecimal inPlace;
    ShortDecimal copied;
    RC_ASSERT(inPlace.readPadded(cell) == isShortDecimal(cell));
    RC_ASSERT(copied.read(std::string(cell)) == isShortDecimal(cell));
    if (!isShortDecimal(cell)) continue;
    ++numbers;
    RC_ASSERT(shown(inPlace) == expected(cell));
    RC_ASSERT(shown(copied) == expected(cell));
    RC_ASSERT(inPlace.value() == std::strtod(std::string(cell).c_str(), nullptr));
  }
}

TEST(ShortDecimal, IsReadByItsRulesWhateverStandsBehindIt) {
  constexpr std::string_view characters = "012345678901234567890123456789..-+e:/ \x01\x1E\x7F\x80\x8A\xCF\xFF";
  std::size_t numbers = 0;
  EXPECT_TRUE(rc::check(
      [&](const std::vector<std::uint8_t>& picked, const std::vector<std::uint8_t>& digits, std::uint8_t place) {
        std::string text;
        for (const std::uint8_t pick : picked) text += characters[pick % characters.size()];
        checkAllBeginnings(text, numbers);
        std::string number = place % 5 == 0 ? "-" : "";
        for (const std::uint8_t digit : digits) number += static_cast<char>('0' + digit % 10);
        if (place % 3 != 0 && !number.empty()) number.insert(place % (number.size() + 1), 1, '.');
        checkAllBeginnings(number, numbers);
      }));
  EXPECT_GT(numbers, 500U);
}

// One byte of a number is another: every byte at every place of every length.
TEST(ShortDecimal, IsNoneWithAnyOtherByteInIt) {
  for (std::size_t length = 1; length <= 17; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string padded(length + readableBehind, '1');
        padded[at] = static_cast<char>(byte);
        const std::string_view cell = std::string_view(padded).substr(0, length);
        ShortDecimal number;
        ASSERT_EQ(number.readPadded(cell), isShortDecimal(cell)) << cell << " with byte " << byte << " at " << at;
        if (!isShortDecimal(cell)) continue;
        ASSERT_EQ(shown(number), expected(cell)) << cell;
      }
    }
  }
}

}  // namespace
}  // namespace workbench::data
