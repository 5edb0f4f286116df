// Case folding: the form of a text in which upper and lower case no longer differ.
//
// Names of variables, handles, keywords and commands are matched by comparing their folded forms.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace workbench::text {

// The text with every character replaced by its simple case folding (Unicode; no character becomes two). Bytes that are
// not UTF-8 stay as they are, so different texts of such bytes stay different.
std::string foldedName(std::string_view name);

// The same for one character.
std::int32_t foldedCharacter(std::int32_t codePoint);

inline bool sameName(std::string_view left, std::string_view right) { return foldedName(left) == foldedName(right); }

}  // namespace workbench::text
