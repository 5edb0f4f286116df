// Texts for property tests: ASCII with blanks and both cases, characters beyond it, and bytes that are not UTF-8.
#pragma once

#include <rapidcheck.h>

#include <string>
#include <vector>

namespace workbench::text {

inline rc::Gen<std::string> anyText() {
  const auto piece = rc::gen::element<std::string>(
      "a", "A", "b", "B", "z", "Z", " ", "  ", "0", "k", "K", "\u212A", "s", "S", "\u017F", "é", "É", "e\u0301", "ß",
      "ẞ", "ä", "Ä", "ö", "σ", "ς", "Σ", "\u00AD", "日", "😀", "\t", "\n", "-", ".", "_", std::string(1, '\0'), "\x80",
      "\xC3", "\xE2\x84", "\xF0\x9F", "\xFF", "\xED\xA0\x80", "\x01", "\uFFFD", "\uFFFE");
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece), [](const std::vector<std::string>& pieces) {
    std::string text;
    for (const std::string& one : pieces) text += one;
    return text;
  });
}

}  // namespace workbench::text
