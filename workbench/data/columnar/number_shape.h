// NumberShape: how many digits the numbers of a column take when each is written in its shortest form.
#pragma once

#include <cmath>
#include <cstdint>

namespace workbench::data {

class NumberShape {
 public:
  // Of several numbers it is enough to add the lowest and the highest of them, of decimals as well.
  void addWhole(std::int64_t number);
  // A number with so many digits behind the point.
  void addDecimal(std::int64_t digits, std::int32_t scale);
  // Requires: the number is finite.
  void addReal(double number) {
    if (!fits(number)) widen(number);
  }

  std::int32_t wholeWidth() const;  // before the point, a minus among them
  std::int32_t fractionDigits() const { return fractionDigits_; }
  std::int32_t significantDigits() const { return significantDigits_; }

 private:
  // Whether it is one of the numbers that have as few digits as those before it: of up to 15 digits, the one decimal
  // nearest to it is the shortest.
  bool fits(double number) const {
    if (number < lowest_ || number > highest_) return false;
    // Rounded to a whole number, half of them to even ones: no bit below one has a place in such a sum.
    constexpr double roundsOff = 3ULL << 51;
    const double digits = number * scale_ + roundsOff - roundsOff;
    return std::fabs(digits) < beyondShort && digits / scale_ == number;
  }
  void widen(double number);
  void noteExtremes(double whole);

  static constexpr double beyondShort = 1e15;

  // What fits between these, with no more than the fraction's digits, needs no further look.
  double lowest_ = 0;
  double highest_ = 0;
  double scale_ = 1;  // ten to the power of the fraction's digits; 0 when these are too many for a quick look
  std::int32_t fractionDigits_ = 0;
  std::int32_t significantDigits_ = 1;
};

}  // namespace workbench::data
