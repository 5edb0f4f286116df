// The procedure's messages as lines of a report: where to show them, how bad they are, the text as it is passed.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace workbench::tests::model {

// Sentences and keys whose wording is the procedure's own. Any other text comes from the host and is not foretold.
namespace say {
inline constexpr std::string_view noDataset = "Incomplete command. No dataset was specified.";
inline constexpr std::string_view noSuchDataset = "The dataset does not exist.";
inline constexpr std::string_view sameDataset =
    "The active dataset and the comparison dataset are the same dataset. No comparison was performed.";
inline constexpr std::string_view matchedPasswordTooShort = "MATCHPASS password too short.";
inline constexpr std::string_view mismatchedPasswordTooShort = "MISMATCHPASS password too short.";
inline constexpr std::string_view matchedNameTaken = "MATCHNAME cannot be one of ...";
inline constexpr std::string_view mismatchedNameTaken = "MISMATCHNAME cannot be one of ...";
inline constexpr std::string_view sameOutputs = "The datasets for matched a...";
inline constexpr std::string_view caseIdsDoNotMatch =
    "The comparison cannot be performed because the case ID variables do not match in the two datasets.";
inline constexpr std::string_view noVariablesMatch = "The variables do not match in t...";
inline constexpr std::string_view allAttributesMatch = "All attribute values in the da...";
inline constexpr std::string_view activeUnsorted = "The active dataset is not sort...";
inline constexpr std::string_view comparedUnsorted = "The comparison dataset is not sort...";
inline constexpr std::string_view allValuesMatch = "All values in the tw...";
}  // namespace say

inline constexpr std::array procedureSentences = {
    say::noDataset,        say::noSuchDataset,
    say::sameDataset,      say::matchedPasswordTooShort,
    say::matchedNameTaken, say::mismatchedPasswordTooShort,
    say::sameOutputs,      say::mismatchedNameTaken,
    say::noVariablesMatch, say::caseIdsDoNotMatch,
    say::activeUnsorted,   say::allAttributesMatch,
    say::allValuesMatch,   say::comparedUnsorted,
};
inline constexpr std::string_view hostsWords = "(the host's words)";

// A key of variables that cannot be compared, with their names.
inline constexpr std::string_view uncomparedPattern = "The following variables could...[%1:, ^1:]1";

inline std::string messageLine(int show, int level, std::string_view text) {
  return "message " + std::to_string(show) + "/" + std::to_string(level) + " " + std::string(text) + "\n";
}
inline const std::string parserRefusal = "refused by the command parser\n";
inline const std::string variablesRequired = "numbered message 7414 2 2\n";

}  // namespace workbench::tests::model
