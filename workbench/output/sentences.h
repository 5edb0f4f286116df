// The sentences of the renderers themselves: keys of the wording, and the English text where it has none.
#pragma once

#include <string_view>

namespace workbench::output::sentences {

// Marks a key, for the test that looks for its wording in every language.
constexpr std::string_view sentence(std::string_view key) { return key; }

inline constexpr std::string_view note = sentence("Note");
inline constexpr std::string_view warning = sentence("Warning");
inline constexpr std::string_view error = sentence("Error");
inline constexpr std::string_view severeError = sentence("Severe error");
inline constexpr std::string_view more = sentence("… ^1 more");
inline constexpr std::string_view place = sentence("line ^1, column ^2");
inline constexpr std::string_view savedFile = sentence("^1 cases were saved in ^2.");
inline constexpr std::string_view addedVariable = sentence("The variable ^1 was added to the active dataset.");

}  // namespace workbench::output::sentences
