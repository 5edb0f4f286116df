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
inline constexpr std::string_view place = sentence("line ^1, column ^2");
inline constexpr std::string_view savedFile = sentence("^1 cases were saved in ^2.");
inline constexpr std::string_view addedVariable = sentence("The variable ^1 was added to the active dataset.");
inline constexpr std::string_view noTable = sentence("There is no table among the results.");
inline constexpr std::string_view severalTables = sentence("CSV holds one table, and the results have several.");
inline constexpr std::string_view nameOneTable = sentence("Name one by --table; their keys are: ^1.");
inline constexpr std::string_view severalOfOneKey =
    sentence("CSV holds one table, and several commands made a table ^1.");
inline constexpr std::string_view oneCommand = sentence("Run one of these commands alone, or take another format.");
inline constexpr std::string_view overview = sentence("Overview");
inline constexpr std::string_view tables = sentence("Tables");
inline constexpr std::string_view table = sentence("Table");
inline constexpr std::string_view nothingToShow = sentence("There are no results to show.");
inline constexpr std::string_view cutRows =
    sentence("Only the first ^1 of ^2 rows are shown; a sheet has no room for more.");
inline constexpr std::string_view cutColumns =
    sentence("Only the first ^1 of ^2 columns are shown; a sheet has no room for more.");
inline constexpr std::string_view cutTexts =
    sentence("Texts of more than ^1 characters are cut and end with \"…\"; a cell has no room for more.");
inline constexpr std::string_view numbersAsTexts =
    sentence("Numbers and dates that a cell cannot hold to the last digit stand as texts.");
inline constexpr std::string_view shownBySigns =
    sentence("Characters that are not readable are shown by signs (such as ␀ or �) or by their numbers.");
inline constexpr std::string_view workbookFailed = sentence("The workbook cannot be written (^1).");
inline constexpr std::string_view roomForWorkbook =
    sentence("Make room in ^1, or name another folder by the environment variable TMPDIR.");

}  // namespace workbench::output::sentences
