// The nearest known word: what a misspelled one was probably meant to be.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::text {

// How many characters have to be put in, left out, replaced or exchanged with their neighbour to make one word of the
// other, without regard to case; `limit` + 1 when it is more than the limit.
std::size_t editDistance(std::string_view left, std::string_view right, std::size_t limit);

// The known word with the fewest edits from this one, the first of several; a word that was cut short counts as near.
// Nothing when none is near enough to be meant.
std::optional<std::string> nearestWord(std::string_view word, const std::vector<std::string>& known);

}  // namespace workbench::text
