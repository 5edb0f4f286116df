#include "engine/value_equality.h"

#include <algorithm>
#include <cfloat>
#include <cstring>
#include <string_view>

#include "host/runtime.h"

namespace compdatas {

namespace {

constexpr double systemMissing = -DBL_MAX;

}  // namespace

bool textsEqual(const char* left, std::size_t leftWidth, const char* right, std::size_t rightWidth) {
  const std::size_t shared = std::min(leftWidth, rightWidth);
  // The same bytes need no call of the host.
  if (std::memcmp(left, right, shared) != 0 &&
      VRIXMBstrnbcmp_A(std::string_view(left, shared), std::string_view(right, shared)) != 0) {
    return false;
  }
  const std::string_view beyond = leftWidth > rightWidth ? std::string_view(left + shared, leftWidth - shared)
                                                         : std::string_view(right + shared, rightWidth - shared);
  return beyond.find_first_not_of(' ') == std::string_view::npos;
}

bool numbersNear(double left, double right) {
  return !sameBits(left, systemMissing) && !sameBits(right, systemMissing) && QLRALMOSTEQUAL(left, right);
}

}  // namespace compdatas
