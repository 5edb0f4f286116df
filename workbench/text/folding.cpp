#include "workbench/text/folding.h"

#include <unicode/uchar.h>

#include "workbench/text/utf8.h"

namespace workbench::text {

namespace {

char foldedAscii(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; }

}  // namespace

std::string foldedName(std::string_view name) {
  std::string folded;
  folded.reserve(name.size());
  for (std::size_t at = 0; at < name.size();) {
    if (static_cast<unsigned char>(name[at]) < 0x80) {
      folded += foldedAscii(name[at++]);
      continue;
    }
    const Character character = characterAt(name, at);
    if (character.codePoint < 0) {
      folded.append(name.substr(at, character.bytes));
    } else {
      appendCharacter(folded, foldedCharacter(character.codePoint));
    }
    at += character.bytes;
  }
  return folded;
}

std::int32_t foldedCharacter(std::int32_t codePoint) { return u_foldCase(codePoint, U_FOLD_CASE_DEFAULT); }

}  // namespace workbench::text
