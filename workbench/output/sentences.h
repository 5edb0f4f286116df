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
inline constexpr std::string_view more = sentence("… ^1 more (--full)");  // and the option that shows them
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

// Of the HTML report.
inline constexpr std::string_view skip = sentence("Skip to the results");
inline constexpr std::string_view results = sentence("Results");
inline constexpr std::string_view noResults = sentence("There are no results.");
inline constexpr std::string_view unknownCommand = sentence("Unknown command");
inline constexpr std::string_view same = sentence("No difference");
inline constexpr std::string_view different = sentence("Different");
inline constexpr std::string_view trouble = sentence("Trouble");
inline constexpr std::string_view contents = sentence("Contents");
inline constexpr std::string_view pictures = sentence("At a glance");
inline constexpr std::string_view messages = sentence("Messages and notes");
inline constexpr std::string_view commands = sentence("Commands of the job");
inline constexpr std::string_view made = sentence("Made by compare-datasets on");
inline constexpr std::string_view copyTable = sentence("Copy the table");
inline constexpr std::string_view copied = sentence("Copied");
inline constexpr std::string_view notCopied = sentence("The browser did not allow copying.");
inline constexpr std::string_view filterRows = sentence("Rows that differ in");
inline constexpr std::string_view allRows = sentence("any column, or none");
// The page's script puts its numbers in the places of {0} and {1}.
inline constexpr std::string_view rowsShown = sentence("{0} of {1} rows");

// Message patterns of pictures, as Phrase has them.
inline constexpr std::string_view moreBars =
    sentence("{0, plural, one {# more variable has} other {# more variables have}} fewer.");
inline constexpr std::string_view emptyBars =
    sentence("{0, plural, one {# variable has} other {# variables have}} none.");
inline constexpr std::string_view caseNumber = sentence("Case {0}");
inline constexpr std::string_view strip = sentence(
    "{0} of {1} equal stretches of the dataset {0, plural, one {has} other {have}} any; most, {2}, lie in cases {3} to "
    "{4}.");
inline constexpr std::string_view stripOfCases = sentence(
    "{0} of {1} equal stretches of the dataset {0, plural, one {has} other {have}} any; most, {2}, at case {3}.");

}  // namespace workbench::output::sentences
