// Characters of UTF-8 text, one at a time, with a say in what happens to bytes that are none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace workbench::text {

struct Character {
  std::int32_t codePoint = -1;  // -1: the bytes are not UTF-8
  std::size_t bytes = 0;        // at least 1
};

// The character that starts at `at`. Requires: at < text.size().
Character characterAt(std::string_view text, std::size_t at);

// Requires: codePoint is one (not negative, no surrogate).
void appendCharacter(std::string& text, std::int32_t codePoint);

// Whether all of the text is UTF-8.
bool isUtf8(std::string_view text);

}  // namespace workbench::text
