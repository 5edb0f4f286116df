// ShortDecimal: a decimal number of the kind that most are, read as fast as it can be.
//
// It has at most 15 digits and no exponent, so it is always held. All that it is not (longer, with an exponent, with a
// plus sign) is decimal_text's to read.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace workbench::data {

struct ShortDecimal {
  std::uint64_t mantissa = 0;  // all digits as one whole number
  std::int32_t wholeDigits = 0;
  std::int32_t fractionDigits = 0;
  bool negative = false;

  double value() const;
};

// False when the text is something else, a longer number perhaps; the result is then of no use.
bool readShortDecimal(std::string_view text, ShortDecimal& number);

// So many bytes behind a text can be read, whatever they are.
inline constexpr std::size_t readableBehind = 16;

// The same, without a loop over the digits. Requires: readableBehind.
bool readPaddedShortDecimal(std::string_view text, ShortDecimal& number);

inline bool readShortDecimal(std::string_view text, ShortDecimal& number) {
  constexpr std::ptrdiff_t mostDigits = 15;
  const char* next = text.data();
  const char* const end = next + text.size();
  number.negative = next != end && *next == '-';
  if (number.negative) ++next;
  std::uint64_t mantissa = 0;
  const auto takeDigits = [&] {
    for (; next != end; ++next) {
      const unsigned digit = static_cast<unsigned char>(*next) - static_cast<unsigned>('0');
      if (digit > 9) break;
      mantissa = mantissa * 10 + digit;  // may overflow; then there are too many digits
    }
  };
  const char* const whole = next;
  takeDigits();
  const std::ptrdiff_t wholeDigits = next - whole;
  std::ptrdiff_t fractionDigits = 0;
  if (next != end && *next == '.') {
    const char* const fraction = ++next;
    takeDigits();
    fractionDigits = next - fraction;
  }
  const std::ptrdiff_t digits = wholeDigits + fractionDigits;
  if (next != end || digits == 0 || digits > mostDigits || (wholeDigits > 1 && *whole == '0')) return false;
  number.mantissa = mantissa;
  number.wholeDigits = static_cast<std::int32_t>(wholeDigits);
  number.fractionDigits = static_cast<std::int32_t>(fractionDigits);
  return true;
}

inline double ShortDecimal::value() const {
  // Both operands being exact, the one operation rounds correctly.
  constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                    1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const double magnitude = static_cast<double>(mantissa) / powersOfTen[fractionDigits];
  return negative ? -magnitude : magnitude;
}

// Characters in a word, the first in the lowest byte: 8 of them in one word or 16 in a double one.
namespace character_words {

using OneWord = std::uint64_t;
__extension__ using TwoWords = unsigned __int128;

inline constexpr OneWord eightZeros = 0x3030303030303030;
template <class Word>
inline constexpr Word zeros =
    sizeof(Word) == sizeof(OneWord) ? Word{eightZeros} : static_cast<Word>(TwoWords{eightZeros} << 64 | eightZeros);

// So many characters at the end of the word, zeros before them. Requires: one at least.
template <class Word>
Word loadedAtEnd(const char* text, std::size_t length) {
  Word word;
  std::memcpy(&word, text, sizeof word);
  const std::size_t bits = length * 8;
  return static_cast<Word>(word << (sizeof word * 8 - bits)) | zeros<Word> >> 8 >> (bits - 8);
}

// The highest bit of every byte that is no digit. Bytes behind the first such one may be marked though they are digits.
inline OneWord othersThanDigits(OneWord word) {
  const OneWord digits = word ^ eightZeros;
  return ((digits + 0x7676767676767676) | digits) & 0x8080808080808080;
}
inline TwoWords othersThanDigits(TwoWords words) {
  return TwoWords{othersThanDigits(static_cast<OneWord>(words >> 64))} << 64 |
         othersThanDigits(static_cast<OneWord>(words));
}

inline unsigned firstMarked(OneWord marks) { return static_cast<unsigned>(std::countr_zero(marks)) / 8; }
inline unsigned firstMarked(TwoWords marks) {
  const auto low = static_cast<OneWord>(marks);
  return low != 0 ? firstMarked(low) : 8 + firstMarked(static_cast<OneWord>(marks >> 64));
}

// Requires: all characters are digits; in two words no more than 15 of them are not 0.
inline std::uint64_t wholeNumber(OneWord word) {
  constexpr OneWord pairs = 1 + (10 << 8);
  constexpr OneWord fours = 1 + (100ULL << 16);
  constexpr OneWord eights = 1 + (10000ULL << 32);
  word = ((word & 0x0F0F0F0F0F0F0F0F) * pairs) >> 8;
  word = ((word & 0x00FF00FF00FF00FF) * fours) >> 16;
  return ((word & 0x0000FFFF0000FFFF) * eights) >> 32;
}
inline std::uint64_t wholeNumber(TwoWords words) {
  constexpr std::uint64_t hundredMillion = 100'000'000;
  return wholeNumber(static_cast<OneWord>(words)) * hundredMillion + wholeNumber(static_cast<OneWord>(words >> 64));
}

// Reads digits with or without a point between, before or behind them; false when it is anything else.
template <class Word>
bool readDigits(std::string_view text, ShortDecimal& number) {
  constexpr std::size_t mostDigits = 15;
  Word word = loadedAtEnd<Word>(text.data(), text.size());
  std::size_t digits = text.size();
  std::size_t fractionDigits = 0;
  if (const Word others = othersThanDigits(word); others != 0) {
    // What stands before the point moves into its place.
    const unsigned point = firstMarked(others);
    if (static_cast<char>(word >> (point * 8)) != '.') return false;
    const Word before = (Word{1} << (point * 8)) - 1;
    word = (word & ~(before << 8 | 0xFF)) | (word & before) << 8 | '0';
    if (othersThanDigits(word) != 0) return false;
    fractionDigits = sizeof word - 1 - point;
    --digits;
  }
  const std::size_t wholeDigits = digits - fractionDigits;
  if (digits == 0 || digits > mostDigits || (wholeDigits > 1 && text.front() == '0')) return false;
  number.mantissa = wholeNumber(word);
  number.wholeDigits = static_cast<std::int32_t>(wholeDigits);
  number.fractionDigits = static_cast<std::int32_t>(fractionDigits);
  return true;
}

}  // namespace character_words

inline bool readPaddedShortDecimal(std::string_view text, ShortDecimal& number) {
  using namespace character_words;
  if constexpr (std::endian::native != std::endian::little) return readShortDecimal(text, number);
  if (text.empty()) return false;
  number.negative = text.front() == '-';
  text.remove_prefix(number.negative ? 1 : 0);
  if (text.empty() || text.size() > sizeof(TwoWords)) return false;
  return text.size() <= sizeof(OneWord) ? readDigits<OneWord>(text, number) : readDigits<TwoWords>(text, number);
}

}  // namespace workbench::data
