// Passwords in the text of a command: nobody sees them in the results, in the journal or in an error.
#pragma once

#include <string>
#include <string_view>

#include "workbench/language/tokens.h"

namespace workbench::language {

inline constexpr std::string_view hiddenPassword = "'***'";

// Whether the values of a keyword of this name are passwords: names that end in PASS or PASSWORD, and what was probably
// meant to be PASSWORD.
bool isPasswordKeyword(std::string_view name);

// The command as written, with the values of password keywords replaced by hiddenPassword.
std::string shownSyntax(std::string_view job, const CommandText& command);

}  // namespace workbench::language
