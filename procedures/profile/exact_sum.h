// Sums of differences that stay exact to the last digits however many there are, and that no finite value overflows.
//
// A difference is taken as two numbers, its rounded value and what rounding left out; both are added with compensation.
// Differences of huge numbers are summed apart, scaled down, so that neither they nor their sum leave the range of a
// double; the scale is a power of two and changes no digit.
#pragma once

#include <cmath>
#include <cstdint>

namespace profile {

// Neumaier's sum: what an addition rounds off is kept beside it.
class CompensatedSum {
 public:
  void add(double value) {
    const double sum = sum_ + value;
    rounded_ += std::fabs(sum_) >= std::fabs(value) ? (sum_ - sum) + value : (value - sum) + sum_;
    sum_ = sum;
  }
  double total() const { return sum_ + rounded_; }

 private:
  double sum_ = 0;
  double rounded_ = 0;
};

class DifferenceSum {
 public:
  // Adds sign * (to - from). Requires: both are finite, and the sign is 1 or -1.
  void add(double from, double to, double sign) {
    if (std::fabs(from) >= huge || std::fabs(to) >= huge) {
      scaledDown_.add(sign * std::ldexp(to, -scale));
      scaledDown_.add(-sign * std::ldexp(from, -scale));
      return;
    }
    const double difference = to - from;
    // What the subtraction rounded off, exactly.
    const double subtracted = difference - to;
    const double rest = (to - (difference - subtracted)) - (from + subtracted);
    ordinary_.add(sign * difference);
    ordinary_.add(sign * rest);
  }
  // Infinite only where the mean itself is beyond all doubles. Requires: count > 0.
  double mean(std::uint64_t count) const {
    const auto divisor = static_cast<double>(count);
    return ordinary_.total() / divisor + std::ldexp(scaledDown_.total() / divisor, scale);
  }

 private:
  static constexpr double huge = 0x1p900;
  static constexpr int scale = 200;

  CompensatedSum ordinary_;
  CompensatedSum scaledDown_;
};

}  // namespace profile
