#include "workbench/text/utf8.h"

#include <unicode/utf8.h>

namespace workbench::text {

// ICU's macros narrow on purpose.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

Character characterAt(std::string_view text, std::size_t at) {
  std::size_t next = at;
  UChar32 codePoint = 0;
  U8_NEXT(text.data(), next, text.size(), codePoint);
  return {codePoint, next - at};
}

void appendCharacter(std::string& text, std::int32_t codePoint) {
  char bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, codePoint);
  text.append(bytes, length);
}

#pragma GCC diagnostic pop

bool isUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    if (character.codePoint < 0) return false;
    at += character.bytes;
  }
  return true;
}

}  // namespace workbench::text
