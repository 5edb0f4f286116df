#include "workbench/data/working/handle.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>

namespace workbench::data {

bool isWellFormedHandle(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t next = 0; next < text.size();) {
    const bool isFirst = next == 0;
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    if (character < 0) return false;
    const bool mayStand = u_isalpha(character) || (!isFirst && (u_isdigit(character) || character == '_'));
    if (!mayStand) return false;
  }
  return !text.empty();
}

}  // namespace workbench::data
