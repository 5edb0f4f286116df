#include "engine/value_equality.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/runtime.h"

namespace compdatas {

namespace {

constexpr std::uint64_t systemMissingBits = 0xFFEFFFFFFFFFFFFF;

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

bool numbersEqual(double left, double right, bool fuzzy) {
  const auto leftBits = std::bit_cast<std::uint64_t>(left);
  const auto rightBits = std::bit_cast<std::uint64_t>(right);
  if (leftBits == rightBits) return true;
  return fuzzy && leftBits != systemMissingBits && rightBits != systemMissingBits && QLRALMOSTEQUAL(left, right);
}

}  // namespace compdatas
