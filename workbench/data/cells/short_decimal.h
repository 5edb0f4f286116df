// ShortDecimal: a decimal number of the kind that most are, read as fast as it can be.
//
// It has at most 15 digits and no exponent, so it is always held. All that it is not (longer, with an exponent, with a
// plus sign) is left to scaled_decimal.h and decimal_text.h.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace workbench::data {

// Eight bytes as one word, the first of them the lowest.
inline std::uint64_t eightBytes(const char* text) {
  std::uint64_t word;
  std::memcpy(&word, text, sizeof word);
  return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

// So many bytes behind a padded text can be read, whatever they are.
inline constexpr std::size_t readableBehind = 16;

class ShortDecimal {
 public:
  // False when the text is something else, a longer number perhaps; the number is then of no use. Requires:
  // readableBehind.
  bool readPadded(std::string_view text);
  // The same for any text.
  bool read(std::string_view text);

  double value() const;
  double signedDigits() const;  // as if there were no point; -0 is one
  bool isNegative() const { return negative_; }
  std::int32_t wholeDigits() const { return wholeDigits_; }  // before the point, 0 perhaps
  std::int32_t fractionDigits() const { return fractionDigits_; }
  std::int32_t digitsFromFirst() const;  // from the first that is not 0 on; 0: all are
  std::int32_t zerosAtEnd() const;       // behind the last that is not; 0 where all are
  // The digits, each a byte's value, at the end of two words and without the point. One word often holds them all.
  std::uint64_t firstDigits() const { return first_; }
  std::uint64_t lastDigits() const { return second_; }

 private:
  bool readOneWord(std::string_view text);
  static bool readTwoWords(std::string_view text, ShortDecimal& number);
  bool take(std::string_view text, std::size_t digits, std::size_t fractionDigits);

  std::uint64_t first_ = 0;
  std::uint64_t second_ = 0;
  std::int32_t wholeDigits_ = 0;
  std::int32_t fractionDigits_ = 0;
  bool negative_ = false;
};

namespace digit_words {

inline constexpr std::uint64_t zeros = 0x3030303030303030;
inline constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
inline constexpr unsigned point = '.' ^ '0';

// The highest bit of every byte that is no digit's value. A point leaves the marks of its neighbours as they are.
inline std::uint64_t othersThanDigits(std::uint64_t digits) {
  return ((digits + 0x7676767676767676) | digits) & 0x8080808080808080;
}

// Requires: all bytes are digits' values.
inline std::uint64_t wholeNumber(std::uint64_t digits) {
  digits = (digits * (1 + (10 << 8))) >> 8;
  digits = ((digits & 0x00FF00FF00FF00FF) * (1 + (100ULL << 16))) >> 16;
  return ((digits & 0x0000FFFF0000FFFF) * (1 + (10000ULL << 32))) >> 32;
}

}  // namespace digit_words

inline bool ShortDecimal::readPadded(std::string_view text) {
  if (text.empty()) return false;
  negative_ = text.front() == '-';
  text = {text.data() + negative_, text.size() - negative_};
  // Of no character at all the length is beyond all others.
  if (text.size() - 1 < sizeof first_) return readOneWord(text);
  if (text.size() - 1 >= 2 * sizeof first_) return false;
  ShortDecimal other;  // so that this one can be kept in registers
  const bool isRead = readTwoWords(text, other);
  first_ = other.first_;
  second_ = other.second_;
  wholeDigits_ = other.wholeDigits_;
  fractionDigits_ = other.fractionDigits_;
  return isRead;
}

inline bool ShortDecimal::readOneWord(std::string_view text) {
  using namespace digit_words;
  // Zeros fill the word before the digits.
  std::uint64_t digits = (eightBytes(text.data()) ^ zeros) << (64 - 8 * text.size());
  const std::uint64_t others = othersThanDigits(digits);
  first_ = 0;
  if (others == 0) {
    second_ = digits;
    return take(text, text.size(), 0);
  }
  // What stands before the point moves into its place.
  const unsigned at = static_cast<unsigned>(std::countr_zero(others)) - 7;
  if ((others & (others - 1)) != 0 || (digits >> at & 0xFF) != point) return false;
  const std::uint64_t before = (std::uint64_t{1} << at) - 1;
  second_ = (digits & ~(before << 8 | 0xFF)) | (digits & before) << 8;
  return take(text, text.size() - 1, sizeof digits - 1 - at / 8);
}

inline bool ShortDecimal::take(std::string_view text, std::size_t digits, std::size_t fractionDigits) {
  const std::size_t wholeDigits = digits - fractionDigits;
  wholeDigits_ = static_cast<std::int32_t>(wholeDigits);
  fractionDigits_ = static_cast<std::int32_t>(fractionDigits);
  return digits != 0 && (wholeDigits <= 1 || text.front() != '0');
}

// Both operands being exact, the one operation rounds correctly.
inline double ShortDecimal::value() const { return signedDigits() / digit_words::powersOfTen[fractionDigits_]; }

inline double ShortDecimal::signedDigits() const {
  std::uint64_t digits = digit_words::wholeNumber(second_);
  if (first_ != 0) digits += digit_words::wholeNumber(first_) * 100'000'000;
  const auto magnitude = static_cast<double>(static_cast<std::int64_t>(digits));
  return negative_ ? -magnitude : magnitude;
}

inline std::int32_t ShortDecimal::digitsFromFirst() const {
  constexpr std::int32_t digitsOfWord = 8;
  if (first_ != 0) return 2 * digitsOfWord - std::countr_zero(first_) / 8;
  return digitsOfWord - std::countr_zero(second_) / 8;
}

inline std::int32_t ShortDecimal::zerosAtEnd() const {
  constexpr std::int32_t digitsOfWord = 8;
  if (second_ != 0) return std::countl_zero(second_) / 8;
  return first_ == 0 ? 0 : digitsOfWord + std::countl_zero(first_) / 8;
}

}  // namespace workbench::data
