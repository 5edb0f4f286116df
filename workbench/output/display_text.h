// Text on a terminal: what cannot be seen is made visible, and how many columns a text takes.
//
// All texts are UTF-8; what is not counts as U+FFFD. A user-perceived character (a letter with its marks, an emoji of
// several parts) is never taken apart. East Asian wide characters take two columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench::output {

// The text without anything that could act on a terminal: a control character is its picture, one that has none and
// those that change the direction of writing are shown by number. Line breaks stay.
std::string visible(std::string_view text);

// The columns that one line takes.
int displayWidth(std::string_view line);

// The line, cut at its end and closed with an ellipsis sign when it takes more columns than `width`.
std::string shortened(std::string_view line, int width);

// The beginning of the text, of at most so many UTF-16 units; all of it when it has no more. Requires: it is UTF-8.
std::string beginning(std::string_view text, std::size_t mostUnits);

// The text in lines of at most `width` columns, broken where its writing allows it (all scripts) and within a word only
// when that alone is too long. A number is never broken: its line is longer then. Line breaks of the text stay.
std::vector<std::string> wrapped(std::string_view text, int width);

// The columns of the longest number in the text: what wrapped() cannot go below.
int widestNumber(std::string_view text);

// Of the text's lines the longest one's columns.
int widestLine(std::string_view text);

// The line with blanks up to `width` columns: behind it, or before it.
std::string paddedRight(std::string_view line, int width);
std::string paddedLeft(std::string_view line, int width);

}  // namespace workbench::output
