#include "workbench/data/cells/short_decimal.h"

namespace workbench::data {

bool ShortDecimal::readTwoWords(std::string_view text, ShortDecimal& number) {
  using namespace digit_words;
  __extension__ using TwoWords = unsigned __int128;
  constexpr std::size_t mostDigits = 15;
  const TwoWords loaded = TwoWords{eightBytes(text.data() + 8) ^ zeros} << 64 | (eightBytes(text.data()) ^ zeros);
  TwoWords digits = loaded << (128 - 8 * text.size());
  const auto firstWord = [&] { return static_cast<std::uint64_t>(digits); };
  const auto secondWord = [&] { return static_cast<std::uint64_t>(digits >> 64); };

  std::size_t count = text.size();
  std::size_t fractionDigits = 0;
  const std::uint64_t firstOthers = othersThanDigits(firstWord());
  const std::uint64_t secondOthers = othersThanDigits(secondWord());
  if ((firstOthers | secondOthers) != 0) {
    if (std::popcount(firstOthers) + std::popcount(secondOthers) != 1) return false;
    const int at = (firstOthers != 0 ? std::countr_zero(firstOthers) : 64 + std::countr_zero(secondOthers)) - 7;
    if (static_cast<unsigned>(digits >> at & 0xFF) != point) return false;
    const TwoWords before = (TwoWords{1} << at) - 1;
    digits = (digits & ~(before << 8 | 0xFF)) | (digits & before) << 8;
    fractionDigits = sizeof digits - 1 - static_cast<std::size_t>(at) / 8;
    --count;
  }
  number.first_ = firstWord();
  number.second_ = secondWord();
  return count <= mostDigits && number.take(text, count, fractionDigits);
}

bool ShortDecimal::read(std::string_view text) {
  constexpr std::size_t longest = 17;  // a sign, 15 digits, a point
  if (text.size() > longest) return false;
  char padded[longest + readableBehind] = {};
  text.copy(padded, text.size());
  return readPadded({padded, text.size()});
}

}  // namespace workbench::data
