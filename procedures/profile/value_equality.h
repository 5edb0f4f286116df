// Value equality: when two values of a variable count as equal, as in a comparison. Pure but for the host's tolerance.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <string_view>

#include "host/runtime.h"

namespace profile {

inline bool sameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

// The machine constant of that name, which a call of the host for every value would cost too much to ask for.
inline bool isSystemMissing(double number) { return sameBits(number, std::numeric_limits<double>::lowest()); }

// The same number; or, where near numbers count, one within the host's tolerance. System-missing equals itself only.
inline bool numbersEqual(double left, double right, bool nearCounts) {
  if (sameBits(left, right)) return true;
  return nearCounts && !isSystemMissing(left) && !isSystemMissing(right) && QLRALMOSTEQUAL(left, right);
}

// The same bytes, trailing blanks ignored.
inline bool textsEqual(std::string_view left, std::string_view right) {
  return left == right || VRIXMBstrnbcmp_A(left, right) == 0;
}

}  // namespace profile
