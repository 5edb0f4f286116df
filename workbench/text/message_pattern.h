// Message patterns: a phrase about numbers, with its plural forms and its numbers as a language writes them.
#pragma once

#include <span>
#include <string>

namespace workbench::text {

// The pattern of ICU's message format, "{0} {0, plural, one {case} other {cases}}", with the numbers in the places of
// {0}, {1}, ...; digits are grouped and forms chosen as the language ("en") has it. Requires: the pattern is sound; one
// that is not is a mistake of the wording and throws std::logic_error.
std::string filledMessage(const std::string& pattern, std::span<const double> numbers, const std::string& language);

}  // namespace workbench::text
